// Tests of the localisation: message files, lookups, the calendar formatting
// with the language's week names, and numbered messages.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/iofcom/CMSioObjLocalize.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"
#include "MakeConvLib/iofcom/Zi18nLang.h"
#include "TestSupport.h"

namespace {

// A settings object over a fresh root with an empty local/ja_JP/.
class MessagesTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(dir);
        ASSERT_EQ(CreateSettings(), 0);
        ASSERT_EQ(LoadSettings(temp.Path().c_str()), 0);
    }
    void TearDown() override { ReleaseSettings(); }
    void Write(const std::string& name, const std::string& text) { testsupport::WriteFile(dir + name, text); }
    // Uses the message files that ship with the project.
    void UseShippedTarget() {
        ReleaseSettings();
        ASSERT_EQ(CreateSettings(), 0);
        ASSERT_EQ(LoadSettings((std::string(CONV_SOURCE_DIR) + "/examples/target").c_str()), 0);
        for (const char* name : {"com", "com_locale", "sch"}) ASSERT_EQ(LoadMessageFile(name), 0) << name;
    }

    testsupport::TempDir temp;
    std::string dir = temp.Path() + "/local/ja_JP/";
};

struct tm Record(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int weekday = 0) {
    struct tm record{};
    record.tm_year = year - 1900;
    record.tm_mon = month - 1;
    record.tm_mday = day;
    record.tm_hour = hour;
    record.tm_min = minute;
    record.tm_sec = second;
    record.tm_wday = weekday;
    return record;
}

// A heap buffer of exactly size bytes (room for fill at least) that holds fill.
std::unique_ptr<char[]> Buffer(int size, const char* fill) {
    const std::size_t bytes = std::max<std::size_t>(size, std::strlen(fill) + 1);
    std::unique_ptr<char[]> buffer(new char[bytes]);
    std::snprintf(buffer.get(), bytes, "%s", fill);
    return buffer;
}

TEST_F(MessagesTest, FilesAreReadOnceAndMayBeMissingButNotBroken) {
    Write("com", "comfromto=～\nkey=first\n");
    EXPECT_EQ(LoadMessageFile("com"), 0);
    EXPECT_STREQ(GetLocalText("comfromto"), "～");
    Write("com", "key=second\n");
    EXPECT_EQ(LoadMessageFile("com"), 0);
    EXPECT_STREQ(GetLocalText("key"), "first");

    EXPECT_EQ(LoadMessageFile("com_locale"), 0);  // missing: no failure
    EXPECT_EQ(GetLocalText("comweekmon"), nullptr);
    EXPECT_EQ(GetLocalText(nullptr), nullptr);
    EXPECT_EQ(LoadMessageFile(nullptr), -99);
    std::filesystem::create_symlink("sch", dir + "sch");  // a loop: fails for root as well
    EXPECT_EQ(LoadMessageFile("sch"), -30000);
    EXPECT_NE(std::string(GetErrorDetail()), "");
    EXPECT_EQ(LoadMessageFile("sch"), 0);  // counted as read: not tried again

    ReleaseSettings();
    EXPECT_EQ(LoadMessageFile("com"), -99);
    EXPECT_EQ(SetLanguage("ja_JP"), -99);
    EXPECT_EQ(GetLocalText("comfromto"), nullptr);
    EXPECT_STREQ(GetLanguageName(), "ja_JP");
}

TEST_F(MessagesTest, LanguageSelection) {
    EXPECT_STREQ(GetLanguageName(), "ja_JP");
    EXPECT_STREQ(GetLabelSeparator(), "：");
    Zi18nLang* japanese = GetSettingsObject()->GetLanguage();
    EXPECT_EQ(SetLanguage(nullptr), -70011);
    EXPECT_EQ(SetLanguage("en_US"), 0);
    EXPECT_STREQ(GetLanguageName(), "en_US");
    EXPECT_STREQ(GetLabelSeparator(), ": ");
    EXPECT_EQ(SetLanguage("ja_JP"), 0);
    EXPECT_EQ(GetSettingsObject()->GetLanguage(), japanese);  // the same object again
}

TEST_F(MessagesTest, ShippedFilesHaveEveryFormatAndWeekName) {
    UseShippedTarget();
    Zi18nLang* lang = GetSettingsObject()->GetLanguage();
    ASSERT_NE(lang, nullptr);
    for (const char* format : {lang->GetDateFormatShort(), lang->GetDateFormat(), lang->GetMonthDayFormat(),
                               lang->GetTimeFormat(), lang->GetMonthDayTimeFormat(), lang->GetDateWeekFormat(),
                               lang->GetDateWeekTimeFormat()}) {
        ASSERT_NE(format, nullptr);
        char out[128];
        FormatDateTimeLocal(format, "20040105093000", out, sizeof out);
        EXPECT_EQ(std::string(out).find_first_of("%"), std::string::npos) << format;
    }
    for (int day = 0; day < 7; ++day) {
        EXPECT_NE(GetShortWeekName(day), nullptr) << day;
        EXPECT_NE(GetLongWeekName(day), nullptr) << day;
    }
    EXPECT_EQ(GetShortWeekName(7), nullptr);
    EXPECT_EQ(GetLongWeekName(-1), nullptr);
    EXPECT_STREQ(GetLocalText("comfromto"), "～");
}

TEST_F(MessagesTest, CachedFormatsFollowLaterFiles) {
    Zi18nLang* lang = GetSettingsObject()->GetLanguage();
    EXPECT_EQ(lang->GetTimeFormat(), nullptr);
    Write("com", "comtimehm2=%H\n");
    ASSERT_EQ(LoadMessageFile("com"), 0);
    EXPECT_STREQ(lang->GetTimeFormat(), "%H");  // asked again after none
    // A file that opens with a continuation line extends the text read last.
    Write("com_locale", "\t:%M\n");
    ASSERT_EQ(LoadMessageFile("com_locale"), 0);
    EXPECT_STREQ(lang->GetTimeFormat(), "%H\n:%M");
}

