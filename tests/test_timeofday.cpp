// Times of day and last-sending stamps moved from Japan time to UTC.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "MakeConvEToKiv/convagent/kiv_pragent.h"
#include "MakeConvEToKiv/convplant/ShiftTimeOfDay.h"

namespace {

std::string Shift(const char* hhmm) {
    std::string out = "<untouched>";
    return ShiftTimeOfDay(hhmm, out) == 0 ? out : "<refused:" + out + ">";
}

// The change of day is lost; anything but four digits is refused untouched.
TEST(ShiftTimeOfDay, LosesTheChangeOfDayAndRefusesBadStamps) {
    const std::pair<const char*, const char*> cases[] = {
        {"0900", "0000"}, {"0800", "2300"}, {"1000", "0100"}, {"0030", "1530"}, {"2400", "1500"}, {"0000", "1500"},
        {"", "<refused:<untouched>>"}, {nullptr, "<refused:<untouched>>"}, {"900", "<refused:<untouched>>"},
        {"09000", "<refused:<untouched>>"}, {"9:00", "<refused:<untouched>>"},
    };
    for (const auto& [in, want] : cases) EXPECT_EQ(Shift(in), want) << (in ? in : "(null)");
}

TEST(ShiftDateAndTime, ShiftsBothAndCrossesTheMonth) {
    std::string date, time;
    ASSERT_EQ(ShiftDateAndTime("20120301", "0800", date, time), 0);
    EXPECT_EQ(date + " " + time, "20120229 2300");
    ASSERT_EQ(ShiftDateAndTime("20130101", "0859", date, time), 0);
    EXPECT_EQ(date + " " + time, "20121231 2359");
    ASSERT_EQ(ShiftDateAndTime("20130101", "0900", date, time), 0);
    EXPECT_EQ(date + " " + time, "20130101 0000");
}

TEST(ShiftDateAndTime, EmptyTimeCopiesTheDate) {
    std::string date, time = "keep";
    ASSERT_EQ(ShiftDateAndTime("20120301", "", date, time), 0);
    EXPECT_EQ(date, "20120301");
    EXPECT_EQ(time, "keep");
    EXPECT_EQ(ShiftDateAndTime("2012031", "0800", date, time), 1);
    EXPECT_EQ(ShiftDateAndTime("20120301", "800", date, time), 1);
}

}  // namespace
