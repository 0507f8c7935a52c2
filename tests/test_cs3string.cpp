// Tests of the typed field values: capacity and store rules, every member's
// accepted and refused values, and the date and time operations.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cs3base/CS3DateStr.h"
#include "MakeConvLib/cs3base/CS3Int.h"
#include "MakeConvLib/cs3base/CS3MDStr.h"
#include "MakeConvLib/cs3base/CS3String.h"
#include "MakeConvLib/cs3base/CS3TimeStr.h"
#include "MakeConvLib/cs3base/CS3YMStr.h"
#include "MakeConvLib/cs3base/CS3YearStr.h"
#include "MakeConvLib/cs3base/CiofRowInt.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"
#include "TestSupport.h"

namespace {

// Settings over a temporary root whose message files hold the keys these classes read.
class CS3Test : public ::testing::Test {
protected:
    void SetUp() override {
        testsupport::WriteFile(dir / "local/ja_JP/com", "comzlengthbyte=$limit$バイト以内\n");
        testsupport::WriteFile(dir / "local/ja_JP/com_locale",
                               "comxtimesymd2=%Y/%m/%d\ncomtimeymd2=%Y年%m月%d日(%a)\ncomtimemd2=%m/%d\n"
                               "comtimehm2=%H:%M\ncomxtimesymdhm=%Y/%m/%d %H:%M\ncomweeksun=日\n");
        ASSERT_EQ(CreateSettings(), 0);
        ASSERT_EQ(LoadSettings(dir.Path().c_str()), 0);
        ASSERT_EQ(LoadMessageFile("com"), 0);
        ASSERT_EQ(LoadMessageFile("com_locale"), 0);
    }
    void TearDown() override { ReleaseSettings(); }

