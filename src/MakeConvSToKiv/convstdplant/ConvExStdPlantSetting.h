// The facility module's settings: the common one (data/setubi/setting) and each
// user's (setubi/setting under data/user/index).
#pragma once

#include <memory>

#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvExStdPlantSetting : public ConvExStd {
public:
    explicit ConvExStdPlantSetting(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};

class ConvExStdPlantPrSetting : public ConvExStdStackIndex {
public:
    explicit ConvExStdPlantPrSetting(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};
