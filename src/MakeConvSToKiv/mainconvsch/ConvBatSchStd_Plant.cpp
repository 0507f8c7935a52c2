// Stage A, facilities: A11 to A19, in this order.
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantGroup.h"
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantManage.h"
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantPlt.h"
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantSch.h"
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantSetting.h"
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

namespace {

constexpr ConvPrepareStep kSteps[] = {
    {"設備予約共通設定", MakePrepareStep<ConvExStdPlantSetting>},                          // A11
    {"設備予約利用目的", MakePrepareStep<ConvExStdPlantEvent>},                            // A12
    {"設備グループマスター", MakePrepareStep<ConvExStdPlantGroup>},                        // A13
    {"設備マスター/設備アクセス権", MakePrepareStep<ConvExStdPlantPlt>},                   // A14
    {"設備予約機能管理者", MakePrepareStep<ConvExStdPlantManageAll>},                      // A15
    {"設備予約所属管理者", MakePrepareStep<ConvExStdPlantManageGroup>},                    // A16
    {"設備予約個人設定", MakePrepareStep<ConvExStdPlantPrSetting>},                        // A17
    {"設備情報インポートエクスポート順", MakePrepareStep<ConvExStdPlantPPltCsvindex>},     // A18
    {"設備予約", MakePrepareStep<ConvExStdPlantSch>},                                      // A19
};

}  // namespace

std::span<const ConvPrepareStep> PlantPrepareSteps() { return kSteps; }
