// Writer of TMPR_AGENT: a user's notification plan, whose send times and last
// sending move from Japan time to UTC.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"

// Shifts a local date (YYYYMMDD) and time (HHMM) to UTC. With an empty time
// the date is copied as it is and the result is 0; otherwise 0, or 1 when the
// shift refuses them (the outputs are then untouched).
int32_t ShiftDateAndTime(const char* date, const char* time, std::string& outDate, std::string& outTime);

// Its Entry is the settings writers': cretime and updtime move to UTC first.
class kiv_pragent : public ConvDBEntryTimes {
public:
    // Items of the send-time list that are converted; the rest is dropped.
    static constexpr int kMaxSendTimes = 256;

    using ConvDBEntryTimes::ConvDBEntryTimes;

    // Works out the new send times and last sending first; a value that can't
    // be shifted drops the row with 1.
    int32_t CollectColumns(const char* table, ConvRow& row) override;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;

    const std::string& SendTimes() const { return sendTimes; }
    const std::string& SendLastDate() const { return sendLastDate; }
    const std::string& SendLastTime() const { return sendLastTime; }

private:
    std::string sendTimes;     // "0,830": UTC times of day as numbers
    std::string sendLastDate;  // UTC YYYYMMDD
    std::string sendLastTime;  // UTC HHMM
};
