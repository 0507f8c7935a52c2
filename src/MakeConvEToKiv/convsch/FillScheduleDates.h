// The dates, times and week days of a schedule row as the target keeps them.
#pragma once

#include <string>

#include "MakeConvEToKiv/convcom/ConvRow.h"

class CiofSchedule;

// A schedule without an end runs to this date; later ends are cut to the last.
inline constexpr const char* kScheduleOpenEnd = "20371231";
inline constexpr const char* kScheduleLastEnd = "20991231";

// Reads "startdate", "enddate", "starttime", "endtime", "repeat", "everyweek"
// and "everyweekday" of row (NULL and empty count as missing) into schedule,
// after the range rules: no end date is 20371231, an end from 21000101 on is
// 20991231, a start from 2400 on is 2355, a repeating end from 2400 on is the
// same minute after midnight. A week-day set that came as a number of fewer
// than seven digits gets its leading zeros back. With toUtc the schedule is
// moved to UTC. The resulting values go to the outputs that aren't null.
// 0, -99 without outStartDate, or the code of the failing field or shift.
int FillScheduleDates(const ConvRow& row, CiofSchedule& schedule, std::string* outStartDate,
                      std::string* outEndDate, std::string* outStartTime, std::string* outEndTime,
                      std::string* outEveryWeekday, bool toUtc);

// The same rules with start and end date both taken from date (a repeat
// date, a minute's selected day) instead of the row's dates: the caller reads
// the result from schedule. 0 or the code of the failing field or shift.
int FillScheduleOnDate(const ConvRow& row, const char* date, CiofSchedule& schedule, bool toUtc);

// The week-day set as seven characters: digits only and shorter than seven
// gets leading zeros ("100000" is "0100000"); any other text is kept.
std::string PadEveryWeekday(const char* value);
