// The driver that runs: stage A (flat store to working database) before stage B.
#pragma once

#include "MakeConvEToKiv/mainconvsch/ConvBatSch.h"

class ConvBatSchStd : public ConvBatSch {
public:
    using ConvBatSch::ConvBatSch;
    int32_t RunPrepare() override;
};
