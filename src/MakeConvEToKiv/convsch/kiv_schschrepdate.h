// The writer of TT_SCH_REPDATE: one listed day of a schedule, held in
// SID_ASSIGN, moved to UTC with the schedule's times and repeat kind.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class kiv_schschrepdate : public ConvDBEntry {
public:
    kiv_schschrepdate(ConvApp* app, CdDBConnection* connection);

    void AppendKeys(std::string& text) const override;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    int32_t AddNullColumn(const char* name, uint32_t type) override;
    // The day as the start and end of a one-day schedule with the row's times
    // and repeat; its UTC start date is the day of the target. A day that can't
    // be moved is reported and left out (1).
    int32_t CollectColumns(const char* table, ConvRow& row) override;

protected:
    std::string nowStamp;
    std::string repeatDate;
    const ConvRow* currentRow = nullptr;
};
