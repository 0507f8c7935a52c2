// Tests of the text helpers, the UTF-8 cutters and the value strings.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "base/NUString.h"
#include "base/comClock.h"
#include "base/comStr.h"

namespace {

// "あ" and "い" are three bytes, "𠀋" is four.
const std::string kA = "\xE3\x81\x82";
const std::string kI = "\xE3\x81\x84";
const std::string kWide = "\xF0\xA0\x80\x8B";

std::string CutBytes(std::string text, int position, bool clamp) {
    comUtf8CutBytes(text.data(), position, clamp);
    return text.c_str();
}

std::string CutChars(std::string text, int count, bool wideAsOne, bool* cut) {
    *cut = comUtf8CutChars(text.data(), count, wideAsOne);
    return text.c_str();
}

// A setter's code and the text it left in the string, judged together.
::testing::AssertionResult Left(int ret, const NUString& text, int wantRet, const std::string& wantText) {
    if (ret == wantRet && text.GetStr() == wantText) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "code " << ret << " text \"" << text.GetStr() << "\", wanted " << wantRet
                                         << " \"" << wantText << "\"";
}

void FakeClock(timespec* now) { *now = {1388502000, 0}; }  // 2014-01-01 00:00 at +0900

}  // namespace

TEST(ComStr, TrimCompareAndNumeric) {
    std::string text = "ab \t\r\n";
    EXPECT_STREQ(comStrRTrim(text.data()), "ab");
    text = "ab\v";
    EXPECT_STREQ(comStrRTrim(text.data()), "ab\v");  // only blank, TAB, LF and CR
    EXPECT_EQ(comStrCaseCmp("ABC", "abc"), 0);
    EXPECT_EQ(comStrCaseCmp(nullptr, ""), 0);
    EXPECT_GT(comStrCaseCmp("a", nullptr), 0);
    EXPECT_EQ(comStrNCaseCmp("ABCx", "abcy", 3), 0);

    const std::pair<const char*, bool> numeric[] = {
        {"123", true}, {"-5", true},  {"12 \t\r\n", true}, {"-", false}, {"- 5", false},
        {"1 2", false}, {"", false},  {" 1", false},       {"+1", false}, {"--1", false},
    };
    for (const auto& [input, expected] : numeric) EXPECT_EQ(comIsNumeric(input), expected) << '"' << input << '"';
    EXPECT_FALSE(comIsNumeric(nullptr));
}

// The lead byte decides the length; cutters never leave half a character.
TEST(ComStr, Utf8Cutters) {
    const std::pair<unsigned, int> cases[] = {{0x7F, 1}, {0x80, -1}, {0xC1, -1}, {0xC2, 2}, {0xDF, 2},
                                              {0xE0, 3}, {0xEF, 3},  {0xF4, 4},  {0xF5, -1}, {0xF8, 5},
                                              {0xFB, 5}, {0xFD, 6},  {0xFE, -1}};
    for (const auto& [lead, len] : cases)
        EXPECT_EQ(comUtf8CharLen(static_cast<unsigned char>(lead)), len) << std::hex << lead;

    // Cutting by bytes never splits a character.
    const std::string text = "a" + kA + kI;  // 7 bytes
    EXPECT_EQ(CutBytes(text, 2, false), "a");
    EXPECT_EQ(CutBytes(text, 3, false), "a");
    EXPECT_EQ(CutBytes(text, 4, false), "a" + kA);
    EXPECT_EQ(CutBytes(text, 6, false), "a" + kA);
    EXPECT_EQ(CutBytes(text, 0, false), "");
    EXPECT_EQ(CutBytes(text, 50, true), text);
    EXPECT_EQ(CutBytes(kWide + "b", 3, false), "");

    // A text that already ends in half a character: only clamping looks at it.
    const std::string broken = "a" + kA.substr(0, 2);
    EXPECT_EQ(CutBytes(broken, 10, false), broken);
    EXPECT_EQ(CutBytes(broken, 10, true), "a");
    EXPECT_EQ(CutBytes("\x81\x82\x83x", 2, false), "");  // no lead byte at all

    // Cutting by characters counts a four-byte one as two, unless told otherwise.
    const std::string mixed = "a" + kA + kWide + "b";  // 4 characters, weight 5
    const struct { std::string text; int count; bool wideAsOne; std::string expected; bool cut; } chars[] = {
        {mixed, 1, false, "a", true},
        {mixed, 3, false, "a" + kA, true},  // the wide one doesn't fit
        {mixed, 3, true, "a" + kA + kWide, true},
        {mixed, 5, false, mixed, false},
        {mixed, 4, true, mixed, false},
        {mixed, 0, false, "", false},
        {"ab" + kA.substr(0, 2), 10, false, "ab", true},  // sequence past the end
    };
    for (const auto& c : chars) {
        bool cut = !c.cut;
        EXPECT_EQ(CutChars(c.text, c.count, c.wideAsOne, &cut), c.expected) << c.count;
        EXPECT_EQ(cut, c.cut) << c.count;
    }
}