    testsupport::TempDir dir;
};

template <class T>
std::unique_ptr<CS3String> Make() {
    return std::make_unique<T>();
}

// One attempt to set a value on a field that held prior (null: nothing): result and what stays.
struct SetCase {
    const char *member;
    std::function<std::unique_ptr<CS3String>()> make;
    const char *prior, *input;
    int ret;
    const char* stored;
};

// A setter's code and the text it left in the field, judged together.
::testing::AssertionResult Left(int ret, const CS3String& field, int wantRet, const char* wantText) {
    if (ret == wantRet && std::string(field.GetStr()) == wantText) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "code " << ret << " text \"" << field.GetStr() << "\", wanted "
                                         << wantRet << " \"" << wantText << "\"";
}

const SetCase kSetCases[] = {
    {"CS3String", Make<CS3String>, "old", nullptr, 0, ""},
    {"CS3String", Make<CS3String>, nullptr, nullptr, 0, ""},  // first store of nothing
    {"CS3StringH", Make<CS3StringH>, "old", "", -10006, "old"},
    {"CS3StringH", Make<CS3StringH>, "old", "a", 0, "a"},

    {"CS3Int", Make<CS3Int>, "5", "123456789", 0, "123456789"},
    {"CS3Int", Make<CS3Int>, "5", "-123456789", 0, "-123456789"},
    {"CS3Int", Make<CS3Int>, "5", "1234567890", -63, ""},
    {"CS3Int", Make<CS3Int>, "5", "1.5", -13009, ""},
    {"CS3Int", Make<CS3Int>, "5", "abc", -13006, ""},
    {"CS3Int", Make<CS3Int>, "5", "12 ", 0, "12 "},
    {"CS3Int", Make<CS3Int>, "5", "", 0, ""},
    {"CS3Double", Make<CS3Double>, nullptr, "123456789012", 0, "123456789012"},
    {"CS3Double", Make<CS3Double>, nullptr, "1234567890123", -63, ""},

    {"CiofRowInt", Make<CiofRowInt>, "50", "10", 0, "10"},
    {"CiofRowInt", Make<CiofRowInt>, "50", "9", -10007, "10"},
    {"CiofRowInt", Make<CiofRowInt>, "50", "101", -10007, "10"},
    {"CiofRowInt", Make<CiofRowInt>, "50", "", -10007, "10"},
    {"CiofRowInt", Make<CiofRowInt>, "50", "x", -13006, "10"},

    {"CS3FixedInt", Make<CS3FixedInt>, "0000000001", "1234567890", 0, "1234567890"},
    {"CS3FixedInt", Make<CS3FixedInt>, "0000000001", "123", -10007, ""},
    {"CS3FixedInt", Make<CS3FixedInt>, "0000000001", "12345678901", -62, "0000000001"},

    {"CS3DateStr", Make<CS3DateStr>, "20010101", "2004/2/29", 0, "20040229"},
    {"CS3DateStr", Make<CS3DateStr>, "20010101", "2004-02-29", 0, "20040229"},
    {"CS3DateStr", Make<CS3DateStr>, "20010101", "2003/2/29", -13002, ""},
    {"CS3DateStr", Make<CS3DateStr>, "20010101", "20041301", -13002, ""},
    {"CS3DateStr", Make<CS3DateStr>, "20010101", "x", -13004, ""},
    {"CS3DateStr", Make<CS3DateStr>, "20010101", "200402291", -13004, ""},
    {"CS3DateStr", Make<CS3DateStr>, "20010101", "99999999999/1/1", -13004, ""},
    {"CS3DateStr", Make<CS3DateStr>, "20010101", "", 0, ""},
    {"CS3DateStrH", Make<CS3DateStrH>, "20010101", "", -10006, "20010101"},
    {"CS3DateStrH", Make<CS3DateStrH>, "20010101", "2004/3/1", 0, "20040301"},

    {"CS3DateTimeStr", Make<CS3DateTimeStr>, nullptr, "20010203240000", 0, "20010203240000"},
    {"CS3DateTimeStr", Make<CS3DateTimeStr>, nullptr, "20010203126000", -10007, ""},
    {"CS3DateTimeStr", Make<CS3DateTimeStr>, nullptr, "20010203120060", -10007, ""},
    {"CS3DateTimeStr", Make<CS3DateTimeStr>, nullptr, "2001/2/3", -10007, ""},
    {"CS3DateTimeStr", Make<CS3DateTimeStr>, nullptr, "1/2/3", -10007, ""},

    {"CS3TimeStr", Make<CS3TimeStr>, "1200", "930", 0, "0930"},
    {"CS3TimeStr", Make<CS3TimeStr>, "1200", "9:30", 0, "0930"},
    {"CS3TimeStr", Make<CS3TimeStr>, "1200", "24:00", -13007, "2400"},
    {"CS3TimeStr", Make<CS3TimeStr>, "1200", "25:00", -13007, ""},
    {"CS3TimeStr", Make<CS3TimeStr>, "1200", "ab:cd", -13005, ""},
    {"CS3TimeStr", Make<CS3TimeStr>, "1200", "1260", 0, "1260"},
    {"CS3TimeStr", Make<CS3TimeStr>, "1200", "12345", -62, "1200"},
    {"CS3TimeStr", Make<CS3TimeStr>, "1200", nullptr, 0, ""},

    {"CS3YearStr", Make<CS3YearStr>, "2000", "2004", 0, "2004"},
    {"CS3YearStr", Make<CS3YearStr>, "2000", "-123", -10007, ""},
    {"CS3YearStr", Make<CS3YearStr>, "2000", "204", -10007, ""},
    {"CS3YearStrH", Make<CS3YearStrH>, "2000", "", -10006, "2000"},
    {"CS3YMStr", Make<CS3YMStr>, "200001", "200412", 0, "200412"},
    {"CS3YMStr", Make<CS3YMStr>, "200001", "200413", -10007, ""},
    {"CS3MDStr", Make<CS3MDStr>, "0101", "0229", 0, "0229"},
    {"CS3MDStr", Make<CS3MDStr>, "0101", "0230", -10007, ""},
    {"CS3MDStrH", Make<CS3MDStrH>, "0101", nullptr, -10006, "0101"},
};

}  // namespace

TEST_F(CS3Test, MembersAcceptRefuseAndClear) {
    for (const SetCase& c : kSetCases) {
        SCOPED_TRACE(std::string(c.member) + " <- \"" + (c.input ? c.input : "(null)") + "\"");
        auto field = c.make();
        if (c.prior) {
            ASSERT_EQ(field->SetStr(c.prior), 0);
            ASSERT_STREQ(field->GetStr(), c.prior);
        }
        EXPECT_TRUE(Left(field->SetStr(c.input), *field, c.ret, c.stored));
        field->Clear();
        EXPECT_STREQ(field->GetStr(), std::string(c.member) == "CiofRowInt" ? "10" : "");
    }
    EXPECT_STREQ(CiofRowInt().GetStr(), "10");
}

