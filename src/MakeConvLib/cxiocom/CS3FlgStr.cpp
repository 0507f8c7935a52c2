// The rule table of the flag fields and the one setter that applies a row:
// strict sets, sets that allow empty, number ranges, and labels read from
// the message files.
#include "MakeConvLib/cxiocom/CS3FlgStr.h"

#include <array>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/iofcom/CMSioObjLocalize.h"
#include "base/comSource.h"
#include "base/comStr.h"

namespace {

enum class Shape : uint8_t {
    Plain,      // any text
    Strict,     // one of allowed; empty refused
    EmptyOk,    // one of allowed, or empty
    Range,      // a number from low to high; the empty text reads as 0
    Label,      // a number in range, or the text of labelKey standing for labelValue
    KindLetter, // CS3CKindFlg
    TwoDigits,  // CXioSubWindowFlg
};

// Options of a row.
enum : unsigned {
    kKeepOnBad = 1u << 0,      // a refused value stays stored
    kEmptyCleared = 1u << 1,   // an accepted empty value installs the default
    kBadSetsDefault = 1u << 2, // a refused value installs the default and counts as set
    kOrIntoOld = 1u << 3,      // the number is ORed into the old value
    kTraceBad = 1u << 4,       // a refused value leaves a trace line
    kDefaultAtStart = 1u << 5, // the constructor installs the default
};

struct FlagRule {
    CS3FlagId id;
    Shape shape;
    std::array<const char*, 5> allowed{};  // Strict, EmptyOk; unused entries null
    int low = 0, high = 0;                 // Range, Label
    const char* dflt = nullptr;            // what Clear installs; null empties
    const char* alias = nullptr;           // EmptyOk: a literal; Label: a message key
    const char* aliasValue = nullptr;      // what the alias stores
    unsigned options = 0;
    int valueSize = 8;
};

using Id = CS3FlagId;

constexpr FlagRule kRules[] = {
    {.id = Id::CS3EditFlg, .shape = Shape::Strict, .allowed = {"1", "0"}, .dflt = "1"},
    {.id = Id::CS3MailUseFlg, .shape = Shape::Strict, .allowed = {"1", "0"}, .dflt = "1"},
    {.id = Id::CS3LoginFlg, .shape = Shape::Strict, .allowed = {"1", "2", "0"}, .dflt = "0", .options = kKeepOnBad},
    {.id = Id::CS3InspectFlg, .shape = Shape::Range, .low = 0, .high = 1, .dflt = "0"},
    {.id = Id::CS3LevelFlg, .shape = Shape::Range, .low = 0, .high = 1, .dflt = "0"},
    {.id = Id::CS3AccessKindFlg, .shape = Shape::Plain, .dflt = "1"},
    {.id = Id::CS3CKindFlg, .shape = Shape::KindLetter},
    {.id = Id::CS3SchDelDateFlg, .shape = Shape::EmptyOk, .allowed = {"1", "0"}},
    {.id = Id::CS3SchIconDispFlg, .shape = Shape::EmptyOk, .allowed = {"1", "0"}, .dflt = "1"},
    {.id = Id::CS3SchTopPageFlg, .shape = Shape::Strict, .allowed = {"1", "2"}, .dflt = "2"},
    {.id = Id::CS3SchToTimeFlg, .shape = Shape::Strict, .allowed = {"1", "0"}, .dflt = "0"},
    {.id = Id::CS3HolidayFlg, .shape = Shape::Strict, .allowed = {"1", "0"}, .dflt = "0"},
    {.id = Id::CS3SundayFlg, .shape = Shape::Strict, .allowed = {"1", "0"}, .dflt = "0"},
    {.id = Id::CS3SchGroupDispFlg, .shape = Shape::Strict, .allowed = {"1", "0"}, .dflt = "0"},
    {.id = Id::CS3OtherGroupFlg, .shape = Shape::Strict, .allowed = {"1", "0"}, .dflt = "0"},
    {.id = Id::CS3SchDupPermFlg, .shape = Shape::Range, .low = 1, .high = 2},
    {.id = Id::CS3SchRankFlg, .shape = Shape::Label, .low = 0, .high = 2, .alias = "comschvalrank", .aliasValue = "2"},
    {.id = Id::CS3ReserveFlg, .shape = Shape::Label, .low = 0, .high = 2, .alias = "comschvalreserv", .aliasValue = "2"},
    {.id = Id::CS3RepeatFlg, .shape = Shape::EmptyOk, .allowed = {"r", "y", "m", "w", "d"}, .options = kTraceBad,
     .valueSize = 2},
    {.id = Id::CiofSchLevelFlg, .shape = Shape::Label, .low = 0, .high = 1, .dflt = "0", .alias = "comschvallevel",
     .aliasValue = "1"},
    {.id = Id::CiofSchOutFlg, .shape = Shape::Label, .low = 0, .high = 2, .dflt = "1", .alias = "comschvaloutflg",
     .aliasValue = "2"},
    {.id = Id::CiofTargetFlg, .shape = Shape::EmptyOk, .allowed = {"1", "0"}, .dflt = "0"},
    {.id = Id::CiofHideFlg, .shape = Shape::EmptyOk, .allowed = {"1", "0"}, .dflt = "0"},
    {.id = Id::CiofUseFlg, .shape = Shape::EmptyOk, .allowed = {"1", "0"}, .dflt = "1", .alias = "checked",
     .aliasValue = "1", .options = kDefaultAtStart},
    {.id = Id::CXioMarkFlg, .shape = Shape::Label, .low = 0, .high = 1, .dflt = "0", .alias = "comxvalflag",
     .aliasValue = "1", .options = kEmptyCleared},
    {.id = Id::CXioImportantFlg, .shape = Shape::Range, .low = 0, .high = 4, .dflt = "3", .options = kEmptyCleared},
    {.id = Id::CXioDispTopPageFlg, .shape = Shape::Range, .low = 0, .high = 1, .dflt = "0", .options = kEmptyCleared},
    {.id = Id::CXioCompleteFlg, .shape = Shape::Range, .low = 0, .high = 1, .dflt = "0", .options = kEmptyCleared},
    {.id = Id::CXioCheckFlg, .shape = Shape::Range, .low = 0, .high = 1, .dflt = "0", .options = kEmptyCleared},
    {.id = Id::CXioContainFlg, .shape = Shape::Range, .low = 1, .high = 2, .dflt = "1", .options = kEmptyCleared},
    {.id = Id::CXioAuthFlg, .shape = Shape::Range, .low = 1, .high = 3, .dflt = "1", .options = kEmptyCleared},
    {.id = Id::CXioRangeFlg, .shape = Shape::Range, .low = 0, .high = 2, .dflt = "0", .options = kEmptyCleared},
    {.id = Id::CXioCloseFlg, .shape = Shape::Range, .low = 0, .high = 1},
    {.id = Id::CXioTypeGroup, .shape = Shape::Range, .low = 1, .high = 4, .dflt = "4", .options = kEmptyCleared},
    {.id = Id::CXioTypeDate, .shape = Shape::Range, .low = 1, .high = 3, .dflt = "1",
     .options = kEmptyCleared | kBadSetsDefault},
    {.id = Id::CXioTypeMailAddrKind, .shape = Shape::Range, .low = 0, .high = 15, .options = kOrIntoOld},
    {.id = Id::CXioTypeSendMailFrom, .shape = Shape::Strict, .allowed = {"0", "1", "2"}, .dflt = "0"},
    {.id = Id::CXioBookMarkMode, .shape = Shape::EmptyOk, .allowed = {"1", "2"}, .dflt = "1"},
    {.id = Id::CXioSavePwdKindFlg, .shape = Shape::EmptyOk, .allowed = {"1", "2"}},
    {.id = Id::CXioSmtpAuthFlg, .shape = Shape::Strict, .allowed = {"0", "1", "2", "3"}, .dflt = "0"},
    {.id = Id::CXioSendAuthFlg, .shape = Shape::Strict, .allowed = {"0", "1", "2"}, .dflt = "0"},
    {.id = Id::CXioEditFlg, .shape = Shape::Plain, .dflt = "1"},
    {.id = Id::CXioSmtpSecureFlg, .shape = Shape::Range, .low = 0, .high = 2, .dflt = "0", .options = kKeepOnBad},
    {.id = Id::CXioPopSecureFlg, .shape = Shape::Range, .low = 0, .high = 2, .dflt = "0", .options = kKeepOnBad},
    {.id = Id::CXioSingleSignonFlg, .shape = Shape::Range, .low = 0, .high = 3, .dflt = "0", .options = kKeepOnBad},
    {.id = Id::CXioPortalSettingFlg, .shape = Shape::Range, .low = 0, .high = 1, .dflt = "1", .options = kKeepOnBad},
    {.id = Id::CXioAlarmSendFlg, .shape = Shape::Range, .low = 0, .high = 3},
    // The default lies outside the range: Clear stores defaults without the row's test.
    {.id = Id::CXioMenuStateFlg, .shape = Shape::Range, .low = 0, .high = 2, .dflt = "21"},
    {.id = Id::CXioMenuColorFlg, .shape = Shape::Range, .low = 0, .high = 6, .dflt = "1"},
    {.id = Id::CXioTagColorFlg, .shape = Shape::Range, .low = 0, .high = 6},
    {.id = Id::CXioSubWindowFlg, .shape = Shape::TwoDigits, .dflt = "21"},
};

constexpr bool RowsInOrder() {
    if (std::size(kRules) != static_cast<std::size_t>(Id::Count)) return false;
    for (std::size_t i = 0; i < std::size(kRules); ++i)
        if (static_cast<std::size_t>(kRules[i].id) != i) return false;
    return true;
}
static_assert(RowsInOrder(), "one row per flag, in the order of CS3FlagId");

const FlagRule& RuleOf(Id id) { return kRules[static_cast<std::size_t>(id)]; }

bool IsNullOrEmpty(const char* text) { return !text || *text == '\0'; }

bool InSet(const FlagRule& rule, const char* text) {
    for (const char* allowed : rule.allowed)
        if (allowed && std::strcmp(allowed, text) == 0) return true;
    return false;
}

// The value as a number: the empty text reads as 0, other text must be numeric.
bool ReadNumber(const char* text, long* out) {
    if (*text == '\0') {
        *out = 0;
        return true;
    }
    if (!comIsNumeric(text)) return false;
    *out = std::strtol(text, nullptr, 10);
    return true;
}

}  // namespace

