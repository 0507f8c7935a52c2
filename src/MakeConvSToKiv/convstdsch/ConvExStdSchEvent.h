// The schedule's word lists: events and places, the installation's and each
// user's. A line `<anything>=<word>` is one entry; its line number is its ID.
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvExStdSchEvent : public ConvExStdStrIndex {
public:
    explicit ConvExStdSchEvent(ConvAppStd* app);
};

class ConvExStdSchPlace : public ConvExStdStrIndex {
public:
    explicit ConvExStdSchPlace(ConvAppStd* app);
};

// A user's own list, read from data/user/<id>/<fileName>.
class ConvExStdSchPrEvent : public ConvExStdStackIndex {
public:
    explicit ConvExStdSchPrEvent(ConvAppStd* app, const char* fileName = "event",
                                 const char* tableName = "TMPR_SCH_EVENT");
    std::unique_ptr<ConvStdCom> NewReader() override;
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};

class ConvExStdSchPrPlace : public ConvExStdSchPrEvent {
public:
    explicit ConvExStdSchPrPlace(ConvAppStd* app);
};
