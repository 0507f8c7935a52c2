// Tests of the date strings, the calendar, the clock and the zone shift.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "TestSupport.h"
#include "base/comClock.h"
#include "base/comLog.h"
#include "base/comTime.h"

namespace {

std::string AddDays(const char* date, int days) {
    char out[16] = {};
    comDateAddDays(date, days, out);
    return out;
}

std::string AddMonths(const char* date, int months) {
    char out[16] = {};
    comDateAddMonths(date, months, out);
    return out;
}

// "YYYYMMDD HHMMSS", or "fail".
std::string Convert(const char* date, const char* time, const char* offset, const char* dst, int direction) {
    char d[16] = {}, t[16] = {};
    if (comTimeConvert(date, time, offset, dst, direction, d, t) != 0) return "fail";
    return std::string(d) + " " + t;
}

std::string ToUtc(const char* date, const char* time) {
    char d[16] = {}, t[16] = {};
    if (LocalToUtc(date, time, d, t) != 0) return "fail";
    return std::string(d) + " " + t;
}

timespec g_fakeNow{};
void FakeClock(timespec* now) { *now = g_fakeNow; }

}  // namespace

TEST(ComTimeCalendar, MonthLengthsAndWeekdays) {
    EXPECT_FALSE(comDateIsLeap(1900));
    EXPECT_TRUE(comDateIsLeap(2000));
    EXPECT_EQ(comDateDaysInMonth(2004, 2), 29);
    EXPECT_EQ(comDateDaysInMonth(2100, 2), 28);
    EXPECT_EQ(comDateDaysInMonth(2001, 11), 30);
    EXPECT_EQ(comDateDaysInMonth(2001, 0), 31);
    EXPECT_EQ(comDateDaysInMonth(2001, 13), 31);
    EXPECT_EQ(comDateWeekday(1970, 1, 1), 4);
    EXPECT_EQ(comDateWeekday(2013, 12, 1), 0);

    // From a known Monday the weekday advances with the day count, across two centuries.
    std::string date = "18991225";
    int expected = 1;
    for (int i = 0; i < 7000; ++i) {
        const int step = i < 1100 ? 1 : 13;
        ASSERT_EQ(comDateWeekday(comDateYear(date.c_str()), comDateMonth(date.c_str()), comDateDay(date.c_str())),
                  expected)
            << date;
        date = AddDays(date.c_str(), step);
        expected = (expected + step) % 7;
    }
}

TEST(ComTimeCheck, DatesAndTimes) {
    const std::pair<const char*, int> dates[] = {
        {"20040229", 0}, {"20030229", -1}, {"21000229", -1}, {"1999", -1},     {nullptr, -1},
        {"00000000", -1}, {"00000101", 0}, {"-0010101", -1}, {"20030431", -1},
        {"20030228xyz", 0},  // the tail is not read
    };
    for (const auto& [date, rc] : dates) EXPECT_EQ(comDateCheck(date), rc) << (date ? date : "(null)");
    EXPECT_EQ(comYMDCheck("2004", "2", "29"), 0);
    EXPECT_EQ(comMonthDayCheck(nullptr, "1"), -1);

    const std::pair<const char*, int> times[] = {{"2400", 0}, {"2459", 0}, {"2500", -1},
                                                 {"1260", -1}, {"", -1},   {"ab", -1}};
    for (const auto& [time, rc] : times) EXPECT_EQ(comTimeCheck(time), rc) << time;
}

TEST(ComTimeArithmetic, AddDaysAndMonths) {
    EXPECT_EQ(AddDays("20040228", 1), "20040229");
    EXPECT_EQ(AddDays("20040229", 1), "20040301");
    EXPECT_EQ(AddDays("20050101", -1), "20041231");
    EXPECT_EQ(AddDays("20040101", 366), "20050101");
    EXPECT_EQ(AddDays("20000101", 146097 * 3 + 59), "32000229");  // whole 400-year cycles
    EXPECT_EQ(AddDays("24000101", -146097), "20000101");
    EXPECT_EQ(AddDays("20000101", 2000000000).size(), 8u);  // cut, never past the buffer

    EXPECT_EQ(AddMonths("20040131", 1), "20040229");
    EXPECT_EQ(AddMonths("20040131", -2), "20031130");
    EXPECT_EQ(AddMonths("20031231", 1), "20040131");
    EXPECT_EQ(AddMonths("20040115", -12), "20030115");
    EXPECT_EQ(AddMonths("20040115", -13), "20021215");
    EXPECT_EQ(AddMonths("20040115", 24), "20060115");
}

