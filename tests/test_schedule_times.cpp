// Tests of the schedule values: signed schedule times, the move of every kind
// of schedule to UTC through the row filler, folding for display, week days.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convcom/ConvRow.h"
#include "MakeConvEToKiv/convsch/FillScheduleDates.h"
#include "MakeConvLib/cxiosch/CiofSchedule.h"
#include "MakeConvLib/cxiosch/CLCSchTimeStr.h"

namespace {

TEST(SchTimeStr, SignedValuesAndHoursPast23) {
    CLCSchTimeStr t;
    EXPECT_EQ(t.SetStr("-0130"), 0);
    EXPECT_STREQ(t.GetStr(), "-0130");
    EXPECT_EQ(t.GetHour(), -1);
    EXPECT_EQ(t.GetMinute(), -30);
    EXPECT_EQ(t.SetStr("7159"), 0);
    EXPECT_STREQ(t.GetStr(), "7159");
    EXPECT_EQ(t.SetStr("7200"), -13007);
    EXPECT_TRUE(t.IsEmpty());
    EXPECT_EQ(t.SetStr("-7200"), -13007);
    EXPECT_EQ(t.SetStr("1a00"), -10007);
    EXPECT_EQ(t.SetStr("123456"), -62);
    EXPECT_EQ(t.SetInt(-130), 0);
    EXPECT_STREQ(t.GetStr(), "-0130");
    EXPECT_EQ(t.SetInt(5), 0);
    EXPECT_STREQ(t.GetStr(), "0005");
    EXPECT_EQ(t.SetStrLen("0930xx", 4), 0);
    EXPECT_STREQ(t.GetStr(), "0930");
    EXPECT_EQ(t.SetStrLen("930 ", 4), 0);
    EXPECT_STREQ(t.GetStr(), "930");
}

TEST(SchTimeStr, AddTimeIsSignedDurationArithmetic) {
    struct Case {
        const char* start;
        int delta;
        const char* want;
    } cases[] = {
        {"0830", -900, "-0030"}, {"0800", -900, "-0100"}, {"0900", -900, "0000"}, {"-0030", 900, "0830"},
        {"-0100", 100, "0000"},  {"-0010", -50, "-0100"}, {"2330", 100, "2430"},  {"0000", -1, "-0001"},
        {"4700", -900, "3800"},
    };
    for (const Case& c : cases) {
        CLCSchTimeStr t;
        ASSERT_EQ(t.SetStr(c.start), 0) << c.start;
        EXPECT_EQ(t.AddTime(c.delta), 0) << c.start;
        EXPECT_STREQ(t.GetStr(), c.want) << c.start << " + " << c.delta;
    }
    CLCSchTimeStr t;
    EXPECT_EQ(t.SetDayOffset(-100, 1), 0);
    EXPECT_STREQ(t.GetStr(), "2300");
}

// A working-table row of a schedule; null leaves the column out, "" is NULL.
ConvRow Row(const char* startDate, const char* endDate, const char* startTime, const char* endTime,
            const char* repeat, const char* weekday = nullptr) {
    ConvRow row;
    const std::pair<const char*, const char*> columns[] = {
        {"startdate", startDate}, {"enddate", endDate}, {"starttime", startTime},
        {"endtime", endTime},     {"repeat", repeat},   {"everyweekday", weekday},
    };
    for (const auto& [name, value] : columns)
        if (value) AddColumn(name, value, kRowTypeText, row);
    return row;
}

struct Want {
    std::string startDate, endDate, startTime, endTime, weekday;
};

Want Convert(const ConvRow& row, int* ret = nullptr) {
    CiofSchedule schedule;
    Want got;
    const int rc = FillScheduleDates(row, schedule, &got.startDate, &got.endDate, &got.startTime, &got.endTime,
                                     &got.weekday, true);
    if (ret) *ret = rc;
    else
        EXPECT_EQ(rc, 0);
    return got;
}

struct KindCase {
    const char* what;
    ConvRow (*row)();
    Want want;
};

// Every kind of schedule, local "+0900" in, UTC out.
const KindCase kKinds[] = {
    {"one day", [] { return Row("20130101", "20130101", "0800", "1000", ""); },
     {"20121231", "20130101", "2300", "0100", ""}},
    {"span", [] { return Row("20130101", "20130105", "0800", "0830", ""); },
     {"20121231", "20130104", "2300", "2330", ""}},
    {"start time only", [] { return Row("20130101", "20130101", "0800", "", ""); },
     {"20121231", "20121231", "2300", "", ""}},
    {"end time only", [] { return Row("20130101", "20130101", "", "0500", ""); },
     {"20121231", "20121231", "", "2000", ""}},
    {"no times", [] { return Row("20130101", "20130103", "", "", ""); }, {"20130101", "20130103", "", "", ""}},
    {"start 2400 becomes 2355", [] { return Row("20130101", "20130101", "2400", "", ""); },
     {"20130101", "20130101", "1455", "", ""}},
    {"end 2430 without repeat is hour 24", [] { return Row("20130101", "20130101", "2200", "2430", ""); },
     {"20130101", "20130101", "1300", "1530", ""}},
    {"leap day", [] { return Row("20120301", "20120301", "0500", "0600", ""); },
     {"20120229", "20120229", "2000", "2100", ""}},
    {"no leap day", [] { return Row("20130301", "20130301", "0500", "0600", ""); },
     {"20130228", "20130228", "2000", "2100", ""}},
    {"midnight in UTC", [] { return Row("20130101", "20130101", "0900", "0900", ""); },
     {"20130101", "20130101", "0000", "0000", ""}},
    {"monthly", [] { return Row("20130110", "20131231", "0800", "0900", "m"); },
     {"20130110", "20131231", "-0100", "0000", ""}},
    {"yearly signed", [] { return Row("20130110", "20201231", "0830", "0900", "y"); },
     {"20130110", "20201231", "-0030", "0000", ""}},
    {"monthly over midnight", [] { return Row("20130110", "20131231", "2300", "0100", "m"); },
     {"20130110", "20131231", "1400", "1600", ""}},
    {"monthly end 2430", [] { return Row("20130110", "20131231", "2200", "2430", "m"); },
     {"20130110", "20131231", "1300", "1530", ""}},
    {"weekly", [] { return Row("20130107", "20130331", "0100", "0200", "w", "0100000"); },
     {"20130106", "20130330", "1600", "1700", "1000000"}},
    {"weekly day set as a number", [] { return Row("20130107", "20130331", "0100", "0200", "w", "100000"); },
     {"20130106", "20130330", "1600", "1700", "1000000"}},
    {"weekly wraps Sunday", [] { return Row("20130106", "20130331", "0800", "1000", "w", "1000000"); },
     {"20130105", "20130330", "2300", "2500", "0000001"}},
    {"weekly no shift", [] { return Row("20130107", "20130331", "1000", "1100", "w", "0100000"); },
     {"20130107", "20130331", "0100", "0200", "0100000"}},
    {"daily 2200-2430 keeps its end date", [] { return Row("20130101", "20130110", "2200", "2430", "d"); },
     {"20130101", "20130110", "1300", "1530", ""}},
    {"daily end only moves the start", [] { return Row("20130101", "20130110", "", "0500", "d"); },
     {"20121231", "20130109", "", "2000", ""}},
    {"daily without end date", [] { return Row("20130101", "", "0800", "0900", "d"); },
     {"20121231", "20371230", "2300", "2400", ""}},
    {"end date 20991231 stays", [] { return Row("20130101", "20991231", "1000", "1100", "d"); },
     {"20130101", "20991231", "0100", "0200", ""}},
    {"end date 21000101 is cut", [] { return Row("20130101", "21000101", "1000", "1100", "d"); },
     {"20130101", "20991231", "0100", "0200", ""}},
    {"end date past 2100 is cut, then moved", [] { return Row("20130101", "21050505", "0800", "1000", "w", "1111111"); },
     {"20121231", "20991230", "2300", "2500", "1111111"}},
    {"no repeat without end date", [] { return Row("20130101", nullptr, "1000", "1100", ""); },
     {"20130101", "20371231", "0100", "0200", ""}},
};

void CheckAllKinds() {
    for (const KindCase& k : kKinds) {
        const Want got = Convert(k.row());
        EXPECT_EQ(got.startDate, k.want.startDate) << k.what;
        EXPECT_EQ(got.endDate, k.want.endDate) << k.what;
        EXPECT_EQ(got.startTime, k.want.startTime) << k.what;
        EXPECT_EQ(got.endTime, k.want.endTime) << k.what;
        EXPECT_EQ(got.weekday, k.want.weekday) << k.what;
    }
}

// Runs fn with TZ set to zone, restoring the host's setting afterwards.
template <class Fn>
void UnderZone(const char* zone, Fn fn) {
    const char* old = std::getenv("TZ");
    const std::string saved = old ? old : "";
    setenv("TZ", zone, 1);
    tzset();
    fn();
    if (old)
        setenv("TZ", saved.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
}

TEST(ScheduleToUtc, EveryKindUnderTwoHostZones) {
    // One zone with daylight saving in summer, one far from Japan.
    UnderZone("America/New_York", CheckAllKinds);
    UnderZone("Pacific/Auckland", CheckAllKinds);
    // Summer dates, where a zone-dependent shift would show.
    UnderZone("America/New_York", [] {
        const Want got = Convert(Row("20130701", "20130701", "0800", "1000", ""));
        EXPECT_EQ(got.startDate + got.startTime, "201306302300");
        EXPECT_EQ(got.endDate + got.endTime, "201307010100");
    });
}

TEST(ScheduleToUtc, DateListAndExceptedDatesMoveWithTheStart) {
    ConvRow row = Row("20120301", "20120310", "0300", "0400", "r");
    CiofSchedule schedule;
    schedule.listDates = {20120301, 20120305, 20130101, 0};
    schedule.exceptDates = {20120301, 0};
    std::string start;
    ASSERT_EQ(FillScheduleDates(row, schedule, &start, nullptr, nullptr, nullptr, nullptr, true), 0);
    EXPECT_EQ(start, "20120229");
    EXPECT_EQ(schedule.listDates, (std::vector<int32_t>{20120229, 20120304, 20121231, 0}));
    EXPECT_EQ(schedule.exceptDates, (std::vector<int32_t>{20120229, 0}));
    EXPECT_STREQ(schedule.endDate.GetStr(), "20120309");

    // A repeat date moves with the schedule's start time, or its end time.
    CiofSchedule onDate;
    ASSERT_EQ(FillScheduleOnDate(Row(nullptr, nullptr, "0800", "2430", "w"), "20120301", onDate, true), 0);
    EXPECT_STREQ(onDate.startDate.GetStr(), "20120229");
    EXPECT_STREQ(onDate.endTime.GetStr(), "3930");
    CiofSchedule endOnly;
    ASSERT_EQ(FillScheduleOnDate(Row(nullptr, nullptr, "", "0500", "d"), "20120301", endOnly, true), 0);
    EXPECT_STREQ(endOnly.startDate.GetStr(), "20120229");

    // A later start time leaves the list as it is.
    CiofSchedule late;
    late.listDates = {20120305};
    ASSERT_EQ(FillScheduleDates(Row("20120301", "20120310", "1000", "", "r"), late, &start, nullptr, nullptr,
                                nullptr, nullptr, true),
              0);
    EXPECT_EQ(late.listDates, (std::vector<int32_t>{20120305}));
}

TEST(ScheduleToUtc, RowRulesWithoutShiftAndFailures) {
    CiofSchedule schedule;
    std::string sd, ed, st, et;
    ASSERT_EQ(FillScheduleDates(Row("20130101", "", "2400", "2430", "w"), schedule, &sd, &ed, &st, &et, nullptr,
                                false),
              0);
    EXPECT_EQ(ed, "20371231");
    EXPECT_EQ(st, "2355");
    EXPECT_EQ(et, "0030");

    int ret = 0;
    Convert(Row("", "20130101", "0800", "0900", ""), &ret);
    EXPECT_EQ(ret, -10006);
    Convert(Row("abcd0101", "20130101", "0800", "0900", ""), &ret);
    EXPECT_NE(ret, 0);
    Convert(Row("20130101", "20130101", "0800", "0900", "x"), &ret);
    EXPECT_EQ(ret, -10007);
    Convert(Row("20130101", "20130101", "0800", "ab00", ""), &ret);
    EXPECT_EQ(ret, -10007);
    // The start-time cap compares text, so a broken start time becomes 2355.
    EXPECT_EQ(Convert(Row("20130101", "20130101", "ab00", "", "")).startTime, "1455");
    EXPECT_EQ(FillScheduleDates(ConvRow{}, schedule, nullptr, nullptr, nullptr, nullptr, nullptr, true), -99);

    // A time without any date is refused by the shift itself.
    CiofSchedule bare;
    ASSERT_EQ(bare.startTime.SetStr("0800"), 0);
    EXPECT_EQ(bare.ToUtc(), -10006);
}

TEST(ScheduleWeekdays, RotationAndPadding) {
    EXPECT_EQ(PadEveryWeekday("100000"), "0100000");
    EXPECT_EQ(PadEveryWeekday("1"), "0000001");
    EXPECT_EQ(PadEveryWeekday("0100000"), "0100000");
    EXPECT_EQ(PadEveryWeekday("1x"), "1x");
    EXPECT_EQ(PadEveryWeekday(nullptr), "");

    CiofSchedule s;
    const struct {
        const char* mask;
        int shift;
        const char* want;
    } cases[] = {
        {"1000001", 1, "1100000"}, {"1000001", -1, "0000011"}, {"1010000", 2, "0010100"},
        {"1000000", 0, "1000000"}, {"1000000", 8, "1000000"},  {"100000", -1, "100000"},
        {"10000001", -1, "00000011"},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(s.everyWeekday.SetStr(c.mask), 0);
        s.RotateWeekdays(c.shift);
        EXPECT_STREQ(s.everyWeekday.GetStr(), c.want) << c.mask << " by " << c.shift;
    }
}

TEST(ScheduleNormalize, FoldsMonthlyTimesBackIntoTheDay) {
    CiofSchedule s;
    ASSERT_EQ(s.startDate.SetStr("20130110"), 0);
    ASSERT_EQ(s.endDate.SetStr("20131231"), 0);
    ASSERT_EQ(s.startTime.SetStr("-0100"), 0);
    ASSERT_EQ(s.endTime.SetStr("0000"), 0);
    ASSERT_EQ(s.repeat.SetStr("m"), 0);
    int shift = 99;
    ASSERT_EQ(s.NormalizeTimes(&shift), 0);
    EXPECT_EQ(shift, -1);
    EXPECT_STREQ(s.startDate.GetStr(), "20130109");
    EXPECT_STREQ(s.startTime.GetStr(), "2300");
    EXPECT_STREQ(s.endTime.GetStr(), "2400");
    EXPECT_STREQ(s.endDate.GetStr(), "20131230");

    CiofSchedule late;
    ASSERT_EQ(late.startDate.SetStr("20130110"), 0);
    ASSERT_EQ(late.endDate.SetStr("20130110"), 0);
    ASSERT_EQ(late.endTime.SetStr("2600"), 0);
    ASSERT_EQ(late.repeat.SetStr("y"), 0);
    ASSERT_EQ(late.NormalizeTimes(&shift), 0);
    EXPECT_EQ(shift, 1);
    EXPECT_STREQ(late.startDate.GetStr(), "20130111");
    EXPECT_STREQ(late.endTime.GetStr(), "0200");

    CiofSchedule weekly;
    ASSERT_EQ(weekly.repeat.SetStr("w"), 0);
    ASSERT_EQ(weekly.NormalizeTimes(&shift), 0);
    EXPECT_EQ(shift, 0);
}

}  // namespace