TEST_F(MessagesTest, FormatCalendar) {
    char out[64];
    EXPECT_EQ(FormatCalendar(out, sizeof out, "%Y/%m/%d %H:%M:%S(%a)", Record(2004, 1, 5, 23, 59, 59, 1)), 0);
    EXPECT_STREQ(out, "2004/01/05 23:59:59(Mon)");

    const struct tm bad[] = {Record(2004, 13, 5), Record(2004, 0, 5),        Record(2004, 1, 0),
                             Record(2004, 1, 32), Record(1899, 1, 1),        Record(2004, 1, 5, 24),
                             Record(2004, 1, 5, 0, 60), Record(2004, 1, 5, 0, 0, 60)};
    for (const struct tm& record : bad) {
        std::snprintf(out, sizeof out, "old");
        EXPECT_EQ(FormatCalendar(out, sizeof out, "%Y", record), -70013);
        EXPECT_STREQ(out, "");
    }
    EXPECT_EQ(FormatCalendar(out, sizeof out, nullptr, Record(2004, 1, 5)), -70013);

    char tiny[4];
    EXPECT_EQ(FormatCalendar(tiny, sizeof tiny, "%Y/%m", Record(2004, 1, 5)), 0);
    EXPECT_STREQ(tiny, "");  // doesn't fit: empty, never overrun
}

TEST_F(MessagesTest, ReplaceWeekNames) {
    char unnamed[16] = "(Mon)";
    ReplaceWeekNames(unnamed, sizeof unnamed);
    EXPECT_STREQ(unnamed, "(Mon)");  // no text for the day: stays

    UseShippedTarget();
    const struct { const char* in; int size; const char* out; } cases[] = {
        {"2004/01/05(Mon)", 64, "2004/01/05(月)"},
        {"Monday, 5", 64, "月曜日, 5"},
        {"Mon Sun", 64, "Mon 日"},  // tried in the order Sunday to Saturday
        {"Tue Tue", 64, "火 Tue"},  // one replacement at most
        {"Sundae", 64, "日dae"},
        {"no week", 64, "no week"},
        {"(Mon)", 6, "(月)"},        // "(月)" needs 6 bytes with its terminator
        {"Sunday", 7, "Sunday"},    // "日曜日" needs 10
    };
    for (const auto& c : cases) {
        auto text = Buffer(c.size, c.in);
        ReplaceWeekNames(text.get(), c.size);
        EXPECT_STREQ(text.get(), c.out) << c.in << " in " << c.size;
    }

    std::string longTail = "Mon" + std::string(4096, 'x');
    std::string buffer = longTail + std::string(16, '\0');
    ReplaceWeekNames(buffer.data(), static_cast<int>(buffer.size()));
    EXPECT_STREQ(buffer.c_str(), longTail.c_str());  // the rest must be under 4,096 bytes
}

TEST_F(MessagesTest, FormatDateTimeLocal) {
    UseShippedTarget();
    using Formatter = void (*)(const char*, const char*, char*, int);
    // pattern: the format, or for the ByKey forms the key of one.
    const struct { Formatter format; const char *pattern, *date; int size; const char* out; } cases[] = {
        {FormatDateTimeLocal, "%Y/%m/%d(%a) %H:%M:%S", "20040105093015", 64, "2004/01/05(月) 09:30:15"},
        {FormatDateLocal, "%Y/%m/%d %H:%M %A", "20040111093015", 64, "2004/01/11 00:00 日曜日"},
        {FormatDateTimeByKey, "comztimeymdwhm", "20040106120000", 64, "2004/01/06(火) 12:00"},
        {FormatDateByKey, "nosuchkey", "20040106", 64, ""},
        {FormatDateTimeLocal, "%Y", "", 64, ""},
        {FormatDateTimeLocal, nullptr, "20040105", 64, "20040105"},
        {FormatDateTimeLocal, "%Y/%m", "20041305000000", 64, "20041305000000"},  // month 13: the date stands
        {FormatDateTimeLocal, "%Y/%m", "2004", 64, "2004"},
        {FormatDateTimeLocal, "%Y/%m", "20041305000000", 5, "2004"},
        {FormatDateTimeLocal, "%Y", "20040105", 0, "kept"},
    };
    for (const auto& c : cases) {
        auto out = Buffer(c.size, "kept");
        c.format(c.pattern, c.date, out.get(), c.size);
        EXPECT_STREQ(out.get(), c.out) << (c.pattern ? c.pattern : "(null)") << " " << c.date << " in " << c.size;
    }
}

TEST_F(MessagesTest, MessageTextByCode) {
    Write("message", "100=E:abc\n101=ab\n102=W:\n");
    char severity = '?';
    EXPECT_STREQ(MessageTextByCode(100, &severity), "abc");
    EXPECT_EQ(severity, 'E');
    EXPECT_STREQ(MessageTextByCode(101, &severity), "ab");
    EXPECT_EQ(severity, '\0');
    EXPECT_STREQ(MessageTextByCode(102, &severity), "W:");  // two characters: taken whole
    EXPECT_STREQ(MessageTextByCode(-999, nullptr), "-999");

    SetLastErrorByCode(100, "[detail]");
    EXPECT_STREQ(GetLastErrorText(), "abc[detail]");
    SetLastErrorByCode(0, nullptr);
    EXPECT_STREQ(GetLastErrorText(), "");

    ReleaseSettings();
    EXPECT_EQ(MessageTextByCode(100, &severity), nullptr);
}

}  // namespace
