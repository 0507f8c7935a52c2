// Tests of the flag fields: each shape of setter with its accepted, refused
// and empty values, the defaults that Clear installs, and the flags' readers.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cxiocom/CS3FlgStr.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"
#include "TestSupport.h"

namespace {

class FlagTest : public ::testing::Test {
protected:
    void SetUp() override {
        testsupport::WriteFile(dir / "local/ja_JP/com", "comxvalflag=チェック\n");
        testsupport::WriteFile(dir / "local/ja_JP/sch",
                               "comschvallevel=非公開\ncomschvaloutflg=外出\ncomschvalrank=重要\n"
                               "comschvalreserv=仮予定\n");
        ASSERT_EQ(CreateSettings(), 0);
        ASSERT_EQ(LoadSettings(dir.Path().c_str()), 0);
        ASSERT_EQ(LoadMessageFile("com"), 0);
        ASSERT_EQ(LoadMessageFile("sch"), 0);
    }
    void TearDown() override { ReleaseSettings(); }

    testsupport::TempDir dir;
};

using Factory = std::function<std::unique_ptr<CS3FlgStr>()>;

template <class T>
std::unique_ptr<CS3FlgStr> Make() {
    return std::make_unique<T>();
}

#define FLAG(T) #T, Make<T>

// Every flag and what Clear installs ("" for none).
const struct { const char* name; Factory make; const char* dflt; } kDefaults[] = {
    {FLAG(CS3EditFlg), "1"},           {FLAG(CS3MailUseFlg), "1"},         {FLAG(CS3LoginFlg), "0"},
    {FLAG(CS3InspectFlg), "0"},        {FLAG(CS3LevelFlg), "0"},           {FLAG(CS3AccessKindFlg), "1"},
    {FLAG(CS3CKindFlg), ""},           {FLAG(CS3SchDelDateFlg), ""},       {FLAG(CS3SchIconDispFlg), "1"},
    {FLAG(CS3SchTopPageFlg), "2"},     {FLAG(CS3SchToTimeFlg), "0"},       {FLAG(CS3HolidayFlg), "0"},
    {FLAG(CS3SundayFlg), "0"},         {FLAG(CS3SchGroupDispFlg), "0"},    {FLAG(CS3OtherGroupFlg), "0"},
    {FLAG(CS3SchDupPermFlg), ""},      {FLAG(CS3SchRankFlg), ""},          {FLAG(CS3ReserveFlg), ""},
    {FLAG(CS3RepeatFlg), ""},          {FLAG(CiofSchLevelFlg), "0"},       {FLAG(CiofSchOutFlg), "1"},
    {FLAG(CiofTargetFlg), "0"},        {FLAG(CiofHideFlg), "0"},           {FLAG(CiofUseFlg), "1"},
    {FLAG(CXioMarkFlg), "0"},          {FLAG(CXioImportantFlg), "3"},      {FLAG(CXioDispTopPageFlg), "0"},
    {FLAG(CXioCompleteFlg), "0"},      {FLAG(CXioCheckFlg), "0"},          {FLAG(CXioContainFlg), "1"},
    {FLAG(CXioAuthFlg), "1"},          {FLAG(CXioRangeFlg), "0"},          {FLAG(CXioCloseFlg), ""},
    {FLAG(CXioTypeGroup), "4"},        {FLAG(CXioTypeDate), "1"},          {FLAG(CXioTypeMailAddrKind), ""},
    {FLAG(CXioTypeSendMailFrom), "0"}, {FLAG(CXioBookMarkMode), "1"},      {FLAG(CXioSavePwdKindFlg), ""},
    {FLAG(CXioSmtpAuthFlg), "0"},      {FLAG(CXioSendAuthFlg), "0"},       {FLAG(CXioEditFlg), "1"},
    {FLAG(CXioSmtpSecureFlg), "0"},    {FLAG(CXioPopSecureFlg), "0"},      {FLAG(CXioSingleSignonFlg), "0"},
    {FLAG(CXioPortalSettingFlg), "1"}, {FLAG(CXioAlarmSendFlg), ""},       {FLAG(CXioMenuStateFlg), "21"},
    {FLAG(CXioMenuColorFlg), "1"},     {FLAG(CXioTagColorFlg), ""},        {FLAG(CXioSubWindowFlg), "21"},
};

// One SetStr after prior (null: straight after construction): result and what stays.
const struct { const char *name; Factory make; const char *prior, *input; int ret; const char* stored; } kSetCases[] = {
    // Strict: one of the set; empty and anything else reset to the default.
    {FLAG(CS3EditFlg), "0", "0 \t", 0, "0"},  // trailing blanks trimmed
    {FLAG(CS3EditFlg), "0", "2", -10007, "1"},
    {FLAG(CS3EditFlg), "0", "", -10007, "1"},
    {FLAG(CS3LoginFlg), "1", "2", 0, "2"},
    {FLAG(CS3LoginFlg), "1", "3", -10007, "3"},  // refused but kept

    // Empty allowed.
    {FLAG(CS3SchDelDateFlg), "1", "", 0, ""},
    {FLAG(CS3SchDelDateFlg), "1", "2", -10007, ""},
    {FLAG(CiofUseFlg), nullptr, "checked", 0, "1"},
    {FLAG(CiofUseFlg), nullptr, "", 0, ""},
    {FLAG(CS3RepeatFlg), "d", "w", 0, "w"},
    {FLAG(CS3RepeatFlg), "d", "", 0, ""},
    {FLAG(CS3RepeatFlg), "d", "x", -10007, ""},
    {FLAG(CS3RepeatFlg), "d", "ww", -62, "d"},  // one character of capacity

    // Ranges by number; the empty text reads as 0.
    {FLAG(CS3InspectFlg), "1", "01", 0, "01"},
    {FLAG(CS3InspectFlg), "1", "", 0, ""},
    {FLAG(CS3InspectFlg), "1", "2", -10007, "0"},
    {FLAG(CS3InspectFlg), "1", "x", -10007, "0"},
    {FLAG(CS3SchDupPermFlg), "1", "", -10007, ""},
    {FLAG(CXioImportantFlg), "1", "", 0, "3"},  // empty installs the default
    {FLAG(CXioImportantFlg), "1", "5", -10007, "3"},
    {FLAG(CXioContainFlg), "2", "", -10007, "1"},
    {FLAG(CXioTypeDate), "2", "7", 0, "1"},  // out of range sets the default
    {FLAG(CXioTypeDate), "2", "", 0, "1"},
    {FLAG(CXioSmtpSecureFlg), "1", "3", -10007, "3"},
    {FLAG(CXioPortalSettingFlg), "0", "2", -10007, "2"},
    {FLAG(CXioMenuStateFlg), "1", "2", 0, "2"},
    {FLAG(CXioMenuStateFlg), "1", "21", -10007, "21"},  // the default itself isn't settable
    {FLAG(CXioMenuColorFlg), "2", "7", -10007, "1"},
    {FLAG(CXioTagColorFlg), "2", "7", -10007, ""},
    {FLAG(CXioTypeMailAddrKind), "1", "6", 0, "7"},
    {FLAG(CXioTypeMailAddrKind), "1", "", 0, "1"},
    {FLAG(CXioTypeMailAddrKind), "1", "16", -10007, ""},

    // Numbers or the label of a message key.
    {FLAG(CS3SchRankFlg), "1", "重要", 0, "2"},
    {FLAG(CS3SchRankFlg), "1", "普通", -10007, ""},
    {FLAG(CS3SchRankFlg), "1", "", 0, ""},
    {FLAG(CiofSchLevelFlg), "1", "2", -10007, "0"},
    {FLAG(CiofSchLevelFlg), "0", "非公開", 0, "1"},
    {FLAG(CiofSchOutFlg), "0", "外出", 0, "2"},
    {FLAG(CiofSchOutFlg), "0", "-1", -10007, "1"},
    {FLAG(CXioMarkFlg), "1", "", 0, "0"},
    {FLAG(CXioMarkFlg), "0", "チェック", 0, "1"},

    // Kind letters and two-digit window settings.
    {FLAG(CS3CKindFlg), "B", "", 0, "B"},  // empty stores nothing
    {FLAG(CS3CKindFlg), "B", "e", 0, "E"},
    {FLAG(CS3CKindFlg), "B", "dx", 0, "D"},
    {FLAG(CS3CKindFlg), "B", "Dx", 0, "Dx"},
    {FLAG(CS3CKindFlg), "B", "x", -10007, ""},
    {FLAG(CXioSubWindowFlg), "11", "24x", 0, "24x"},
    {FLAG(CXioSubWindowFlg), "11", "1", -10007, "21"},
    {FLAG(CXioSubWindowFlg), "11", "05", -10007, "21"},

    // Any text.
    {FLAG(CS3AccessKindFlg), "1", "abc", 0, "abc"},
};

#undef FLAG

}  // namespace

