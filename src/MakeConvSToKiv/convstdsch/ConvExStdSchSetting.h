// The schedule settings: the installation's (data/schedule/setting) and each
// user's own (data/user/<id>/schgen).
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvExStdSchSetting : public ConvExStd {
public:
    explicit ConvExStdSchSetting(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};

class ConvExStdSchPrSetting : public ConvExStdStackIndex {
public:
    explicit ConvExStdSchPrSetting(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};
