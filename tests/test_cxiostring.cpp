// Tests of the length-limited texts: character counting of UTF-8, the limits
// of every fixed class, the cutting setter and the port field.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/cxiocom/CS3LongStr.h"
#include "MakeConvLib/cxiocom/CS3MiddleStr.h"
#include "MakeConvLib/cxiocom/CS3ShortStr.h"
#include "MakeConvLib/cxiocom/CXioLCString.h"
#include "MakeConvLib/cxiocom/CXioPortNum.h"
#include "MakeConvLib/cxiocom/ZString.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"
#include "TestSupport.h"

namespace {

// "あ" is three bytes, "𠀋" four (and counts two).
const std::string kA = "\xE3\x81\x82";
const std::string kWide = "\xF0\xA0\x80\x8B";

std::string Repeat(const std::string& piece, int times) {
    std::string out;
    for (int i = 0; i < times; ++i) out += piece;
    return out;
}

class CXioTest : public ::testing::Test {
protected:
    void SetUp() override {
        testsupport::WriteFile(dir / "local/ja_JP/com", "comzlength=$limit$文字以内で入力してください。\n");
        ASSERT_EQ(CreateSettings(), 0);
        ASSERT_EQ(LoadSettings(dir.Path().c_str()), 0);
        ASSERT_EQ(LoadMessageFile("com"), 0);
    }
    void TearDown() override { ReleaseSettings(); }

    testsupport::TempDir dir;
};

using Factory = std::function<std::unique_ptr<CXioLCString>()>;

template <class T>
std::unique_ptr<CXioLCString> Make() {
    return std::make_unique<T>();
}

}  // namespace

TEST_F(CXioTest, CountCharsWeighsWideCharactersAndRefusesBrokenText) {
    const struct { std::string text; int limit, expected; } cases[] = {
        {"abc", 10, 3},
        {Repeat(kA, 3), 3, 3},
        {Repeat(kA, 3), 2, -62},
        {kWide, 2, 2},
        {kWide, 1, -62},
        {"\xC3\xA9", 1, 1},
        {"\x80\xBF", 2, 2},               // stray continuation bytes: one character each
        {"\xF8\xFF", 2, 2},               // bytes that lead nothing: one each
        {"ab\xE3", 10, -1000030},         // a lone lead byte at the end
        {"ab\xE3\x81", 10, -1000030},     // a sequence cut short
        {"\xE3\x41\x42", 10, -1000030},   // ASCII where a continuation belongs
        {Repeat(kA, 2) + "\xE3", 1, -1000030},  // broken text is refused before the limit counts
        {"", 0, 0},
        {"a", 0, -62},
    };
    for (const auto& c : cases) EXPECT_EQ(CountChars(c.text.c_str(), c.limit), c.expected) << c.text;
    EXPECT_EQ(CountChars(nullptr, 0), 0);
}

TEST_F(CXioTest, LimitMessageGoesThroughTheTemplate) {
    CS3LongStr text;
    ASSERT_EQ(text.SetStr("keep"), 0);
    EXPECT_EQ(text.SetStr(Repeat(kA, 256).c_str()), -62);
    EXPECT_STREQ(text.GetStr(), "keep");
    EXPECT_STREQ(GetLastErrorText(), "255文字以内で入力してください。");

    // Without a text for the key the message is empty.
    ReleaseSettings();
    ASSERT_EQ(CreateSettings(), 0);
    EXPECT_EQ(CountChars("abc", 2), -62);
    EXPECT_STREQ(GetLastErrorText(), "");
}

TEST_F(CXioTest, FixedClassesTakeTheirLimitAndNoMore) {
    const struct { const char* name; Factory make; int limit; bool required; } classes[] = {
        {"CS3ShortStr", Make<CS3ShortStr>, 63, false},      {"CS3ShortStrH", Make<CS3ShortStrH>, 63, true},
        {"CS3MiddleStr", Make<CS3MiddleStr>, 127, false},   {"CS3MiddleStrH", Make<CS3MiddleStrH>, 127, true},
        {"CS3LongStr", Make<CS3LongStr>, 255, false},       {"CS3LongStrH", Make<CS3LongStrH>, 255, true},
        {"ZString31", Make<ZString31>, 31, false},          {"ZString40", Make<ZString40>, 40, false},
        {"ZString40H", Make<ZString40H>, 40, true},         {"ZString256", Make<ZString256>, 256, false},
        {"ZString256H", Make<ZString256H>, 256, true},      {"ZString511", Make<ZString511>, 511, false},
        {"ZString1023", Make<ZString1023>, 1023, false},    {"ZString1023H", Make<ZString1023H>, 1023, true},
        {"ZString2000", Make<ZString2000>, 2000, false},    {"ZString2000H", Make<ZString2000H>, 2000, true},
        {"ZString2047", Make<ZString2047>, 2047, false},    {"ZString4000", Make<ZString4000>, 4000, false},
        {"ZString4000H", Make<ZString4000H>, 4000, true},
    };
    for (const auto& c : classes) {
        SCOPED_TRACE(c.name);
        auto text = c.make();
        EXPECT_EQ(text->GetMaxChars(), c.limit);
        EXPECT_STREQ(text->GetStr(), "");

        const std::string full = Repeat(kA, c.limit);
        ASSERT_EQ(text->SetStr(full.c_str()), 0);
        EXPECT_EQ(text->GetStr(), full);
        EXPECT_EQ(text->SetStr((full + "a").c_str()), -62);
        EXPECT_EQ(text->GetStr(), full);  // refused, the old value stays
        // Wide characters count two: half the limit of them fits, one more doesn't.
        const std::string wide = Repeat(kWide, c.limit / 2);
        EXPECT_EQ(text->SetStr(wide.c_str()), 0);
        EXPECT_EQ(text->SetStr((wide + kWide).c_str()), -62);
        EXPECT_EQ(text->SetStr("a\xE3"), -1000030);
        EXPECT_EQ(text->GetStr(), wide);

        const char* buffer = text->GetStr();
        text->Clear();
        EXPECT_STREQ(text->GetStr(), "");
        EXPECT_EQ(text->GetStr(), buffer);  // the buffer stays

        text->SetStr("x");
        EXPECT_EQ(text->SetStr(""), c.required ? -10006 : 0);
        EXPECT_STREQ(text->GetStr(), c.required ? "x" : "");
        EXPECT_EQ(text->SetStr(nullptr), c.required ? -10006 : 0);
    }
}

