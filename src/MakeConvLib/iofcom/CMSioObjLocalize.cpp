// The localisation functions: language selection, message files, lookups by
// key, date formatting with the language's week names, numbered messages.
#include "MakeConvLib/iofcom/CMSioObjLocalize.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/iofcom/Zi18nLang.h"
#include "base/comSource.h"
#include "base/comTime.h"

namespace {

constexpr const char* kShortDays[7] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* kLongDays[7] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                      "Thursday", "Friday", "Saturday"};
// Most bytes behind a replaced week name.
constexpr std::size_t kReplaceTailMax = 4096;

Zi18nLang* CurrentLanguage() {
    CMSioObjApp* settings = GetSettingsObject();
    return settings ? settings->GetLanguage() : nullptr;
}

// Copies text into out, cut to outSize - 1 bytes.
void CopyCut(const char* text, char* out, int outSize) {
    std::snprintf(out, static_cast<std::size_t>(outSize), "%s", text);
}

// A calendar record from a date text; dateOnly ignores everything behind
// the eighth digit. Short texts read as zero.
struct tm RecordOf(const char* date, bool dateOnly) {
    char part[16] = {};
    std::snprintf(part, sizeof part, "%s", date);
    const std::size_t len = std::strlen(part);
    if (dateOnly && len > 8) part[8] = '\0';
    const char* time = len > 8 && !dateOnly ? part + 8 : "";

    struct tm record{};
    const int year = comDateYear(part), month = comDateMonth(part), day = comDateDay(part);
    record.tm_year = year - 1900;
    record.tm_mon = month - 1;
    record.tm_mday = day;
    record.tm_hour = comTimeHour(time);
    record.tm_min = comTimeMinute(time);
    record.tm_sec = comTimeSecond(time);
    record.tm_wday = comDateWeekday(year, month, day);
    return record;
}

void FormatWith(const char* format, const char* date, char* out, int outSize, bool dateOnly) {
    if (!out || outSize <= 0) return;
    if (!date || *date == '\0') {
        out[0] = '\0';
        return;
    }
    if (!format) {
        CopyCut(date, out, outSize);
        return;
    }
    const struct tm record = RecordOf(date, dateOnly);
    int ret = FormatCalendar(out, outSize - 1, format, record);
    if (ret != 0) {
        comTrace("[%s:%d] ret[%d] date[%s]", CONV_HERE, ret, date);
        CopyCut(date, out, outSize);
    }
    ReplaceWeekNames(out, outSize);
}

}  // namespace

int SetLanguage(const char* name) {
    CMSioObjApp* settings = GetSettingsObject();
    if (!settings) return CMS_ERR_NO_SETTINGS;
    int ret = settings->CreateLangList();
    if (ret != 0) {
        comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
        return ret;
    }
    Zi18nLang* lang = settings->GetLangList()->GetLanguage(name);
    if (!lang) {
        comTrace("[%s:%d]", CONV_HERE);
        return CMS_ERR_NO_LANGUAGE;
    }
    settings->SetCurrentLanguage(lang);
    return 0;
}

int LoadMessageFile(const char* name) {
    if (!GetSettingsObject()) return CMS_ERR_NO_SETTINGS;
    Zi18nLang* lang = CurrentLanguage();
    if (!lang) {
        comTrace("[%s:%d] fname[%s]", CONV_HERE, name ? name : "");
        return CMS_ERR_NO_LANGUAGE;
    }
    return lang->LoadMessageFile(name);
}

const char* GetLanguageName() {
    if (!GetSettingsObject()) return "ja_JP";
    Zi18nLang* lang = CurrentLanguage();
    return lang ? lang->GetName() : "";
}

const char* GetLocalText(const char* key) {
    if (!key) return nullptr;
    Zi18nLang* lang = CurrentLanguage();
    if (!lang) {
        comTrace("[%s][%d]", CONV_HERE);
        return nullptr;
    }
    CMSioObjLocalize* localize = lang->GetLocalize();
    return localize ? localize->GetValue(key) : nullptr;
}

const char* GetShortWeekName(int day) {
    if (day < 0 || day > 6) return nullptr;
    Zi18nLang* lang = CurrentLanguage();
    return lang ? lang->GetShortWeekNames()[day] : nullptr;
}

const char* GetLongWeekName(int day) {
    if (day < 0 || day > 6) return nullptr;
    Zi18nLang* lang = CurrentLanguage();
    return lang ? lang->GetLongWeekNames()[day] : nullptr;
}

const char* GetLabelSeparator() {
    Zi18nLang* lang = CurrentLanguage();
    return lang ? lang->GetSeparator() : "：";
}

