// The writers of the schedule's common settings and word lists: their rows
// pass as they are, with creation and update times in UTC.
#pragma once

#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"

// TM_SCH_SETTING; its conversion puts it in update mode, since the
// installation's row exists already.
class kiv_schsetting : public ConvDBEntryTimes {
public:
    using ConvDBEntryTimes::ConvDBEntryTimes;
};

// TM_SCH_EVENT.
class kiv_schevent : public ConvDBEntryTimes {
public:
    using ConvDBEntryTimes::ConvDBEntryTimes;
};

// TM_SCH_PLACE.
class kiv_schplace : public ConvDBEntryTimes {
public:
    using ConvDBEntryTimes::ConvDBEntryTimes;
};