TEST_F(CXioTest, LimitIsFixedOnceABufferExists) {
    CXioLCString open;
    const std::string long_text = Repeat(kA, 5000);
    EXPECT_EQ(open.SetStr(long_text.c_str()), 0);  // no limit yet
    EXPECT_EQ(open.GetStr(), long_text);

    CXioLCString limited(10);
    ASSERT_EQ(limited.SetStr("abc"), 0);
    limited.SetLimit(20);
    EXPECT_EQ(limited.GetMaxChars(), 10);
    EXPECT_STREQ(limited.GetStr(), "");

    CXioLCString huge;
    huge.SetLimit(2000000000);  // clamped so that the byte size can't overflow
    EXPECT_GT(huge.GetValueSize(), 0);
}

TEST_F(CXioTest, SetCutKeepsWholeCharactersWithinTheLimit) {
    const struct { const char* value; int limit; const char* suffix; bool byBytes; std::string expected; } cases[] = {
        {"abcdef", 4, "", false, "abcd"},
        {"abcdef", 4, "..", false, "ab.."},
        {"abcd", 4, "..", false, "abcd"},
        {"あいうえお", 3, "", false, "あいう"},
        {"あいうえお", 3, "..", false, "あ.."},
        {"\xF0\xA0\x80\x8B\xF0\xA0\x80\x8B", 3, "", false, kWide},  // the second would count 4
        {"ab\xE3", 10, "", false, "ab"},                              // a broken tail goes
        {"abcdef", 4, "..", true, "ab.."},
        {"あいう", 4, "", true, "あ"},  // four bytes end inside the second character
        {"あいう", 9, "", true, "あいう"},
        {"あいう", 5, "..", true, "あ.."},
        {nullptr, 4, "..", false, ""},
    };
    for (const auto& c : cases) {
        CXioLCString text;
        EXPECT_EQ(text.SetCut(c.value, c.limit, c.suffix, c.byBytes), 0) << c.value;
        EXPECT_EQ(text.GetStr(), c.expected) << (c.value ? c.value : "(null)") << " " << c.limit << c.suffix;
    }
    // A field that already has a limit keeps it.
    CXioLCString title(5);
    title.SetStr("x");
    EXPECT_EQ(title.SetCut("abcdefgh", 3, "..", false), 0);
    EXPECT_STREQ(title.GetStr(), "abc..");
}

TEST_F(CXioTest, DropOpenTail) {
    const struct { const char* text; char open, close; bool dropped; const char* rest; } cases[] = {
        {"a<b>c<d", '<', '>', true, "a<b>c"},
        {"a<b>c", '<', '>', false, "a<b>c"},
        {"a&amp;b&lt", '&', ';', true, "a&amp;b"},
    };
    for (const auto& c : cases) {
        CXioLCString text;
        text.SetStr(c.text);
        EXPECT_EQ(text.DropOpenTail(c.open, c.close), c.dropped) << c.text;
        EXPECT_STREQ(text.GetStr(), c.rest);
    }
    EXPECT_FALSE(CXioLCString().DropOpenTail('<', '>'));
}

TEST_F(CXioTest, LowerLimit) {
    CXioLCStrLower text;
    text.SetLimits(2, 5);
    EXPECT_EQ(text.GetMinChars(), 2);
    ASSERT_EQ(text.SetStr("abc"), 0);
    ClearErrorDetail();
    EXPECT_EQ(text.SetStr("a"), -70010);
    // The trace line carries the code returned, not the count of characters.
    EXPECT_NE(std::string(GetErrorDetail()).find(comTraceEncode("ret[-70010]lower[2]", 100)), std::string::npos);
    EXPECT_EQ(text.SetStr(""), -70010);
    EXPECT_EQ(text.SetStr("abcdef"), -62);
    EXPECT_EQ(text.SetStr("a\xE3"), -1000030);
    EXPECT_STREQ(text.GetStr(), "abc");
    EXPECT_EQ(text.SetStr((kA + kA).c_str()), 0);
}

TEST_F(CXioTest, PortNumber) {
    const struct { const char* value; int ret; const char* stored; } cases[] = {
        {"123456", 0, "123456"}, {"", 0, ""}, {"-1", -508, "-1"}, {"80a", -508, "80a"}, {"1234567", -62, "1234567"},
    };
    for (const auto& c : cases) {
        CXioPortNum port;
        port.SetStr("1");
        EXPECT_EQ(port.SetStr(c.value), c.ret) << c.value;
        EXPECT_STREQ(port.GetStr(), c.stored);
    }
    CXioPortNum port;
    port.SetStr("25");
    EXPECT_EQ(port.SetStr(Repeat("1", 64).c_str()), -62);  // over the 63 characters: not stored
    EXPECT_STREQ(port.GetStr(), "25");
}
