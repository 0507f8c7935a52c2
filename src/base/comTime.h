// Dates and times as digit strings (YYYYMMDD, HHMM, HHMMSS, YYYYMMDDHHMMSS), the
// calendar, the clock and the shift between the fixed zone "+0900" and UTC.
#pragma once

#include <ctime>

#include <cstdint>

// Cutting: each reads its characters with strtol base 10.
int comDateYear(const char* text);
int comDateMonth(const char* text);
int comDateDay(const char* text);
int comTimeHour(const char* text);
int comTimeMinute(const char* text);
int comTimeSecond(const char* text);

// Calendar.
bool comDateIsLeap(int year);
int comDateDaysInMonth(int year, int month);
int comDateWeekday(int year, int month, int day);  // 0 is Sunday
int comMonthDayCheck(const char* month, const char* day);
int comYMDCheck(const char* year, const char* month, const char* day);
int comDateCheck(const char* text);
int comTimeCheck(const char* text);

// Arithmetic; out receives "%04d%02d%02d" (at least 9 bytes).
void comDateAddDays(const char* date, int days, char* out);
void comDateAddMonths(const char* date, int months, char* out);

// Clock. out of comTimeNowStamp has at least 15 bytes, of comTimeNowDate 9,
// outDate 9 and outTime 7.
void comTimeNowStamp(char* out, bool local);
void comTimeNowDate(char* out, bool local);
int comTimeNowLocal(char* outDate, char* outTime);
// The same for a given instant, so that one reading of the clock can serve a
// date, a time and their milliseconds.
int comTimeLocalAt(const timespec& instant, char* outDate, char* outTime);
int64_t comMillis();

// The process-wide zone: offset "+0900" and daylight minutes "0" unless set.
void comTimeZoneGet(char* offset, char* dstMinutes);  // each at least 32 bytes
void comTimeZoneSet(const char* offset, const char* dstMinutes);

// Zone shift.
int comTimeConvert(const char* date, const char* time, const char* offset, const char* dstMinutes,
                   int direction, char* outDate, char* outTime);
int comTimeToLocal(const char* date, const char* time, const char* offset, const char* dstMinutes,
                   char* outDate, char* outTime);
int LocalToUtc(const char* date, const char* time, char* outDate, char* outTime);
int LocalStampToUtc(const char* stamp, char* out);