TEST_F(CS3Test, BoundedStoreKeepsItsBufferAndRecordsTheByteLimit) {
    CS3DateStr date;
    EXPECT_STREQ(date.GetStr(), "");
    EXPECT_TRUE(date.IsEmpty());
    ASSERT_EQ(date.SetStr("20010203"), 0);
    const char* buffer = date.GetStr();
    date.Clear();
    EXPECT_EQ(date.GetStr(), buffer);  // zero-filled, not freed
    EXPECT_TRUE(date.IsEmpty());

    // A refused over-long text leaves the old value and the byte limit message.
    CS3Int number;
    ASSERT_EQ(number.SetStr("42"), 0);
    EXPECT_TRUE(Left(number.CS3String::SetStr("12345678901"), number, -62, "42"));
    EXPECT_STREQ(GetLastErrorText(), "10バイト以内");
    EXPECT_NE(std::string(GetErrorDetail()), "");  // the refusal left trace text

    // The length form takes the first len bytes and never reads past the text.
    CS3String text;
    EXPECT_TRUE(Left(text.SetStrLen("abcdef", 3), text, 0, "abc"));
    EXPECT_TRUE(Left(text.SetStrLen("ab", 100), text, 0, "ab"));
    EXPECT_TRUE(Left(text.SetStrLen("ab", -1), text, -99, "ab"));
}

TEST_F(CS3Test, AppendCopyAndSelfReference) {
    CS3String text;
    EXPECT_EQ(text.Append("abcd"), 0);
    EXPECT_EQ(text.Append(text.GetStr()), 0);  // its own text, across a reallocation
    EXPECT_TRUE(Left(text.SetStr(text.GetStr() + 2), text, 0, "cdabcd"));

    CS3Int bounded;
    EXPECT_EQ(bounded.Append("12345"), 0);
    EXPECT_EQ(bounded.Append("678901"), -62);  // would need twelve bytes
    EXPECT_TRUE(Left(bounded.Append("6789"), bounded, 0, "123456789"));
    EXPECT_EQ(bounded.SetInt(2147483647), -63);

    // "あい" is six bytes: a copy never ends inside a character.
    CS3String wide;
    wide.SetStr("\xE3\x81\x82\xE3\x81\x84");
    char out[8] = "xxxxxxx";
    EXPECT_EQ(wide.CopyTo(out, 6), 0);
    EXPECT_STREQ(out, "\xE3\x81\x82");
    EXPECT_EQ(wide.CopyTo(out, 7), 0);
    EXPECT_STREQ(out, "\xE3\x81\x82\xE3\x81\x84");
    EXPECT_EQ(wide.CopyTo(nullptr, 7), -99);
}

TEST_F(CS3Test, DatePartsRangeAndDaySteps) {
    CS3DateStr ymd;
    EXPECT_EQ(ymd.SetYMD(nullptr, "", nullptr), 0);
    EXPECT_EQ(ymd.SetYMD("", "2", "29"), -13002);
    EXPECT_EQ(ymd.SetYMD("20041", "2", "29"), -62);
    EXPECT_EQ(ymd.SetYMD("2004", "2x", "29"), -13006);
    EXPECT_TRUE(Left(ymd.SetYMD("2004", "2", "29"), ymd, 0, "20040229"));
    EXPECT_EQ(ymd.SetYMD("2003", "2", "29"), -13002);
    ymd.Clear();

    CS3DateStrH required;
    EXPECT_EQ(required.SetYMD("", "", ""), -10006);
    EXPECT_EQ(required.SetInRange(""), -10006);

    EXPECT_EQ(ymd.GetYear(), -1);
    EXPECT_EQ(ymd.GetMonth("19991231"), 12);  // an empty value reads the default

    const std::pair<const char*, int> range[] = {
        {"19700102", -70001}, {"19700103", 0}, {"21000101", -70001}, {"20991231", 0}, {"", 0}, {"x", -13004},
    };
    for (const auto& [value, expected] : range) {
        CS3DateStr date;
        EXPECT_TRUE(Left(date.SetInRange(value), date, expected, expected != 0 ? "" : value)) << value;
    }
    CS3DateTimeStr stamp;
    EXPECT_EQ(stamp.SetInRange("21000101000000"), -70001);
    EXPECT_EQ(stamp.SetInRange("20991231235959"), 0);

    CS3DateStr date;
    EXPECT_EQ(date.NextDay(), -10007);
    date.SetStr("20131231");
    EXPECT_TRUE(Left(date.NextDay(), date, 0, "20140101"));
    date.SetStr("20040301");
    EXPECT_TRUE(Left(date.PrevDay(), date, 0, "20040229"));

    // A date and time keeps its time part.
    EXPECT_TRUE(Left(stamp.NextDay(), stamp, 0, "21000101235959"));
    EXPECT_EQ(stamp.GetDatePart(), "21000101");
    EXPECT_STREQ(stamp.GetTimePart(), "235959");
}

