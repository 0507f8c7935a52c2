// Dates and times as digit strings: cutting, calendar checks, arithmetic, the
// clock, and the shift between the fixed zone of the old data and UTC.
#include "base/comTime.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/comClock.h"
#include "base/comLog.h"
#include "base/comStr.h"

namespace {

constexpr std::size_t kZoneTextMax = 32;  // 31 bytes and the terminator

// The process-wide zone; empty until first read.
struct TimeZone {
    char offset[kZoneTextMax] = {};
    char dstMinutes[kZoneTextMax] = {};
} g_timeZone;

void EnsureTimeZone() {
    if (g_timeZone.offset[0] != '\0') return;
    std::snprintf(g_timeZone.offset, sizeof g_timeZone.offset, "%s", "+0900");
    std::snprintf(g_timeZone.dstMinutes, sizeof g_timeZone.dstMinutes, "%s", "0");
}

// Reads up to count characters from start with strtol; 0 when text is shorter than start.
// Digits alone, the usual case, are summed directly: strtol would read them alike.
int ReadPart(const char* text, std::size_t start, std::size_t count) {
    if (!text) return 0;
    const std::size_t len = std::strlen(text);
    if (len <= start) return 0;
    char part[8] = {};
    const std::size_t take = std::min(count, len - start);
    std::memcpy(part, text + start, take);
    int value = 0;
    for (std::size_t i = 0; i < take; ++i) {
        if (part[i] < '0' || part[i] > '9') return static_cast<int>(std::strtol(part, nullptr, 10));
        value = value * 10 + (part[i] - '0');
    }
    return value;
}

// Two digits of a value from 0 to 99.
char* PutTwoDigits(char* out, int value) {
    out[0] = static_cast<char>('0' + value / 10);
    out[1] = static_cast<char>('0' + value % 10);
    return out + 2;
}

bool IsTwoDigits(int value) { return value >= 0 && value <= 99; }

// "%02d%02d%02d" into out of 7 bytes.
void WriteTime(char* out, int hour, int minute, int second) {
    if (IsTwoDigits(hour) && IsTwoDigits(minute) && IsTwoDigits(second)) {
        char* p = PutTwoDigits(out, hour);
        p = PutTwoDigits(p, minute);
        p = PutTwoDigits(p, second);
        *p = '\0';
        return;
    }
    std::snprintf(out, 7, "%02d%02d%02d", hour, minute, second);
}

// Copies at most max bytes of text and ends it, as snprintf with "%.*s" would.
char* CopyCut(char* out, const char* text, std::size_t max) {
    const std::size_t length = strnlen(text, max);
    std::memcpy(out, text, length);
    out[length] = '\0';
    return out + length;
}

int ReadInt(const char* text) { return text ? static_cast<int>(std::strtol(text, nullptr, 10)) : 0; }

int MonthDayCheck(int month, int day) {
    if (month < 1 || month > 12 || day < 1) return -1;
    int limit = 31;
    if (month == 4 || month == 6 || month == 9 || month == 11)
        limit = 30;
    else if (month == 2)
        limit = 29;
    return day <= limit ? 0 : -1;
}

int YMDCheck(int year, int month, int day) {
    if (MonthDayCheck(month, day) != 0) return -1;
    if (month == 2 && !comDateIsLeap(year) && day > 28) return -1;
    return 0;
}

// Writes "%04d%02d%02d" into out of 9 bytes; a year beyond four digits is cut, never overflows.
void WriteDate(char* out, long long year, int month, int day) {
    if (year >= 0 && year <= 9999 && IsTwoDigits(month) && IsTwoDigits(day)) {
        char* p = PutTwoDigits(out, static_cast<int>(year / 100));
        p = PutTwoDigits(p, static_cast<int>(year % 100));
        p = PutTwoDigits(p, month);
        p = PutTwoDigits(p, day);
        *p = '\0';
        return;
    }
    char text[64];
    std::snprintf(text, sizeof text, "%04lld%02d%02d", year, month, day);
    std::snprintf(out, 9, "%.8s", text);
}

long long FloorDiv(long long a, long long b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); }

