// Stage A, schedules: A1 to A10, in this order.
#include "MakeConvSToKiv/convstdsch/ConvExStdSchEvent.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchIcon.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchGroup.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchPGroup.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchUser.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSetting.h"
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

namespace {

constexpr ConvPrepareStep kSteps[] = {
    {"スケジュール共通設定", MakePrepareStep<ConvExStdSchSetting>},                        // A1
    {"スケジュール予定マスター", MakePrepareStep<ConvExStdSchEvent>},                      // A2
    {"スケジュール場所マスター", MakePrepareStep<ConvExStdSchPlace>},                      // A3
    {"その他アイコン", MakePrepareStep<ConvExStdSchIcon>},                                 // A4
    {"スケジュール個人設定", MakePrepareStep<ConvExStdSchPrSetting>},                      // A5
    {"個人スケジュール予定マスター", MakePrepareStep<ConvExStdSchPrEvent>},                // A6
    {"個人スケジュール場所マスター", MakePrepareStep<ConvExStdSchPrPlace>},                // A7
    {"ユーザースケジュール/スケジュールアクセス権", MakePrepareStep<ConvExStdSchSchUser>},  // A8
    {"グループスケジュール", MakePrepareStep<ConvExStdSchSchGroup>},                       // A9
    {"個人グループスケジュール", MakePrepareStep<ConvExStdSchSchPGroup>},                  // A10
};

}  // namespace

std::span<const ConvPrepareStep> SchPrepareSteps() { return kSteps; }
