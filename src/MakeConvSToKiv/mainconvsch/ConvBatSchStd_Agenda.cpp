// Stage A, minutes: A20 to A25, in this order.
#include "MakeConvSToKiv/convstdagenda/ConvExStdAgendaManage.h"
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

namespace {

constexpr ConvPrepareStep kSteps[] = {
    {"議事録機能管理者", MakePrepareStep<ConvExStdAgendaManageAll>},      // A21
    {"議事録所属管理者", MakePrepareStep<ConvExStdAgendaManageGroup>},    // A22
};

}  // namespace

std::span<const ConvPrepareStep> AgendaPrepareSteps() { return kSteps; }
