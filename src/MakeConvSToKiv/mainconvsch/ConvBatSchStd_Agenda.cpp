// Stage A, minutes: A20 to A25, in this order.
#include "MakeConvSToKiv/convstdagenda/ConvExStdAgendaAgenda.h"
#include "MakeConvSToKiv/convstdagenda/ConvExStdAgendaManage.h"
#include "MakeConvSToKiv/convstdagenda/ConvExStdAgendaSetting.h"
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

namespace {

std::unique_ptr<ConvExStd> MakeOpenMinutes(ConvAppStd* app) {
    return std::make_unique<ConvExStdAgendaAgenda>(app, "data/agenda/index", "TT_AGENDA");
}

std::unique_ptr<ConvExStd> MakeFinishedMinutes(ConvAppStd* app) {
    return std::make_unique<ConvExStdAgendaAgendaEnd>(app, "data/agenda/indexend", "TT_AGENDA");
}

constexpr ConvPrepareStep kSteps[] = {
    {"議事録共通設定", MakePrepareStep<ConvExStdAgendaSetting>},          // A20
    {"議事録機能管理者", MakePrepareStep<ConvExStdAgendaManageAll>},      // A21
    {"議事録所属管理者", MakePrepareStep<ConvExStdAgendaManageGroup>},    // A22
    {"議事録個人設定", MakePrepareStep<ConvExStdAgendaPriSetting>},       // A23
    {"未完了議事録", MakeOpenMinutes},                                    // A24
    {"完了議事録", MakeFinishedMinutes},                                  // A25
};

}  // namespace

std::span<const ConvPrepareStep> AgendaPrepareSteps() { return kSteps; }