// Days since 1970-01-01 of a proleptic Gregorian date; month may lie outside 1 to 12.
long long DaysFromCivil(long long y, long long m, long long d) {
    y += FloorDiv(m - 1, 12);
    m = m - 1 - FloorDiv(m - 1, 12) * 12 + 1;
    y -= m <= 2;
    const long long era = FloorDiv(y, 400);
    const long long yoe = y - era * 400;
    const long long doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const long long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

struct Civil {
    long long year;
    int month, day, hour, minute, second;
};

Civil CivilFromSeconds(long long seconds) {
    const long long days = FloorDiv(seconds, 86400);
    long long rest = seconds - days * 86400;
    const long long z = days + 719468;
    const long long era = FloorDiv(z, 146097);
    const long long doe = z - era * 146097;
    const long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long long mp = (5 * doy + 2) / 153;
    Civil c{};
    c.day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    c.month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    c.year = yoe + era * 400 + (c.month <= 2);
    c.hour = static_cast<int>(rest / 3600);
    rest %= 3600;
    c.minute = static_cast<int>(rest / 60);
    c.second = static_cast<int>(rest % 60);
    return c;
}

// Digits and "-" only; the empty text passes.
bool DigitsOrDash(const char* text) {
    for (const char* p = text; *p; ++p)
        if (!((*p >= '0' && *p <= '9') || *p == '-')) return false;
    return true;
}

void UtcAt(const timespec& now, char* date, char* time) {
    Civil c = CivilFromSeconds(static_cast<long long>(now.tv_sec));
    // Kept from the old clock handling: a year field of 0 to 9 stands for 2000 to 2009.
    if (c.year >= 1900 && c.year <= 1909) c.year += 100;
    WriteDate(date, c.year, c.month, c.day);
    WriteTime(time, c.hour, c.minute, c.second);
}

void UtcNow(char* date, char* time) {
    timespec now{};
    comClockNow(&now);
    UtcAt(now, date, time);
}

}  // namespace

int comDateYear(const char* text) { return ReadPart(text, 0, 4); }
int comDateMonth(const char* text) { return ReadPart(text, 4, 2); }
int comDateDay(const char* text) { return ReadPart(text, 6, 2); }
int comTimeHour(const char* text) { return ReadPart(text, 0, 2); }
int comTimeMinute(const char* text) { return ReadPart(text, 2, 2); }
int comTimeSecond(const char* text) { return ReadPart(text, 4, 2); }

bool comDateIsLeap(int year) { return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0); }

int comDateDaysInMonth(int year, int month) {
    if (month > 11) return 31;
    if (month == 4 || month == 6 || month == 9 || month == 11) return 30;
    if (month == 2) return comDateIsLeap(year) ? 29 : 28;
    return 31;
}

int comDateWeekday(int year, int month, int day) {
    if (month < 3) {
        month += 12;
        --year;
    }
    const long long k = ((year % 100) + 100) % 100;
    const long long j = FloorDiv(year, 100);
    long long h = day + (13LL * (month + 1)) / 5 + k + k / 4 + FloorDiv(j, 4) + 5 * j;
    h = ((h % 7) + 7) % 7;  // 0 is Saturday here
    return static_cast<int>((h + 6) % 7);
}

int comMonthDayCheck(const char* month, const char* day) { return MonthDayCheck(ReadInt(month), ReadInt(day)); }

int comYMDCheck(const char* year, const char* month, const char* day) {
    return YMDCheck(ReadInt(year), ReadInt(month), ReadInt(day));
}

int comDateCheck(const char* text) {
    if (!text || std::strlen(text) < 8) return -1;
    const int year = comDateYear(text);
    if (year < 0) return -1;
    return YMDCheck(year, comDateMonth(text), comDateDay(text));
}

int comTimeCheck(const char* text) {
    if (!comIsNumeric(text)) return -1;
    if (comTimeHour(text) > 24 || comTimeMinute(text) >= 60) return -1;
    return 0;
}

void comDateAddDays(const char* date, int days, char* out) {
    if (!out) return;
    long long year = comDateYear(date);
    int month = comDateMonth(date);
    long long day = static_cast<long long>(comDateDay(date)) + days;
    // Carry month by month; whole 400-year cycles first so huge offsets stay quick.
    constexpr long long kCycleDays = 146097;
    if (day > kCycleDays || day < -kCycleDays) {
        const long long cycles = day / kCycleDays;
        day -= cycles * kCycleDays;
        year += cycles * 400;
    }
    while (day > comDateDaysInMonth(static_cast<int>(year), month)) {
        day -= comDateDaysInMonth(static_cast<int>(year), month);
        if (++month > 12) {
            month = 1;
            ++year;
        }
    }
    while (day < 1) {
        if (--month < 1) {
            month = 12;
            --year;
        }
        day += comDateDaysInMonth(static_cast<int>(year), month);
    }
    WriteDate(out, year, month, static_cast<int>(day));
}

void comDateAddMonths(const char* date, int months, char* out) {
    if (!out) return;
    long long year = comDateYear(date);
    long long m = static_cast<long long>(comDateMonth(date)) + months;
    int day = comDateDay(date);
    int month;
    if (m <= 0) {
        year -= (-m) / 12 + 1;
        month = static_cast<int>(m % 12 + 12);
    } else {
        year += (m - 1) / 12;
        month = static_cast<int>((m - 1) % 12 + 1);
    }
    const int last = comDateDaysInMonth(static_cast<int>(year), month);
    if (day > last) day = last;
    WriteDate(out, year, month, day);
}