TEST_F(FlagTest, ClearInstallsTheDefaultWhichTheFlagAccepts) {
    for (const auto& d : kDefaults) {
        SCOPED_TRACE(d.name);
        auto flag = d.make();
        // Only CiofUseFlg starts at its default.
        EXPECT_STREQ(flag->GetStr(), std::string(d.name) == "CiofUseFlg" ? "1" : "");
        flag->SetStr("1");
        flag->Clear();
        EXPECT_STREQ(flag->GetStr(), d.dflt);
        if (*d.dflt != '\0' && std::string(d.name) != "CXioMenuStateFlg") {
            EXPECT_EQ(flag->SetStr(d.dflt), 0);
            EXPECT_STREQ(flag->GetStr(), d.dflt);
        }
    }
}

TEST_F(FlagTest, SettersByShape) {
    for (const auto& c : kSetCases) {
        SCOPED_TRACE(std::string(c.name) + " <- \"" + c.input + "\"");
        auto flag = c.make();
        if (c.prior) {
            ASSERT_EQ(flag->SetStr(c.prior), 0);
        }
        EXPECT_EQ(flag->SetStr(c.input), c.ret);
        EXPECT_STREQ(flag->GetStr(), c.stored);
    }
}

TEST_F(FlagTest, LabelWithoutMessageTextIsRefused) {
    ReleaseSettings();
    ASSERT_EQ(CreateSettings(), 0);
    CS3SchRankFlg rank;
    EXPECT_EQ(rank.SetStr("重要"), -2157);
    EXPECT_STREQ(rank.GetStr(), "");
    EXPECT_EQ(rank.SetStr("2"), 0);  // numbers need no message
}

