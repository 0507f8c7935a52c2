// Tests of the literal escaping and the base-36 ids of the database module.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "base/comClock.h"
#include "database/CdDB.h"

namespace {

TEST(CdDBEscape, QuotesBackslashSetAndDoubledChar) {
    const struct {
        const char* in;
        const char* set;
        char doubled;
        const char* out;
        int rc;
    } cases[] = {
        {"it's 'x'", nullptr, '\0', "it''s ''x''", 0},
        {"a\\b", nullptr, '\0', "a\\b", 0},           // without a set a backslash is copied as it is
        {"50%_x", "%_", '\0', "50\\\\%\\\\_x", 1},    // two backslashes in front of the set's characters
        {"a\\b", "\\", '\0', "a\\\\\\\\b", 1},        // and one more in front of a backslash
        {"plain", "%", '\0', "plain", 0},
        {"a:b'", nullptr, ':', "a::b''", 0},
        {"", nullptr, '\0', "", 0},
        {nullptr, "%", '\0', "", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in ? c.in : "(null)");
        char out[256] = "junk";
        EXPECT_EQ(EscapeLiteral(c.in, out, c.set, c.doubled), c.rc);
        EXPECT_STREQ(out, c.out);
    }
    EXPECT_EQ(EscapeLiteral("50%", nullptr, "%", '\0'), 0);
}

// Every conversion writes into a heap block of the size its contract names, so that
// AddressSanitizer sees a write beyond it.
TEST(CdDBBase36, ConversionsAndTheirLimits) {
    using Fn = int (*)(const char*, char*);
    const std::string nines(127, '9'), tooLong(128, '1');
    const struct {
        Fn fn;
        const char* in;
        const char* out;
        int rc;
    } cases[] = {
        {DecimalToBase36, "0", "0", 0},
        {DecimalToBase36, "35", "z", 0},
        {DecimalToBase36, "36", "10", 0},
        {DecimalToBase36, "000123456789", "21i3v9", 0},
        {DecimalToBase36, "18446744073709551616", "3w5e11264sgsg", 0},  // 2^64: beyond 64 bits
        {DecimalToBase36, nines.c_str(),
         "8p6mt7w6mt3n9hzt6nupxwdhtr097xspyuetq6ry6pdq8cdrg5ap8n6elx1pf7ppzmtujpovqfmd7pn5dr", 0},
        {DecimalToBase36, tooLong.c_str(), "", -1099},
        {DecimalToBase36, "", "", -1099},
        {DecimalToBase36, nullptr, "", -1099},
        {DecimalToBase36, "12a3", "c", -1099},  // the digits ahead of a non-digit are converted all the same
        {DecimalToBase36, "-5", "", -1099},
        {MakeBase36Id, "123456789", "00000021i3v9", 0},
        {MakeBase36Id, "0", "000000000000", 0},
        {MakeBase36Id, "999999999999999999", "7lieexzx4kxr", 0},
        {MakeBase36Id, "4738381338321616895", "zzzzzzzzzzzz", 0},  // 36^12 - 1 is the largest that fits
        {MakeBase36Id, "4738381338321616896", "", -1099},
        {MakeBase36Id, "12x", "00000000000c", -1099},
        {Base36ToDecimal, "zz", "1295", 0},
        {Base36ToDecimal, "000000000000", "0", 0},
        {Base36ToDecimal, "3w5e11264sgsg", "18446744073709551616", 0},
        {Base36ToDecimal, "Zz", "", -1099},  // upper case is outside the alphabet
        {Base36ToDecimal, "a-b", "", -1099},
        {Base36ToDecimal, "", "", -1099},
        {Base36ToDecimal, nullptr, "", -1099},
        {Base36ToDecimalPadded, "zz", "000000000000001295", 0},
        {Base36ToDecimalPadded, "00000021i3v9", "000000000123456789", 0},  // an id of MakeBase36Id back
        {Base36ToDecimalPadded, "zzzzzzzzzzzz", "4738381338321616895", 0},  // longer than 18: not cut
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in ? c.in : "(null)");
        const std::size_t textSize = c.in ? 2 * std::strlen(c.in) + 2 : 2;
        const std::size_t size = c.fn == DecimalToBase36 ? kCdDBBase36Size
                                 : c.fn == MakeBase36Id  ? kCdDBIdSize
                                 : c.fn == Base36ToDecimalPadded ? std::max<std::size_t>(19, textSize)
                                                                 : textSize;
        std::unique_ptr<char[]> out(new char[size]);
        EXPECT_EQ(c.fn(c.in, out.get()), c.rc);
        EXPECT_STREQ(out.get(), c.out);
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

}  // namespace
