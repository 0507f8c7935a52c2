// Stage A of the schedule module: the flat-store families in their fixed order.
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

int32_t ConvBatSchStd::RunPrepare() {
    // The flat-store conversions of stage A are added here in their fixed order.
    return 0;
}
