// Date fields: reading of the accepted date forms, the calendar checks, the
// date arithmetic and the localised output.
#include "MakeConvLib/cs3base/CS3DateStr.h"

#include <cstdio>
#include <cstring>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/iofcom/CMSioObjLocalize.h"
#include "base/comSource.h"
#include "base/comStr.h"
#include "base/comTime.h"

namespace {

bool IsNullOrEmpty(const char* text) { return !text || *text == '\0'; }

// The last date below and the first above the range of SetInRange.
constexpr const char* kRangeLow = "19700102";
constexpr const char* kRangeHigh = "21000101";

// Room for "%04d%02d%02d" of parts bounded to nine digits, and a time behind.
constexpr std::size_t kCandidateSize = 64;

}  // namespace

// ---- CS3DateStr ----

int CS3DateStr::SetStr(const char* value) {
    if (IsNullOrEmpty(value)) {
        Clear();
        return 0;
    }
    char candidate[kCandidateSize] = {};
    const char* date = value;
    bool valid = true;
    if (std::strlen(value) <= 11) {
        const char sep = std::strchr(value, '/') ? '/' : (std::strchr(value, '-') ? '-' : '\0');
        if (sep != '\0') {
            int parts[3] = {};
            valid = ScanFields(value, sep, 3, parts) == 3;
            if (valid) {
                std::snprintf(candidate, sizeof candidate, "%04d%02d%02d", parts[0], parts[1], parts[2]);
                date = candidate;
            }
        }
    }
    if (!valid || comDateCheck(date) != 0) {
        Clear();
        return comIsNumeric(date) ? CS3_ERR_NODATE : CS3_ERR_DATETEXT;
    }
    if (CS3FixedInt::SetStr(date) != 0) {
        Clear();  // e.g. more than eight digits with a valid date at their head
        return CS3_ERR_DATETEXT;
    }
    return 0;
}

int CS3DateStr::SetYMD(const char* year, const char* month, const char* day) {
    const bool noYear = IsNullOrEmpty(year), noMonth = IsNullOrEmpty(month), noDay = IsNullOrEmpty(day);
    if (noYear && noMonth && noDay) return 0;
    if (noYear || noMonth || noDay) return CS3_ERR_NODATE;
    if (std::strlen(year) > 4 || std::strlen(month) > 2 || std::strlen(day) > 2) return CS3_ERR_LENGTH;
    const char* texts[3] = {year, month, day};
    int parts[3] = {};
    for (int i = 0; i < 3; ++i) {
        CS3Int part;
        const int ret = part.SetStr(texts[i]);
        if (ret != 0) return ret;
        parts[i] = part.GetInt();
    }
    char text[kCandidateSize];
    std::snprintf(text, sizeof text, "%04d%02d%02d", parts[0], parts[1], parts[2]);
    return SetStr(text);
}

int CS3DateStr::SetInRange(const char* value) {
    const int ret = SetStr(value);
    if (ret != 0) {
        comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
        return ret;
    }
    // Only the date part counts, so that a date and time is judged by its day.
    if (!IsEmpty() && (CompareN(kRangeLow, 8) <= 0 || CompareN(kRangeHigh, 8) >= 0)) {
        comTrace("[%s:%d]date[%s]", CONV_HERE, GetStr());
        Clear();
        return CS3_ERR_DATERANGE;
    }
    return 0;
}

int CS3DateStr::GetYear() const { return IsEmpty() ? -1 : comDateYear(GetStr()); }
int CS3DateStr::GetMonth() const { return IsEmpty() ? -1 : comDateMonth(GetStr()); }
int CS3DateStr::GetDay() const { return IsEmpty() ? -1 : comDateDay(GetStr()); }

const char* CS3DateStr::DateOrDefault(const char* dflt, char* today) const {
    if (!IsEmpty()) return GetStr();
    if (!IsNullOrEmpty(dflt)) return dflt;
    comTimeNowDate(today, true);
    return today;
}

int CS3DateStr::GetYear(const char* dflt) const {
    char today[16] = {};
    return comDateYear(DateOrDefault(dflt, today));
}

int CS3DateStr::GetMonth(const char* dflt) const {
    char today[16] = {};
    return comDateMonth(DateOrDefault(dflt, today));
}