TEST_F(FlagTest, Readers) {
    CS3RepeatFlg repeat;
    const std::pair<const char*, int> letters[] = {{"w", 0}, {"m", 1}, {"d", 2}, {"y", 3}, {"r", 4}, {"", -1}};
    for (const auto& [letter, which] : letters) {
        repeat.SetStr(letter);
        const bool tests[] = {repeat.IsWeekly(), repeat.IsMonthly(), repeat.IsDaily(), repeat.IsYearly(),
                              repeat.IsDateList()};
        for (int i = 0; i < 5; ++i) EXPECT_EQ(tests[i], i == which) << letter << i;
    }

    CXioTagColorFlg tag;
    const std::pair<const char*, const char*> colors[] = {{"", "blue"}, {"2", "green"}, {"6", "gray"}};
    for (const auto& [value, name] : colors) {
        tag.SetStr(value);
        EXPECT_STREQ(tag.GetColorName(), name) << value;
    }

    CS3CKindFlg kind;
    for (const char* letter : {"E", "d"}) {
        kind.SetStr(letter);
        EXPECT_EQ(kind.IsKindBE(), *letter == 'E') << letter;
        EXPECT_EQ(kind.IsKindBD(), *letter == 'd') << letter;
    }

    CXioSubWindowFlg window;
    EXPECT_EQ(window.GetFirstDigit(), -1);
    window.Clear();
    EXPECT_EQ(window.GetFirstDigit(), 2);
    EXPECT_EQ(window.GetSecondDigit(), 1);
}
