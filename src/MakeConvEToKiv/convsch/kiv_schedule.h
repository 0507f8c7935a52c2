// The writer of TT_SCHEDULE: the decimal id becomes 12 base-36 characters, the
// dates, times and week days move from Japan time to UTC by the kind of
// repeat, and the LOG_ columns only name the row in messages.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class kiv_schedule : public ConvDBEntry {
public:
    kiv_schedule(ConvApp* app, CdDBConnection* connection);

    // The keys of a message are drawn from the row being written.
    void AppendKeys(std::string& text) const override;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    // cretime and updtime take the conversion's start, visitor "0", enddate
    // the open end in UTC; other columns without a value are left out.
    int32_t AddNullColumn(const char* name, uint32_t type) override;
    // Works out the UTC values of the row first; a row whose dates can't be
    // moved is reported and left out (1).
    int32_t CollectColumns(const char* table, ConvRow& row) override;

protected:
    std::string nowStamp;
    std::string startDate;
    std::string endDate;
    std::string startTime;
    std::string endTime;
    std::string everyWeekday;
    const ConvRow* currentRow = nullptr;
};
