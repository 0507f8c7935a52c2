// Tests of the literal escaping and the base-36 ids of the database module.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "base/comClock.h"
#include "database/CdDB.h"

namespace {

std::string Escape(const char* source, const char* backslashSet = nullptr, char doubled = '\0',
                   int* rc = nullptr) {
    char out[256];
    const int result = EscapeLiteral(source, out, backslashSet, doubled);
    if (rc) *rc = result;
    return out;
}

std::string ToBase36(const char* decimal, int* rc) {
    char out[kCdDBBase36Size];
    *rc = DecimalToBase36(decimal, out);
    return out;
}

std::string ToId(const char* decimal, int* rc) {
    char out[kCdDBIdSize];
    *rc = MakeBase36Id(decimal, out);
    return out;
}

}  // namespace

TEST(CdDBEscape, QuotesBackslashSetAndDoubledChar) {
    int rc = -5;
    EXPECT_EQ(Escape("it's 'x'", nullptr, '\0', &rc), "it''s ''x''");
    EXPECT_EQ(rc, 0);
    // Without a backslash set a backslash is copied as it is.
    EXPECT_EQ(Escape("a\\b"), "a\\b");
    // Characters of the set get two backslashes in front; a backslash one more.
    EXPECT_EQ(Escape("50%_x", "%_", '\0', &rc), "50\\\\%\\\\_x");
    EXPECT_EQ(rc, 1);
    EXPECT_EQ(Escape("a\\b", "\\", '\0', &rc), "a\\\\\\\\b");
    EXPECT_EQ(rc, 1);
    EXPECT_EQ(Escape("plain", "%", '\0', &rc), "plain");
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(Escape("a:b'", nullptr, ':'), "a::b''");
    EXPECT_EQ(Escape(""), "");
    EXPECT_EQ(Escape(nullptr, "%", '\0', &rc), "");
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(EscapeLiteral("50%", nullptr, "%", '\0'), 0);
}

TEST(CdDBBase36, DecimalToBase36) {
    int rc = 0;
    EXPECT_EQ(ToBase36("0", &rc), "0");
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(ToBase36("35", &rc), "z");
    EXPECT_EQ(ToBase36("36", &rc), "10");
    EXPECT_EQ(ToBase36("000123456789", &rc), "21i3v9");
    EXPECT_EQ(rc, 0);
    // Beyond 64 bits: 2^64.
    EXPECT_EQ(ToBase36("18446744073709551616", &rc), "3w5e11264sgsg");
    const std::string nines(127, '9');
    EXPECT_EQ(ToBase36(nines.c_str(), &rc),
              "8p6mt7w6mt3n9hzt6nupxwdhtr097xspyuetq6ry6pdq8cdrg5ap8n6elx1pf7ppzmtujpovqfmd7pn5dr");
    EXPECT_EQ(rc, 0);
}

TEST(CdDBBase36, DecimalToBase36RefusesBadInput) {
    int rc = 0;
    const std::string tooLong(128, '1');
    EXPECT_EQ(ToBase36(tooLong.c_str(), &rc), "");
    EXPECT_EQ(rc, -1099);
    EXPECT_EQ(ToBase36("", &rc), "");
    EXPECT_EQ(rc, -1099);
    EXPECT_EQ(ToBase36(nullptr, &rc), "");
    EXPECT_EQ(rc, -1099);
    // The digits ahead of the first non-digit are converted all the same.
    EXPECT_EQ(ToBase36("12a3", &rc), "c");
    EXPECT_EQ(rc, -1099);
    EXPECT_EQ(ToBase36("-5", &rc), "");
    EXPECT_EQ(rc, -1099);
}

TEST(CdDBBase36, MakeBase36IdPadsToTwelve) {
    int rc = 0;
    EXPECT_EQ(ToId("123456789", &rc), "00000021i3v9");
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(ToId("0", &rc), "000000000000");
    EXPECT_EQ(ToId("999999999999999999", &rc), "7lieexzx4kxr");
    EXPECT_EQ(rc, 0);
    // 36^12 - 1 is the largest that fits; 36^12 doesn't.
    EXPECT_EQ(ToId("4738381338321616895", &rc), "zzzzzzzzzzzz");
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(ToId("4738381338321616896", &rc), "");
    EXPECT_EQ(rc, -1099);
    EXPECT_EQ(ToId("12x", &rc), "00000000000c");
    EXPECT_EQ(rc, -1099);
}

TEST(CdDBBase36, Base36ToDecimalAndPadded) {
    char out[64];
    EXPECT_EQ(Base36ToDecimal("zz", out), 0);
    EXPECT_STREQ(out, "1295");
    EXPECT_EQ(Base36ToDecimal("000000000000", out), 0);
    EXPECT_STREQ(out, "0");
    EXPECT_EQ(Base36ToDecimal("3w5e11264sgsg", out), 0);
    EXPECT_STREQ(out, "18446744073709551616");
    EXPECT_EQ(Base36ToDecimalPadded("zz", out), 0);
    EXPECT_STREQ(out, "000000000000001295");
    EXPECT_EQ(Base36ToDecimalPadded("zzzzzzzzzzzz", out), 0);
    EXPECT_STREQ(out, "4738381338321616895");  // longer than 18: not cut

    EXPECT_EQ(Base36ToDecimal("Zz", out), -1099);  // upper case is outside the alphabet
    EXPECT_STREQ(out, "");
    EXPECT_EQ(Base36ToDecimal("a-b", out), -1099);
    EXPECT_EQ(Base36ToDecimal("", out), -1099);
    EXPECT_EQ(Base36ToDecimal(nullptr, out), -1099);

    // Round trip of the ids that the conversions make.
    for (const char* decimal : {"1", "35", "36", "1000000", "240305060708123456"}) {
        char id[kCdDBIdSize];
        ASSERT_EQ(MakeBase36Id(decimal, id), 0);
        ASSERT_EQ(Base36ToDecimalPadded(id, out), 0);
        EXPECT_EQ(std::string(out), std::string(18 - std::strlen(decimal), '0') + decimal);
    }
}

TEST(CdDBBase36, MakeStampIdUsesUtcClockWithMicroseconds) {
    // 2024-03-05 06:07:08.123456 UTC
    static const timespec kNow{1709618828, 123456789};
    const comClockFunc previous = comSetClockFunction([](timespec* now) { *now = kNow; });
    char id[kCdDBIdSize];
    char stamp[kCdDBStampSize];
    const int rc = MakeStampId(id, stamp);
    comSetClockFunction(previous);
    EXPECT_EQ(rc, 0);
    EXPECT_STREQ(stamp, "240305060708123456");
    EXPECT_STREQ(id, "1tq518vgt9vk");
    EXPECT_EQ(MakeStampId(id, nullptr), 0);
    EXPECT_EQ(std::strlen(id), 12u);
}
