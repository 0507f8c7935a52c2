// Times of day and last-sending stamps moved from Japan time to UTC.
#include <gtest/gtest.h>

#include <string>

#include "MakeConvEToKiv/convagent/kiv_pragent.h"
#include "MakeConvEToKiv/convplant/ShiftTimeOfDay.h"

namespace {

std::string Shift(const char* hhmm) {
    std::string out = "<untouched>";
    return ShiftTimeOfDay(hhmm, out) == 0 ? out : "<refused:" + out + ">";
}

TEST(ShiftTimeOfDay, LosesTheChangeOfDay) {
    EXPECT_EQ(Shift("0900"), "0000");
    EXPECT_EQ(Shift("0800"), "2300");
    EXPECT_EQ(Shift("1000"), "0100");
    EXPECT_EQ(Shift("0030"), "1530");
    EXPECT_EQ(Shift("2400"), "1500");
    EXPECT_EQ(Shift("0000"), "1500");
}

TEST(ShiftTimeOfDay, RefusesWhatMakesABadStamp) {
    EXPECT_EQ(Shift(""), "<refused:<untouched>>");
    EXPECT_EQ(Shift(nullptr), "<refused:<untouched>>");
    EXPECT_EQ(Shift("900"), "<refused:<untouched>>");  // never padded here
    EXPECT_EQ(Shift("09000"), "<refused:<untouched>>");
    EXPECT_EQ(Shift("9:00"), "<refused:<untouched>>");
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