void comTimeNowStamp(char* out, bool local) {
    if (!out) return;
    char date[16] = {}, time[16] = {};
    if (local)
        comTimeNowLocal(date, time);
    else
        UtcNow(date, time);
    std::snprintf(out, 15, "%.8s%.6s", date, time);
}

void comTimeNowDate(char* out, bool local) {
    if (!out) return;
    char stamp[16] = {};
    comTimeNowStamp(stamp, local);
    std::snprintf(out, 9, "%.8s", stamp);
}

int comTimeNowLocal(char* outDate, char* outTime) {
    timespec now{};
    comClockNow(&now);
    return comTimeLocalAt(now, outDate, outTime);
}

int comTimeLocalAt(const timespec& instant, char* outDate, char* outTime) {
    if (!outDate || !outTime) return -9;
    char date[16] = {}, time[16] = {};
    UtcAt(instant, date, time);
    char offset[kZoneTextMax], dst[kZoneTextMax];
    comTimeZoneGet(offset, dst);
    return comTimeToLocal(date, time, offset, dst, outDate, outTime);
}

int64_t comMillis() {
    timespec now{};
    comClockNow(&now);
    return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

void comTimeZoneGet(char* offset, char* dstMinutes) {
    EnsureTimeZone();
    if (offset) CopyCut(offset, g_timeZone.offset, kZoneTextMax - 1);
    if (dstMinutes) CopyCut(dstMinutes, g_timeZone.dstMinutes, kZoneTextMax - 1);
}

void comTimeZoneSet(const char* offset, const char* dstMinutes) {
    if (!offset || std::strlen(offset) < 5 || !dstMinutes) return;
    std::snprintf(g_timeZone.offset, sizeof g_timeZone.offset, "%s", offset);
    std::snprintf(g_timeZone.dstMinutes, sizeof g_timeZone.dstMinutes, "%s", dstMinutes);
}

// The shift is done on a linear count of seconds, which is what converting to and
// from the host's time gives on a host without daylight saving, whatever its TZ.
int comTimeConvert(const char* date, const char* time, const char* offset, const char* dstMinutes,
                   int direction, char* outDate, char* outTime) {
    if (!offset || !outDate || !outTime || !dstMinutes) return -1;
    if (direction != 1 && direction != -1) return -1;
    if (std::strlen(offset) != 5) return -1;
    if (!date || !time || !DigitsOrDash(date) || !DigitsOrDash(time)) return -1;
    if (std::strlen(date) < 8) return -1;

    char fullTime[8] = {};
    const std::size_t timeLen = std::strlen(time);
    if (timeLen == 6) {
        std::memcpy(fullTime, time, 6);
    } else if (timeLen == 4) {
        std::memcpy(fullTime, time, 4);
        std::memcpy(fullTime + 4, "00", 2);
    } else {
        return -1;
    }

    long long seconds = DaysFromCivil(comDateYear(date), comDateMonth(date), comDateDay(date)) * 86400 +
                        comTimeHour(fullTime) * 3600LL + comTimeMinute(fullTime) * 60LL +
                        comTimeSecond(fullTime);

    if (!DigitsOrDash(offset + 1)) return -1;
    const long long shift = direction * (ReadPart(offset, 1, 2) * 3600LL + ReadPart(offset, 3, 2) * 60LL);
    if (offset[0] == '+')
        seconds += shift;
    else if (offset[0] == '-')
        seconds -= shift;
    else
        return -1;
    seconds += direction * ReadInt(dstMinutes) * 60LL;

    const Civil c = CivilFromSeconds(seconds);
    // Only years that fit the four digits of the output are representable.
    if (c.year < 0 || c.year > 9999) return -1;
    WriteDate(outDate, c.year, c.month, c.day);
    WriteTime(outTime, c.hour, c.minute, c.second);
    return 0;
}

int comTimeToLocal(const char* date, const char* time, const char* offset, const char* dstMinutes,
                   char* outDate, char* outTime) {
    return comTimeConvert(date, time, offset, dstMinutes, 1, outDate, outTime) == 0 ? 0 : -1;
}

int LocalToUtc(const char* date, const char* time, char* outDate, char* outTime) {
    if (comTimeConvert(date, time, "+0900", "0", -1, outDate, outTime) != 0) {
        comDebugNote("error utc time[%s][%s]\n", date ? date : "", time ? time : "");
        return 1;
    }
    return 0;
}

int LocalStampToUtc(const char* stamp, char* out) {
    char date[16] = {};
    const char* time = "";
    if (stamp) {
        CopyCut(date, stamp, 8);
        if (std::strlen(stamp) > 8) time = stamp + 8;
    }
    char utcDate[16] = {}, utcTime[16] = {};
    if (!out || comTimeConvert(date, time, "+0900", "0", -1, utcDate, utcTime) != 0) {
        comDebugNote("error utc time[%s]\n", stamp ? stamp : "");
        return 1;
    }
    CopyCut(CopyCut(out, utcDate, 8), utcTime, 6);
    return 0;
}