TEST_F(CS3Test, LocalisedOutput) {
    char out[64];
    CS3DateStr date;
    EXPECT_EQ(date.FormatDate(nullptr, 64, true), -99);
    date.SetStr("20040229");
    date.FormatDate(out, sizeof out, true);
    EXPECT_STREQ(out, "2004/02/29");
    date.FormatDate(out, sizeof out, false);
    EXPECT_STREQ(out, "2004年02月29日(日)");
    date.FormatWeekdayDate(out, sizeof out);
    EXPECT_STREQ(out, "02/29(日)");
    date.FormatWeekdayDate(out, 8);  // the name would only fit in part
    EXPECT_STREQ(out, "02/29(");

    CS3DateTimeStr stamp;
    stamp.SetStr("20040229093000");
    stamp.FormatDateTime(out, sizeof out, true);
    EXPECT_STREQ(out, "2004/02/29 09:30");

    CS3TimeStr time;
    time.SetStr("0930");
    EXPECT_EQ(time.FormatTime(out, sizeof out, nullptr), 0);
    EXPECT_STREQ(out, "09:30");
}

TEST_F(CS3Test, TimePartsAndMinuteArithmetic) {
    CS3TimeStr time;
    EXPECT_EQ(time.GetHour(), -1);
    EXPECT_EQ(time.SetHM("", nullptr), 0);
    EXPECT_EQ(time.SetHM("", "30"), -10007);
    EXPECT_EQ(time.SetHM("123", "0"), -62);
    EXPECT_EQ(time.SetHM("x", "0"), -13006);
    EXPECT_TRUE(Left(time.SetHM("9", ""), time, 0, "0900"));
    EXPECT_EQ(time.GetMinute(), 0);

    const struct { int base, delta; const char* result; } steps[] = {
        {930, 45, "1015"}, {930, -45, "0845"}, {10, -30, "0000"},  // below zero hours
        {2330, 45, "0000"},                                          // past the last hour: next day's hour 0
        {1200, 2000000000, "1200"},                                  // no overflow; result refused, value kept
    };
    for (const auto& s : steps) {
        time.SetStr("1200");
        time.AddMinutes(s.base, s.delta);
        EXPECT_STREQ(time.GetStr(), s.result) << s.base << " + " << s.delta;
    }
}

TEST_F(CS3Test, LengthFormsValidateToo) {
    CS3MDStr md;
    EXPECT_TRUE(Left(md.SetStrLen("0229xx", 4), md, 0, "0229"));
    EXPECT_TRUE(Left(md.SetStrLen("02301", 4), md, -10007, ""));
    EXPECT_TRUE(Left(md.SetMD("2", "29"), md, 0, "0229"));

    CS3YMStr ym;
    EXPECT_EQ(ym.NextMonth(), -10007);
    ym.SetStr("200412");
    EXPECT_TRUE(Left(ym.NextMonth(), ym, 0, "200501"));

    CS3YearStrH year;
    EXPECT_EQ(year.SetStrLen("2004", 0), -10006);
    EXPECT_EQ(year.SetStrLen("-12x", 3), -10007);
    EXPECT_TRUE(Left(year.SetStrLen("20045", 4), year, 0, "2004"));
}
