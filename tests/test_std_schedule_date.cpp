// The start date rule of schedule entries: eight digits that form a real day.
#include <gtest/gtest.h>

#include "MakeConvSToKiv/convstdsch/ConvDBEntryStdSchSch.h"

TEST(StdScheduleDate, EightDigitsOfARealDay) {
    const std::pair<const char*, bool> cases[] = {
        {"20120401", true},   {"20120229", true},  {"20110229", false}, {"20120230", false},
        {"2012040", false},   {"abcd0101", false}, {"2012ab01", false}, {"201204ab", false},
        {"-0120401", false},  {"2012 401", false}, {"20121301", false}, {"20120400", false},
        {"00000101", true},   {"21000229", false}, {"20000229", true},  {"20120401xyz", true},
        {"", false},          {nullptr, false},
    };
    for (const auto& [text, valid] : cases)
        EXPECT_EQ(ConvDBEntryStdSchSch::IsValidDate(text), valid) << (text ? text : "(null)");
}
