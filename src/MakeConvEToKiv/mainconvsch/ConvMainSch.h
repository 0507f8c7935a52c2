// The program object of the schedule module: its word, label and driver.
#pragma once

#include "MakeConvEToKiv/convmainbase/ConvMainBase.h"

class ConvMainSch : public ConvMainBase {
public:
    ConvMainSch();
    int32_t CreateBat() override;
    void DeleteBat() override;
};
