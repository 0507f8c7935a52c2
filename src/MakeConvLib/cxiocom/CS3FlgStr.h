// Flag fields: short texts with a small set of allowed values and, for most,
// a default that Clear installs. The members differ only by their row in one
// rule table (CS3FlgStr.cpp); each class here names its row.
#pragma once

#include <cstdint>

#include "MakeConvLib/cs3base/CS3String.h"

// A label value whose message key has no text.
inline constexpr int CS3_ERR_NO_LABEL = -2157;

// One row of the rule table per flag class, named after it.
enum class CS3FlagId : uint8_t {
    CS3EditFlg, CS3MailUseFlg, CS3LoginFlg, CS3InspectFlg, CS3LevelFlg, CS3AccessKindFlg,
    CS3CKindFlg, CS3SchDelDateFlg, CS3SchIconDispFlg, CS3SchTopPageFlg, CS3SchToTimeFlg,
    CS3HolidayFlg, CS3SundayFlg, CS3SchGroupDispFlg, CS3OtherGroupFlg, CS3SchDupPermFlg,
    CS3SchRankFlg, CS3ReserveFlg, CS3RepeatFlg, CiofSchLevelFlg, CiofSchOutFlg, CiofTargetFlg,
    CiofHideFlg, CiofUseFlg, CXioMarkFlg, CXioImportantFlg, CXioDispTopPageFlg, CXioCompleteFlg,
    CXioCheckFlg, CXioContainFlg, CXioAuthFlg, CXioRangeFlg, CXioCloseFlg, CXioTypeGroup,
    CXioTypeDate, CXioTypeMailAddrKind, CXioTypeSendMailFrom, CXioBookMarkMode,
    CXioSavePwdKindFlg, CXioSmtpAuthFlg, CXioSendAuthFlg, CXioEditFlg, CXioSmtpSecureFlg,
    CXioPopSecureFlg, CXioSingleSignonFlg, CXioPortalSettingFlg, CXioAlarmSendFlg,
    CXioMenuStateFlg, CXioMenuColorFlg, CXioTagColorFlg, CXioSubWindowFlg,
    Count
};

// Base of the flags: seven characters, trailing blanks trimmed on store.
class CS3FlgStr : public CS3String {
public:
    CS3FlgStr() : CS3String(8) {}
    int SetStrLen(const char* value, int len) override;

    bool Is(const char* text) const { return Compare(text) == 0; }
    bool IsOn() const { return Is("1"); }
    // strtol of the value; 0 when empty.
    int GetInt() const;

protected:
    explicit CS3FlgStr(int valueSizeIn) : CS3String(valueSizeIn) {}
    // The setter and the reset of the row id.
    int SetByRule(CS3FlagId id, const char* value);
    void ClearByRule(CS3FlagId id);
    static int ValueSizeOf(CS3FlagId id);
    static bool DefaultAtStart(CS3FlagId id);
};

// A flag that follows its row of the table.
template <CS3FlagId Id>
class CS3TableFlg : public CS3FlgStr {
public:
    CS3TableFlg() : CS3FlgStr(ValueSizeOf(Id)) {
        if (DefaultAtStart(Id)) Clear();
    }
    int SetStr(const char* value) override { return SetByRule(Id, value); }
    void Clear() override { ClearByRule(Id); }
};