TEST(NUString, SetAppendEditAndCompare) {
    NUString s;
    ASSERT_NE(s.GetStr(), nullptr);
    EXPECT_TRUE(s.IsEmpty());
    EXPECT_EQ(s.SetStr(nullptr), 0);
    EXPECT_TRUE(s.IsEmpty());
    EXPECT_EQ(s.Compare(nullptr), 0);
    EXPECT_EQ(s.Append(nullptr), 0);

    EXPECT_TRUE(Left(s.SetStrLen("abcdef", 3), s, 0, "abc"));
    EXPECT_EQ(s.SetStr("hello"), 0);
    EXPECT_EQ(s.SetStr(s.GetStr() + 2), 0);  // from its own text
    EXPECT_EQ(s.Append(" world"), 0);
    EXPECT_TRUE(Left(s.Append(s.GetStr()), s, 0, "llo worldllo world"));

    s.SetStr("a/b/c \t\n");
    s.ReplaceChar('/', '_');
    s.RTrim();
    EXPECT_STREQ(s.GetStr(), "a_b_c");
    EXPECT_LT(s.Compare("a_b_d"), 0);
    EXPECT_EQ(s.CompareN("a_bXX", 3), 0);
    EXPECT_EQ(s.CompareNoCase("A_B_C"), 0);
    EXPECT_EQ(s.CompareNoCaseN("A_Bzz", 3), 0);
    s.Clear();
    EXPECT_TRUE(s.IsEmpty());
}

// Appends continue from the kept length after every other change, and a long run
// of small appends costs linear time (a scan of the text per append would take
// minutes here).
TEST(NUString, AppendsFollowEveryEditAndStayLinear) {
    NUString s("abc  ");
    s.RTrim();
    s.Append("d");
    NUString copy(s);
    copy.Append("e");
    NUString moved(std::move(copy));
    moved.Append("f");
    NUString assigned;
    assigned = moved;
    assigned.Append("g");
    EXPECT_STREQ(assigned.GetStr(), "abcdefg");
    assigned.SetStrLen("xyz", 2);
    assigned.Append("!");
    EXPECT_STREQ(assigned.GetStr(), "xy!");
    assigned.Clear();
    assigned.Append("q");
    EXPECT_STREQ(assigned.GetStr(), "q");

    NUString big;
    const std::string piece = "0123456789";
    for (int i = 0; i < 400000; ++i) ASSERT_EQ(big.Append(piece.c_str()), 0);
    const std::string text = big.GetStr();
    ASSERT_EQ(text.size(), 4000000u);
    EXPECT_EQ(text.compare(3999990, 10, piece), 0);
}

TEST(NUString, PrintfIsBoundedByFormatLength) {
    NUString s;
    EXPECT_EQ(s.Printf("%s-%d", "ab", 42), 0);
    EXPECT_EQ(s.Printf("[%s]", s.GetStr()), 0);  // its own text as argument
    EXPECT_STREQ(s.GetStr(), "[ab-42]");
    const std::string longText(20000, 'x');
    EXPECT_EQ(s.Printf("%s", longText.c_str()), 0);
    EXPECT_EQ(std::strlen(s.GetStr()), std::strlen("%s") + 8190);
}

TEST(NUString, CopiesAreIndependent) {
    NUString a("text");
    NUString b(a);
    a.SetStr("changed");
    EXPECT_STREQ(b.GetStr(), "text");
    b = a;
    EXPECT_STREQ(b.GetStr(), "changed");
    NUString c(std::move(b));
    EXPECT_STREQ(c.GetStr(), "changed");
    c = NUString();
    EXPECT_TRUE(c.IsEmpty());

    NUDateStr d1;
    d1.SetStr("20040229");
    NUDateStr d2(d1);
    EXPECT_TRUE(Left(d2.NextDay(), d2, 0, "20040301"));
    EXPECT_STREQ(d1.GetStr(), "20040229");
}

TEST(NUString, CutBytesCharsAndCopyTo) {
    NUString s;
    const std::string text = "ab" + kA + kI;  // 8 bytes
    EXPECT_TRUE(Left(s.SetCutBytes(text.c_str(), 4, nullptr), s, 0, "ab"));
    EXPECT_TRUE(Left(s.SetCutBytes(text.c_str(), 6, ".."), s, 0, "ab.."));  // 4 bytes of room end inside "あ"
    EXPECT_TRUE(Left(s.SetCutBytes(text.c_str(), 7, ".."), s, 0, "ab" + kA + ".."));
    EXPECT_TRUE(Left(s.SetCutBytes(text.c_str(), 8, ".."), s, 0, text));

    EXPECT_TRUE(Left(s.SetCutChars("abcdefg", 3, "..", false), s, 0, "a.."));
    EXPECT_TRUE(Left(s.SetCutChars("abc", 3, "..", false), s, 0, "a.."));  // room for the suffix is kept
    const std::string wide = kWide + kWide + "c";
    EXPECT_TRUE(Left(s.SetCutChars(wide.c_str(), 4, "..", false), s, 0, kWide + ".."));
    EXPECT_TRUE(Left(s.SetCutChars(wide.c_str(), 4, "..", true), s, 0, kWide + kWide + ".."));

    char out[8] = "zzz";
    EXPECT_EQ(s.CopyTo(nullptr, 8), -1);
    s.SetStr(nullptr);
    EXPECT_EQ(s.CopyTo(out, sizeof out), 0);
    EXPECT_STREQ(out, "");
    s.SetStr(("a" + kA + kI).c_str());
    EXPECT_EQ(s.CopyTo(out, 6), 0);  // 5 bytes of room end inside "い"
    EXPECT_EQ(std::string(out), "a" + kA);
}