int CS3DateStr::GetDay(const char* dflt) const {
    char today[16] = {};
    return comDateDay(DateOrDefault(dflt, today));
}

int CS3DateStr::GetShortYear() const { return IsEmpty() ? -1 : GetYear() % 100; }

int CS3DateStr::NextDay() { return AddDays(1); }
int CS3DateStr::PrevDay() { return AddDays(-1); }

int CS3DateStr::AddDays(int days) {
    if (IsEmpty()) return CS3_ERR_INVALID;
    char date[16] = {};
    comDateAddDays(GetStr(), days, date);
    const char* value = GetStr();
    char text[kCandidateSize];
    std::snprintf(text, sizeof text, "%s%s", date, std::strlen(value) > 8 ? value + 8 : "");
    return SetStr(text);
}

int CS3DateStr::FormatDate(char* out, int outSize, bool shortForm) const {
    if (!out) return CS3_ERR_ARGUMENT;
    if (outSize < 1) return 0;
    out[0] = '\0';
    if (IsEmpty()) return 0;
    FormatDateByKey(shortForm ? "comxtimesymd2" : "comtimeymd2", GetStr(), out, outSize);
    return 0;
}

int CS3DateStr::FormatMonthDay(char* out, int outSize) const {
    if (!out) return CS3_ERR_ARGUMENT;
    if (outSize < 1) return 0;
    out[0] = '\0';
    if (IsEmpty()) return 0;
    FormatDateByKey("comtimemd2", GetStr(), out, outSize);
    return 0;
}

int CS3DateStr::FormatWeekdayDate(char* out, int outSize) const {
    if (!out) return CS3_ERR_ARGUMENT;
    if (outSize < 1) return 0;
    out[0] = '\0';
    if (IsEmpty()) return 0;
    const char* name = GetShortWeekName(comDateWeekday(GetYear(), GetMonth(), GetDay()));
    std::snprintf(out, static_cast<std::size_t>(outSize), "%02d/%02d(%s)", GetMonth(), GetDay(),
                  name ? name : "");
    comUtf8CutBytes(out, outSize - 1, true);
    return 0;
}

// ---- CS3DateStrH ----

int CS3DateStrH::SetInRange(const char* value) {
    if (IsNullOrEmpty(value)) return CS3_ERR_REQUIRED;
    return CS3DateStr::SetInRange(value);
}

int CS3DateStrH::SetYMD(const char* year, const char* month, const char* day) {
    if (IsNullOrEmpty(year) && IsNullOrEmpty(month) && IsNullOrEmpty(day)) return CS3_ERR_REQUIRED;
    return CS3DateStr::SetYMD(year, month, day);
}

// ---- CS3DateTimeStr ----

int CS3DateTimeStr::SetStr(const char* value) {
    char candidate[kCandidateSize] = {};
    const char* stamp = value;
    // A short "Y/M/D" becomes twelve digits, which the length check refuses:
    // only full fourteen-digit stamps are ever stored.
    if (value && std::strlen(value) < 8 && std::strchr(value, '/')) {
        int parts[3] = {};
        if (ScanFields(value, '/', 3, parts) == 3) {
            std::snprintf(candidate, sizeof candidate, "%04d%02d%02d0000", parts[0], parts[1], parts[2]);
            stamp = candidate;
        }
    }
    const int ret = CS3FixedInt::SetStr(stamp);
    if (ret != 0) return ret;
    if (IsEmpty()) return 0;
    const char* time = GetStr() + 8;
    if (comDateCheck(GetStr()) != 0 || comTimeCheck(time) != 0 || comTimeSecond(time) > 59) {
        Clear();
        return CS3_ERR_INVALID;
    }
    return 0;
}

std::string CS3DateTimeStr::GetDatePart() const { return std::string(GetStr()).substr(0, 8); }

const char* CS3DateTimeStr::GetTimePart() const {
    const char* value = GetStr();
    return std::strlen(value) > 8 ? value + 8 : "";
}

int CS3DateTimeStr::FormatDateTime(char* out, int outSize, bool shortForm) const {
    if (!out) return CS3_ERR_ARGUMENT;
    if (outSize < 1) return 0;
    out[0] = '\0';
    if (IsEmpty()) return 0;
    FormatDateTimeByKey(shortForm ? "comxtimesymdhm" : "comxtimeymdhm", GetStr(), out, outSize);
    return 0;
}
