// Moves a local time of day without a date (HHMM) to UTC.
#pragma once

#include <cstdint>
#include <string>

// The time is anchored to a fixed day, so the change of day is lost: 0800
// gives 2300, 2400 gives 1500. The time is put between the day and "00" as it
// stands: an empty or three-character time makes a stamp that the zone shift
// refuses, which gives 1 and leaves out untouched; 0 on success with the four
// characters of the UTC time in out.
int32_t ShiftTimeOfDay(const char* hhmm, std::string& out);