void FormatDateTimeLocal(const char* format, const char* date, char* out, int outSize) {
    FormatWith(format, date, out, outSize, false);
}

void FormatDateLocal(const char* format, const char* date, char* out, int outSize) {
    FormatWith(format, date, out, outSize, true);
}

void FormatDateTimeByKey(const char* key, const char* date, char* out, int outSize) {
    const char* format = GetLocalText(key);
    if (!format) {
        if (out && outSize > 0) out[0] = '\0';
        return;
    }
    FormatDateTimeLocal(format, date, out, outSize);
}

void FormatDateByKey(const char* key, const char* date, char* out, int outSize) {
    const char* format = GetLocalText(key);
    if (!format) {
        if (out && outSize > 0) out[0] = '\0';
        return;
    }
    FormatDateLocal(format, date, out, outSize);
}

int FormatCalendar(char* out, int size, const char* format, const struct tm& record) {
    if (!out || size <= 0) return CMS_ERR_CALENDAR;
    if (!format) {
        comTrace("[%s:%d] no format", CONV_HERE);
        out[0] = '\0';
        return CMS_ERR_CALENDAR;
    }
    if (record.tm_year < 0 || record.tm_mon < 0 || record.tm_mon > 11 || record.tm_mday < 1 ||
        record.tm_mday > 31 || record.tm_hour < 0 || record.tm_hour > 23 || record.tm_min < 0 ||
        record.tm_min > 59 || record.tm_sec < 0 || record.tm_sec > 59) {
        comTrace("[%s:%d]y[%d]m[%d]d[%d]h[%d]m[%d]s[%d]", CONV_HERE, record.tm_year, record.tm_mon,
                 record.tm_mday, record.tm_hour, record.tm_min, record.tm_sec);
        out[0] = '\0';
        return CMS_ERR_CALENDAR;
    }
    // A result that doesn't fit leaves strftime's buffer undefined: empty it.
    if (std::strftime(out, static_cast<std::size_t>(size), format, &record) == 0) out[0] = '\0';
    out[size - 1] = '\0';
    return 0;
}

void ReplaceWeekNames(char* text, int size) {
    if (!text || size <= 0) return;
    const std::size_t len = strnlen(text, static_cast<std::size_t>(size));
    if (len >= static_cast<std::size_t>(size)) return;  // not terminated within size

    int day = -1;
    char* at = nullptr;
    for (int d = 0; d < 7 && !at; ++d) {
        at = std::strstr(text, kShortDays[d]);
        if (at) day = d;
    }
    if (!at) return;

    Zi18nLang* lang = CurrentLanguage();
    if (!lang) return;
    std::size_t pieceLen = 3;
    const char* replacement = nullptr;
    const std::size_t longLen = std::strlen(kLongDays[day]);
    if (std::strncmp(at, kLongDays[day], longLen) == 0) {
        pieceLen = longLen;
        replacement = lang->GetLongWeekNames()[day];
    } else {
        replacement = lang->GetShortWeekNames()[day];
    }
    if (!replacement) return;

    const std::size_t head = static_cast<std::size_t>(at - text);
    const char* rest = at + pieceLen;
    const std::size_t restLen = len - head - pieceLen;
    if (restLen >= kReplaceTailMax) return;
    const std::size_t newLen = head + std::strlen(replacement) + restLen;
    if (newLen >= static_cast<std::size_t>(size)) return;

    std::string tail(rest, restLen);
    std::memcpy(at, replacement, std::strlen(replacement));
    std::memcpy(at + std::strlen(replacement), tail.data(), restLen);
    text[newLen] = '\0';
}

const char* MessageTextByCode(int code, char* severity) {
    if (!GetSettingsObject()) return nullptr;
    if (severity) *severity = '\0';
    Zi18nLang* lang = CurrentLanguage();
    CMSioObjMsg* msg = lang ? lang->GetMessages(nullptr) : nullptr;
    if (!msg) return nullptr;

    char key[16];
    std::snprintf(key, sizeof key, "%d", code);
    const char* text = msg->GetValue(key);
    if (text) {
        if (std::strlen(text) > 2 && text[1] == ':') {
            if (severity) *severity = text[0];
            return text + 2;
        }
        return text;
    }
    if (msg->AddValue(key, key, nullptr) != 0) return nullptr;
    return msg->GetValue(key);
}

void SetLastErrorByCode(int code, const char* text) {
    CMSioObjApp* settings = GetSettingsObject();
    if (!settings) return;
    const char* message = code != 0 ? MessageTextByCode(code, nullptr) : nullptr;
    std::string joined = message ? message : "";
    joined += text ? text : "";
    settings->SetLastError(joined.c_str());
}