int CS3FlgStr::SetStrLen(const char* value, int len) {
    const int ret = CS3String::SetStrLen(value, len);
    if (ret == 0) RTrim();
    return ret;
}

int CS3FlgStr::GetInt() const {
    const long n = std::strtol(GetStr(), nullptr, 10);
    return n > INT_MAX ? INT_MAX : (n < INT_MIN ? INT_MIN : static_cast<int>(n));
}

int CS3FlgStr::ValueSizeOf(CS3FlagId id) { return RuleOf(id).valueSize; }

bool CS3FlgStr::DefaultAtStart(CS3FlagId id) { return (RuleOf(id).options & kDefaultAtStart) != 0; }

void CS3FlgStr::ClearByRule(CS3FlagId id) {
    CS3String::Clear();
    if (const char* dflt = RuleOf(id).dflt) CS3String::SetStr(dflt);
}

int CS3FlgStr::SetByRule(CS3FlagId id, const char* value) {
    const FlagRule& rule = RuleOf(id);
    // A refused value: traced where the row asks, cleared unless it is kept.
    auto refuse = [&](int code) {
        if (rule.options & kTraceBad) comTrace("[%s:%d]val[%s]", CONV_HERE, value ? value : "");
        if (!(rule.options & kKeepOnBad)) Clear();
        return code;
    };

    switch (rule.shape) {
    case Shape::Plain:
        return CS3String::SetStr(value);

    case Shape::Strict:
    case Shape::EmptyOk: {
        const bool isAlias = rule.alias && value && std::strcmp(value, rule.alias) == 0;
        const int ret = CS3String::SetStr(isAlias ? rule.aliasValue : value);
        if (ret != 0) return ret;
        if (IsEmpty() ? rule.shape == Shape::EmptyOk : InSet(rule, GetStr())) return 0;
        return refuse(CS3_ERR_INVALID);
    }

    case Shape::Range:
    case Shape::Label: {
        if (rule.shape == Shape::Label && !IsNullOrEmpty(value) && !comIsNumeric(value)) {
            const char* label = GetLocalText(rule.alias);
            if (IsNullOrEmpty(label)) {
                Clear();
                return CS3_ERR_NO_LABEL;
            }
            if (std::strcmp(label, value) != 0) return refuse(CS3_ERR_INVALID);
            value = rule.aliasValue;
        }
        const std::string old = GetStr();
        const int ret = CS3String::SetStr(value);
        if (ret != 0) return ret;
        long number = 0;
        if (!ReadNumber(GetStr(), &number) || number < rule.low || number > rule.high) {
            if (rule.options & kBadSetsDefault) {
                Clear();
                return 0;
            }
            return refuse(CS3_ERR_INVALID);
        }
        if (IsEmpty()) {
            if (rule.options & kEmptyCleared) Clear();
            if (rule.options & kOrIntoOld) CS3String::SetStr(old.c_str());  // nothing to add
            return 0;
        }
        if (rule.options & kOrIntoOld) {
            char text[16];
            std::snprintf(text, sizeof text, "%ld", std::strtol(old.c_str(), nullptr, 10) | number);
            return CS3String::SetStr(text);
        }
        return 0;
    }

    case Shape::KindLetter: {
        if (IsNullOrEmpty(value)) return 0;  // nothing stored, the old value stays
        const int ret = CS3String::SetStr(value);
        if (ret != 0) return ret;
        const char first = GetStr()[0];
        if (first == 'B' || first == 'D' || first == 'E') return 0;
        if (first == 'b' || first == 'd' || first == 'e') {
            const char upper[2] = {static_cast<char>(std::toupper(static_cast<unsigned char>(first))), '\0'};
            return CS3String::SetStr(upper);
        }
        return refuse(CS3_ERR_INVALID);
    }

    case Shape::TwoDigits: {
        const int ret = CS3String::SetStr(value);
        if (ret != 0) return ret;
        const char* text = GetStr();
        if (std::strlen(text) <= 1 || text[0] < '0' || text[0] > '2' || text[1] < '1' || text[1] > '4')
            return refuse(CS3_ERR_INVALID);
        return 0;
    }
    }
    return refuse(CS3_ERR_INVALID);
}

const char* CXioMenuColorFlg::GetColorName() const {
    static constexpr const char* kNames[] = {"blue", "green", "yellow", "pink", "red", "gray"};
    const int index = GetInt() - 1;
    return index >= 0 && index < static_cast<int>(std::size(kNames)) ? kNames[index] : kNames[0];
}
