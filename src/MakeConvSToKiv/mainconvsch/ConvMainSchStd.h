// The program that runs: the schedule module with both stages, flat store first.
#pragma once

#include "MakeConvEToKiv/mainconvsch/ConvMainSch.h"

class ConvMainSchStd : public ConvMainSch {
public:
    int32_t CreateBat() override;
    void DeleteBat() override;
};
