// Stage A, alarms: A26 to A28, in this order. A family enters the list when it
// converts: one line of label and maker, as in the other module lists.
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

std::span<const ConvPrepareStep> AgentPrepareSteps() { return {}; }
