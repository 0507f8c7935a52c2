// The facility masters: purposes (data/setubi/event), groups
// (data/setubi/group/index) and the users' column orders of the facility import
// and export (setubi/infocsvindex under data/user/index).
#pragma once

#include <memory>

#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdIndex.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvExStdPlantEvent : public ConvExStdStrIndex {
public:
    explicit ConvExStdPlantEvent(ConvAppStd* app);
};

// Writes TM_INDEX (3, "002") first.
class ConvExStdPlantGroup : public ConvExStdIndex {
public:
    explicit ConvExStdPlantGroup(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};

// One transaction per user; SEQNO counts each user's lines from 1.
class ConvExStdPlantPPltCsvindex : public ConvExStdCSVIndex {
public:
    explicit ConvExStdPlantPPltCsvindex(ConvAppStd* app);
};
