// The writer of TT_SCHEDULE_OTHERTO, the destinations of a schedule: the id as
// in TT_SCHEDULE, the dates in UTC, and the kind of destination as text.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class kiv_scheduleotherto : public ConvDBEntry {
public:
    kiv_scheduleotherto(ConvApp* app, CdDBConnection* connection);

    void AppendKeys(std::string& text) const override;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    int32_t AddNullColumn(const char* name, uint32_t type) override;
    // The UTC dates of the schedule first; a row whose dates can't be moved is
    // reported and left out (1).
    int32_t CollectColumns(const char* table, ConvRow& row) override;

protected:
    std::string nowStamp;
    std::string startDate;
    std::string endDate;
    const ConvRow* currentRow = nullptr;
};
