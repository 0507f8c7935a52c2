// Stage A, schedules: A1 to A10, in this order. A family enters the list when it
// converts: one line of label and maker, as in the other module lists.
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

std::span<const ConvPrepareStep> SchPrepareSteps() { return {}; }
