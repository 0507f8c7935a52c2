// Stage A, alarms: A26 to A28, in this order.
#include "MakeConvSToKiv/convstdagent/ConvExStdAgentPrAgent.h"
#include "MakeConvSToKiv/convstdagent/ConvExStdAgentSetting.h"
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

namespace {

constexpr ConvPrepareStep kSteps[] = {
    {"アラーム共通設定", MakePrepareStep<ConvExStdAgentSetting>},      // A26
    {"アラーム個人設定", MakePrepareStep<ConvExStdAgentPrSetting>},    // A27
    {"個人予定通知設定", MakePrepareStep<ConvExStdAgentPrAgent>},      // A28
};

}  // namespace

std::span<const ConvPrepareStep> AgentPrepareSteps() { return kSteps; }