class CS3EditFlg : public CS3TableFlg<CS3FlagId::CS3EditFlg> {};
class CS3MailUseFlg : public CS3TableFlg<CS3FlagId::CS3MailUseFlg> {};
class CS3LoginFlg : public CS3TableFlg<CS3FlagId::CS3LoginFlg> {};
class CS3InspectFlg : public CS3TableFlg<CS3FlagId::CS3InspectFlg> {};
class CS3LevelFlg : public CS3TableFlg<CS3FlagId::CS3LevelFlg> {};
class CS3AccessKindFlg : public CS3TableFlg<CS3FlagId::CS3AccessKindFlg> {};
class CS3SchDelDateFlg : public CS3TableFlg<CS3FlagId::CS3SchDelDateFlg> {};
class CS3SchIconDispFlg : public CS3TableFlg<CS3FlagId::CS3SchIconDispFlg> {};
class CS3SchTopPageFlg : public CS3TableFlg<CS3FlagId::CS3SchTopPageFlg> {};
class CS3SchToTimeFlg : public CS3TableFlg<CS3FlagId::CS3SchToTimeFlg> {};
class CS3HolidayFlg : public CS3TableFlg<CS3FlagId::CS3HolidayFlg> {};
class CS3SundayFlg : public CS3TableFlg<CS3FlagId::CS3SundayFlg> {};
class CS3SchGroupDispFlg : public CS3TableFlg<CS3FlagId::CS3SchGroupDispFlg> {};
class CS3OtherGroupFlg : public CS3TableFlg<CS3FlagId::CS3OtherGroupFlg> {};
class CS3SchDupPermFlg : public CS3TableFlg<CS3FlagId::CS3SchDupPermFlg> {};
class CS3SchRankFlg : public CS3TableFlg<CS3FlagId::CS3SchRankFlg> {};
class CS3ReserveFlg : public CS3TableFlg<CS3FlagId::CS3ReserveFlg> {};
class CiofSchLevelFlg : public CS3TableFlg<CS3FlagId::CiofSchLevelFlg> {};
class CiofSchOutFlg : public CS3TableFlg<CS3FlagId::CiofSchOutFlg> {};
class CiofTargetFlg : public CS3TableFlg<CS3FlagId::CiofTargetFlg> {};
class CiofHideFlg : public CS3TableFlg<CS3FlagId::CiofHideFlg> {};
// "checked" is taken as "1"; "1" from construction on.
class CiofUseFlg : public CS3TableFlg<CS3FlagId::CiofUseFlg> {};
class CXioMarkFlg : public CS3TableFlg<CS3FlagId::CXioMarkFlg> {};
class CXioImportantFlg : public CS3TableFlg<CS3FlagId::CXioImportantFlg> {};
class CXioDispTopPageFlg : public CS3TableFlg<CS3FlagId::CXioDispTopPageFlg> {};
class CXioCompleteFlg : public CS3TableFlg<CS3FlagId::CXioCompleteFlg> {};
class CXioCheckFlg : public CS3TableFlg<CS3FlagId::CXioCheckFlg> {};
class CXioContainFlg : public CS3TableFlg<CS3FlagId::CXioContainFlg> {};
class CXioAuthFlg : public CS3TableFlg<CS3FlagId::CXioAuthFlg> {};
class CXioRangeFlg : public CS3TableFlg<CS3FlagId::CXioRangeFlg> {};
class CXioCloseFlg : public CS3TableFlg<CS3FlagId::CXioCloseFlg> {};
class CXioTypeGroup : public CS3TableFlg<CS3FlagId::CXioTypeGroup> {};
class CXioTypeDate : public CS3TableFlg<CS3FlagId::CXioTypeDate> {};
// Each value set is ORed into the value held before.
class CXioTypeMailAddrKind : public CS3TableFlg<CS3FlagId::CXioTypeMailAddrKind> {};
class CXioTypeSendMailFrom : public CS3TableFlg<CS3FlagId::CXioTypeSendMailFrom> {};
class CXioBookMarkMode : public CS3TableFlg<CS3FlagId::CXioBookMarkMode> {};
class CXioSavePwdKindFlg : public CS3TableFlg<CS3FlagId::CXioSavePwdKindFlg> {};
class CXioSmtpAuthFlg : public CS3TableFlg<CS3FlagId::CXioSmtpAuthFlg> {};
class CXioSendAuthFlg : public CS3TableFlg<CS3FlagId::CXioSendAuthFlg> {};
class CXioEditFlg : public CS3TableFlg<CS3FlagId::CXioEditFlg> {};
class CXioSmtpSecureFlg : public CS3TableFlg<CS3FlagId::CXioSmtpSecureFlg> {};
class CXioPopSecureFlg : public CS3TableFlg<CS3FlagId::CXioPopSecureFlg> {};
class CXioSingleSignonFlg : public CS3TableFlg<CS3FlagId::CXioSingleSignonFlg> {};
class CXioPortalSettingFlg : public CS3TableFlg<CS3FlagId::CXioPortalSettingFlg> {};
class CXioAlarmSendFlg : public CS3TableFlg<CS3FlagId::CXioAlarmSendFlg> {};
class CXioMenuStateFlg : public CS3TableFlg<CS3FlagId::CXioMenuStateFlg> {};

// Kind letter: the first byte "B", "D" or "E" (lower case is raised to the one letter).
class CS3CKindFlg : public CS3TableFlg<CS3FlagId::CS3CKindFlg> {
public:
    bool IsKindBE() const { return GetStr()[0] == 'B' || GetStr()[0] == 'E'; }
    bool IsKindBD() const { return GetStr()[0] == 'B' || GetStr()[0] == 'D'; }
};

// Repeat kind: "r" list of dates, "y", "m", "w", "d"; empty for none. One character.
class CS3RepeatFlg : public CS3TableFlg<CS3FlagId::CS3RepeatFlg> {
public:
    bool IsWeekly() const { return Is("w"); }
    bool IsMonthly() const { return Is("m"); }
    bool IsDaily() const { return Is("d"); }
    bool IsYearly() const { return Is("y"); }
    bool IsDateList() const { return Is("r"); }
};

// Colour number 0 to 6.
class CXioMenuColorFlg : public CS3TableFlg<CS3FlagId::CXioMenuColorFlg> {
public:
    // "blue", "green", "yellow", "pink", "red" or "gray" for 1 to 6; "blue" otherwise.
    const char* GetColorName() const;
};

// A menu colour without a default.
class CXioTagColorFlg : public CXioMenuColorFlg {
public:
    int SetStr(const char* value) override { return SetByRule(CS3FlagId::CXioTagColorFlg, value); }
    void Clear() override { ClearByRule(CS3FlagId::CXioTagColorFlg); }
};

// Two digits or more: the first 0 to 2, the second 1 to 4.
class CXioSubWindowFlg : public CS3TableFlg<CS3FlagId::CXioSubWindowFlg> {
public:
    // The digits; -1 when empty.
    int GetFirstDigit() const { return IsEmpty() ? -1 : GetStr()[0] - '0'; }
    int GetSecondDigit() const { return IsEmpty() ? -1 : GetStr()[1] - '0'; }
};