TEST(ComTimeConvert, ShiftsByOffsetAndDaylightMinutes) {
    EXPECT_EQ(ToUtc("20130101", "0800"), "20121231 230000");
    EXPECT_EQ(ToUtc("20040101", "0000"), "20031231 150000");
    EXPECT_EQ(ToUtc("20040301", "030000"), "20040229 180000");
    EXPECT_EQ(ToUtc("20040101", "2400"), "20040101 150000");  // hour 24 carries over
    EXPECT_EQ(Convert("20121231", "230000", "+0900", "0", 1), "20130101 080000");
    EXPECT_EQ(Convert("20040101", "0000", "-0500", "0", 1), "20031231 190000");
    EXPECT_EQ(Convert("20040101", "0000", "-0500", "0", -1), "20040101 050000");
    EXPECT_EQ(Convert("20040101", "0000", "+0930", "60", 1), "20040101 103000");
    EXPECT_EQ(Convert("20040101", "0000", "+0930", "60", -1), "20031231 133000");

    for (const char* offset : {"+09:00", "+090", "*0900", "+09a0"})
        EXPECT_EQ(Convert("20040101", "0000", offset, "0", 1), "fail") << offset;
    for (const char* time : {"08", "08000", "0800000", "08:00"})
        EXPECT_EQ(Convert("20040101", time, "+0900", "0", 1), "fail") << time;
    EXPECT_EQ(Convert("2004010", "0800", "+0900", "0", 1), "fail");
    EXPECT_EQ(Convert("2004/1/1", "0800", "+0900", "0", 1), "fail");
    EXPECT_EQ(Convert("20040101", "0000", "+0900", "0", 0), "fail");
    EXPECT_EQ(Convert("20040101", "0000", "+0900", nullptr, 1), "fail");
    // Years beyond four digits are refused rather than written long.
    EXPECT_EQ(Convert("99991231", "2000", "+0900", "0", 1), "fail");
}

TEST(ComTimeConvert, FailuresGoToTheDebugLog) {
    testsupport::TempDir dir;
    const std::string log = dir / "debug.log";
    char oldPath[1024] = {};
    comLogSetPath(log.c_str(), oldPath);

    char d[16], t[16], stamp[16];
    EXPECT_EQ(LocalToUtc("20040101", "08", d, t), 1);
    EXPECT_EQ(LocalStampToUtc("2004010108", stamp), 1);
    EXPECT_EQ(LocalStampToUtc("20040101080000", stamp), 0);
    EXPECT_STREQ(stamp, "20031231230000");
    comLogSetPath(oldPath, nullptr);

    const auto lines = testsupport::Lines(testsupport::ReadFile(log));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(testsupport::StripStamp(lines[0]), "error utc time[20040101][08]");
    EXPECT_EQ(testsupport::StripStamp(lines[1]), "error utc time[2004010108]");
}

