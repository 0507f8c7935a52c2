// The writers of the two target tables that several modules share: the index
// master TM_INDEX and the module administrators TM_RMODULE_ASSIGNUSER.
#pragma once

#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"

// Writes TM_INDEX rows by INSERT; keeps the module and sub-code condition an
// UPDATE of the same row would need.
class kiv_index : public ConvDBEntry {
public:
    using ConvDBEntry::ConvDBEntry;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
};

class kiv_RModuleAssignUser : public ConvDBEntryTimes {
public:
    using ConvDBEntryTimes::ConvDBEntryTimes;
};
