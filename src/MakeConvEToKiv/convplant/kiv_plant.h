// Writers of the facility masters. The facilities and their groups carry times
// of day, which move to UTC on their own, without a date.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"

class kiv_PltSet : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };
class kiv_pltEvent : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };
class kiv_PPltSet : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };

// starttime and endtime through ShiftTimeOfDay; a time it refuses drops the row
// with 1 and a message naming the old value.
class kiv_pltGroup : public ConvDBEntryTimes {
public:
    using ConvDBEntryTimes::ConvDBEntryTimes;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
};

class kiv_plant : public ConvDBEntryTimes {
public:
    using ConvDBEntryTimes::ConvDBEntryTimes;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
};

// The shared rule of both: 0 with the UTC time in out (or value untouched for
// other columns), 1 after the report.
int32_t ShiftPlantTime(ConvDBEntry& writer, const char* name, const char* value, std::string& out);
