// Writer of the minutes: the schedule link takes the schedules' id form, the
// schedule's selected day and the entry and update stamps move to UTC.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

// Shifts a local date and time of day to UTC. Date and time: both results;
// a date alone: the date only; a time alone: shifted on the day 20000101,
// the time only. Seconds are cut (HHMM). Without either, nothing; an out
// text is set only when its result is given. 0, or 1 when the shift fails.
int32_t ShiftPair(const char* date, const char* time, std::string& outDate, std::string& outTime);

class kiv_agenda : public ConvDBEntry {
public:
    using ConvDBEntry::ConvDBEntry;
    ~kiv_agenda() override;

    // "sid" in base 36; the schedule's and the stamps' columns are left to
    // CollectColumns.
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    // The row, then "schseldate" and the UTC "entrydate"/"entrytime" and
    // "updatedate"/"updatetime". A value that can't be shifted drops the row (1).
    int32_t CollectColumns(const char* table, ConvRow& row) override;

protected:
    // The UTC form of the selected day of the minutes' schedule: the row's
    // "startdate" at its "starttime"/"endtime" under its "repeat".
    virtual int32_t ShiftSelectedDate(const ConvRow& row, std::string& outDate);
    // Shifts the entry (or the update) date and time of the row into their columns.
    int32_t AddShiftedPair(const ConvRow& row, bool isEntry);
};
