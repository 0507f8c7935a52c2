// Writer of the visitors: the visit's schedule link takes the schedules' id
// form, the old row id is left to the target's own numbering, and the
// creation and update stamps move to UTC.
#pragma once

#include <cstdint>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class kiv_visitor : public ConvDBEntry {
public:
    using ConvDBEntry::ConvDBEntry;
    ~kiv_visitor() override;

    // Shifts "cretime" and "updtime" (the conversion's time where both are
    // missing); a failed shift drops the row with a report (1).
    int32_t Entry(const char* table, ConvRow& row) override;
    // "SID_SCHEDULE" in base 36, "ID" left out.
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    // Message keys are read from the row being written.
    void AppendKeys(std::string& text) const override;

protected:
    const ConvRow* currentRow = nullptr;
};
