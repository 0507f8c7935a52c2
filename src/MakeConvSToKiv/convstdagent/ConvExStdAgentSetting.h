// The alarm module's settings: the common one (data/agent/setting) and each
// user's (agent/setting under data/user/index).
#pragma once

#include <memory>

#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvExStdAgentSetting : public ConvExStd {
public:
    explicit ConvExStdAgentSetting(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};

class ConvExStdAgentPrSetting : public ConvExStdStackIndex {
public:
    explicit ConvExStdAgentPrSetting(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};
