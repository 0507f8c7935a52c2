// Time of day fields: the accepted forms, hour limit, formatting and the
// minute arithmetic.
#include "MakeConvLib/cs3base/CS3TimeStr.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "MakeConvLib/iofcom/CMSioObjLocalize.h"
#include "base/comStr.h"
#include "base/comTime.h"

namespace {

bool IsNullOrEmpty(const char* text) { return !text || *text == '\0'; }

// Two parts of at most nine digits each, and a stamp built around the value.
constexpr std::size_t kCandidateSize = 64;

// The first count characters of text from start, read as a number.
int ReadPart(const char* text, std::size_t start, std::size_t count) {
    char part[8] = {};
    const std::size_t len = std::strlen(text);
    if (len <= start) return 0;
    std::memcpy(part, text + start, std::min(count, len - start));
    return static_cast<int>(std::strtol(part, nullptr, 10));
}

}  // namespace

int CS3TimeStr::SetStr(const char* value) {
    if (!value) return CS3FixedInt::SetStr("");
    char candidate[kCandidateSize] = {};
    const char* time = value;
    bool rewritten = false;
    bool valid = true;
    const std::size_t len = std::strlen(value);
    if (std::strchr(value, ':') && len <= 11) {
        int parts[2] = {};
        rewritten = true;
        valid = ScanFields(value, ':', 2, parts) == 2;
        if (valid) {
            std::snprintf(candidate, sizeof candidate, "%02d%02d", parts[0], parts[1]);
            time = candidate;
        }
    } else if (len == 3) {
        rewritten = true;
        std::snprintf(candidate, sizeof candidate, "0%s", value);
        time = candidate;
    }
    if (rewritten && *time != '\0' && (!valid || comTimeCheck(time) != 0)) {
        Clear();
        return comIsNumeric(time) ? CS3_ERR_TIMERANGE : CS3_ERR_TIMETEXT;
    }
    const int ret = CS3FixedInt::SetStr(time);
    if (ret != 0) return ret;
    if (!IsEmpty() && GetHour() > maxHour) return CS3_ERR_TIMERANGE;
    return 0;
}

int CS3TimeStr::GetHour() const { return IsEmpty() ? -1 : ReadPart(GetStr(), 0, 2); }

int CS3TimeStr::GetMinute() const { return IsEmpty() ? -1 : ReadPart(GetStr(), 2, 2); }

int CS3TimeStr::FormatTime(char* out, int outSize, const char* format) const {
    if (!out) return CS3_ERR_ARGUMENT;
    if (outSize < 1) return 0;
    out[0] = '\0';
    if (IsEmpty()) return 0;
    char stamp[kCandidateSize];
    std::snprintf(stamp, sizeof stamp, "20010101%s", GetStr());
    if (format)
        FormatDateTimeLocal(format, stamp, out, outSize);
    else
        FormatDateTimeByKey("comtimehm2", stamp, out, outSize);
    return 0;
}

int CS3TimeStr::SetHM(const char* hour, const char* minute) {
    const bool noHour = IsNullOrEmpty(hour), noMinute = IsNullOrEmpty(minute);
    if (noHour && noMinute) return 0;
    if (noHour) return CS3_ERR_INVALID;
    if (noMinute) minute = "00";
    if (std::strlen(hour) > 2 || std::strlen(minute) > 2) return CS3_ERR_LENGTH;
    CS3Int h, m;
    int ret = h.SetStr(hour);
    if (ret == 0) ret = m.SetStr(minute);
    if (ret != 0) return ret;
    char text[kCandidateSize];
    std::snprintf(text, sizeof text, "%02d%02d", h.GetInt(), m.GetInt());
    return SetStr(text);
}

int CS3TimeStr::AddMinutes(int base, int delta) {
    long long hour = base / 100;
    long long minute = static_cast<long long>(delta) + base % 100;
    if (minute >= 60) {
        ++hour;
        minute -= 60;
    } else if (minute < 0) {
        --hour;
        minute += 60;
    }
    if (hour < 0) {
        hour = 0;
        minute = 0;
    } else if (hour > maxHour) {
        hour = hour - maxHour - 1;
        minute = 0;
    }
    char text[kCandidateSize];
    std::snprintf(text, sizeof text, "%04lld", hour * 100 + minute);
    return SetStr(text);
}