TEST(NUString, FixedIntIsBoundedAndValidated) {
    NUFixedInt n(5);
    EXPECT_EQ(n.SetStr("1234"), 0);
    const char* storage = n.GetStr();
    EXPECT_TRUE(Left(n.SetStr("123456"), n, -30, "1234"));  // too long: the old value stays
    EXPECT_TRUE(Left(n.SetStr("123"), n, -31, ""));
    EXPECT_EQ(n.SetStr("12a4"), -31);
    EXPECT_EQ(n.SetStr("9999"), 0);
    EXPECT_EQ(n.GetStr(), storage);  // one allocation, reused after Clear
}

TEST(NUString, DateAndDateTimeSetters) {
    const struct { const char* input; int rc; const char* stored; } dates[] = {
        {"2001/2/3", 0, "20010203"}, {"2001-2-3", 0, "20010203"}, {"2001-02-30", -33, ""},
        {"abc", -32, ""},            {"20010229", -33, ""},       {"2001/2", -32, ""},
        {"200102031", -32, ""},      {"", 0, ""},                 {"2001/02/03/04", -32, ""},
    };
    for (const auto& c : dates) {
        NUDateStr d;
        d.SetStr("19991231");
        EXPECT_TRUE(Left(d.SetStr(c.input), d, c.rc, c.stored)) << c.input;
    }

    const std::pair<const char*, int> dateTimes[] = {
        {"20010203240000", 0},   {"20010203245900", 0},    {"20010203250000", -31}, {"20010203126000", -31},
        {"20010203120060", -31}, {"20010229120000", -31}, {"01/2/3", -31},         {"200102031200000", -30},
    };
    for (const auto& [input, rc] : dateTimes) {
        NUDateTimeStr t;
        EXPECT_EQ(t.SetStr(input), rc) << input;
        EXPECT_EQ(t.IsEmpty(), rc != 0) << input;
    }

    NUDateStr d;
    EXPECT_TRUE(Left(d.SetYMD("2004", "2", "29"), d, 0, "20040229"));
    EXPECT_TRUE(Left(d.SetYMD(nullptr, "", nullptr), d, 0, "20040229"));  // all empty: unchanged
    EXPECT_EQ(d.SetYMD("2004", "", "1"), -33);
    EXPECT_EQ(d.SetYMD("20040", "1", "1"), -30);
    EXPECT_EQ(d.SetYMD("2004", "1", "1a"), -33);
    EXPECT_TRUE(Left(d.SetYMD("2003", "2", "29"), d, -33, ""));
    NUDateTimeStr t;  // eight digits never make a date-time
    EXPECT_EQ(t.SetYMD("2004", "2", "29"), -31);
}

TEST(NUString, DateGettersAndDaySteps) {
    NUDateStr d;
    EXPECT_EQ(d.GetYear(), -1);
    EXPECT_EQ(d.GetShortYear(), -1);
    EXPECT_EQ(d.NextDay(), -31);
    EXPECT_EQ(d.GetMonth("19990817"), 8);
    const comClockFunc old = comSetClockFunction(FakeClock);
    EXPECT_EQ(d.GetYear(""), 2014);  // today at +0900
    EXPECT_EQ(d.GetDay(nullptr), 1);
    comSetClockFunction(old);

    ASSERT_EQ(d.SetStr("20041231"), 0);
    EXPECT_EQ(d.GetYear("19990817"), 2004);
    EXPECT_EQ(d.GetShortYear(), 4);
    EXPECT_TRUE(Left(d.NextDay(), d, 0, "20050101"));
    EXPECT_TRUE(Left(d.PrevDay(), d, 0, "20041231"));

    NUDateTimeStr t;
    ASSERT_EQ(t.SetStr("20040229235930"), 0);
    EXPECT_STREQ(t.GetTimePart(), "235930");
    EXPECT_EQ(t.GetHour(), 23);
    EXPECT_EQ(t.GetMinute(), 59);
    EXPECT_TRUE(Left(t.NextDay(), t, 0, "20040301235930"));  // the time part is kept
}