TEST(ComTimeConvert, DoesNotDependOnHostZone) {
    // Summer dates, the hours that daylight saving skips or doubles in New York and
    // London, and the day that Apia skipped at the end of 2011.
    const struct { const char *date, *time; int direction; const char* expected; } cases[] = {
        {"20130710", "1200", -1, "20130710 030000"}, {"20130310", "1130", -1, "20130310 023000"},
        {"20131103", "1030", -1, "20131103 013000"}, {"20130331", "1030", -1, "20130331 013000"},
        {"20130310", "0230", 1, "20130310 113000"},  {"20131103", "0130", 1, "20131103 103000"},
        {"20111230", "1200", -1, "20111230 030000"}, {"20111230", "1200", 1, "20111230 210000"},
    };
    const char* oldTz = std::getenv("TZ");
    const std::string saved = oldTz ? oldTz : "";
    for (const char* tz : {"UTC0", "EST5EDT", "America/New_York", "Europe/London", "Pacific/Apia"}) {
        setenv("TZ", tz, 1);
        tzset();
        for (const auto& c : cases)
            EXPECT_EQ(Convert(c.date, c.time, "+0900", "0", c.direction), c.expected) << tz << " " << c.date;
    }
    if (oldTz)
        setenv("TZ", saved.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
}

TEST(ComTimeClock, NowFromInjectedClockAndZone) {
    const comClockFunc old = comSetClockFunction(FakeClock);
    g_fakeNow = {1388502000, 123456789};  // 2013-12-31 15:00:00.123 UTC

    char stamp[16] = {}, date[16] = {}, d[16] = {}, t[16] = {};
    comTimeNowStamp(stamp, false);
    EXPECT_STREQ(stamp, "20131231150000");
    comTimeNowStamp(stamp, true);
    EXPECT_STREQ(stamp, "20140101000000");
    comTimeNowDate(date, true);
    EXPECT_STREQ(date, "20140101");
    EXPECT_EQ(comTimeNowLocal(d, t), 0);
    EXPECT_STREQ(t, "000000");
    EXPECT_EQ(comTimeNowLocal(d, nullptr), -9);
    EXPECT_EQ(comMillis(), 1388502000123LL);

    // Short offsets and a missing daylight text are ignored; a full setting moves local time.
    comTimeZoneSet("+09", "0");
    comTimeZoneSet("-0500", nullptr);
    char offset[32], dst[32];
    comTimeZoneGet(offset, dst);
    EXPECT_STREQ(offset, "+0900");
    EXPECT_STREQ(dst, "0");
    comTimeZoneSet("-0500", "60");
    comTimeNowStamp(stamp, true);
    EXPECT_STREQ(stamp, "20131231110000");
    comTimeZoneSet("+0900", "0");

    // The old clock's quirk: years 1900 to 1909 read as 2000 to 2009.
    g_fakeNow.tv_sec = -2051222400;  // 1905-01-01 00:00:00 UTC
    comTimeNowStamp(stamp, false);
    EXPECT_STREQ(stamp, "20050101000000");
    comSetClockFunction(old);
}

namespace {

// A clock just before a second's end that moves on by a millisecond a reading.
long long g_readings = 0;
void SteppingClock(timespec* now) {
    const long long millis = 999 + g_readings++;
    now->tv_sec = static_cast<time_t>(millis / 1000);
    now->tv_nsec = static_cast<long>(millis % 1000) * 1000000;
}

}  // namespace

// A log line's stamp comes from one instant: date, seconds and milliseconds agree.
TEST(ComLog, StampReadsTheClockOnce) {
    testsupport::TempDir dir;
    const std::string path = dir / "debug.log";
    char old[1024];
    comLogSetPath(path.c_str(), old);
    comTimeZoneSet("+0900", "0");
    const comClockFunc previous = comSetClockFunction(SteppingClock);
    g_readings = 0;
    comDebugLog("line\n");
    comSetClockFunction(previous);
    comLogSetPath(old, nullptr);
    EXPECT_EQ(testsupport::ReadFile(path), "1970/01/01 09:00:00.999 line\n");
}

// A line longer than the log writes is cut between characters and still ends,
// so that the next entry keeps a line of its own.
TEST(ComLog, OverlongLineIsCutBetweenCharactersAndEnded) {
    testsupport::TempDir dir;
    const std::string path = dir / "debug.log";
    char old[1024];
    comLogSetPath(path.c_str(), old);
    std::string memo = "x";
    for (int i = 0; i < 4000; ++i) memo += "あ";
    comDebugLog("%lld \"%s\"\n", 5LL, memo.c_str());
    comDebugLog("next\n");
    comLogSetPath(old, nullptr);
    const std::vector<std::string> lines = testsupport::Lines(testsupport::ReadFile(path));
    ASSERT_EQ(lines.size(), 2u);
    // The stamp, then at most 8,191 bytes of text, its line feed included.
    EXPECT_LE(lines[0].size(), std::string("yyyy/mm/dd hh:mm:ss.mmm ").size() + 8190u);
    EXPECT_EQ((lines[0].size() - std::string("yyyy/mm/dd hh:mm:ss.mmm 5 \"x").size()) % 3, 0u);
    EXPECT_EQ(lines[1].substr(lines[1].size() - 5), " next");
}
