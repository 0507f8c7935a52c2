// Writer of TM_SCHEDULER: one send time of a user's plan, moved to UTC.
#pragma once

#include <cstdint>

#include "MakeConvEToKiv/convcom/ConvDB.h"
#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class kiv_scheduler : public ConvDBEntry {
public:
    using ConvDBEntry::ConvDBEntry;

    // STIME goes through ShiftTimeOfDay; a time it refuses drops the row with 1.
    // All other columns pass as they come.
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
};
