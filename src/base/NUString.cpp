// The owning byte string and its validating forms for digit strings and dates.
#include "base/NUString.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <strings.h>

#include "base/comStr.h"
#include "base/comTime.h"

namespace {

const char* OrEmpty(const char* text) { return text ? text : ""; }

bool IsNullOrEmpty(const char* text) { return !text || *text == '\0'; }

std::unique_ptr<char[]> Allocate(std::size_t size) {
    std::unique_ptr<char[]> p(new (std::nothrow) char[size]);
    if (p) std::memset(p.get(), 0, size);
    return p;
}

// Reads "Y<sep>M<sep>D" as sscanf("%d<sep>%d<sep>%d") would; false when a field is missing.
bool ReadTriple(const char* text, char sep, long* year, long* month, long* day) {
    long* fields[3] = {year, month, day};
    const char* p = text;
    for (int i = 0; i < 3; ++i) {
        char* end = nullptr;
        *fields[i] = std::strtol(p, &end, 10);
        if (end == p) return false;
        if (i < 2) {
            if (*end != sep) return false;
            p = end + 1;
        }
    }
    return true;
}

}  // namespace

// ---- NUString ----

NUString::NUString(const NUString& other) : valueSize(other.valueSize) {
    if (!other.buf) return;
    const std::size_t len = std::strlen(other.buf.get());
    const std::size_t size = std::max(len + 1, static_cast<std::size_t>(valueSize));
    if (auto fresh = Allocate(size)) {
        std::memcpy(fresh.get(), other.buf.get(), len);
        Adopt(std::move(fresh), size);
    }
}

NUString::NUString(NUString&& other) noexcept
    : buf(std::move(other.buf)), capacity(other.capacity), valueSize(other.valueSize) {
    other.capacity = 0;
}

NUString& NUString::operator=(const NUString& other) {
    if (this == &other) return *this;
    if (!other.buf) {
        Clear();
        return *this;
    }
    const std::size_t len = std::strlen(other.buf.get());
    const std::size_t size = std::max(len + 1, static_cast<std::size_t>(valueSize));
    if (capacity < size) {
        auto fresh = Allocate(size);
        if (!fresh) {
            Clear();
            return *this;
        }
        Adopt(std::move(fresh), size);
    }
    std::memcpy(buf.get(), other.buf.get(), len);
    std::memset(buf.get() + len, 0, capacity - len);
    return *this;
}

NUString& NUString::operator=(NUString&& other) noexcept {
    if (this == &other) return *this;
    // A bounded string must keep a buffer of at least its capacity rule.
    if (other.buf && other.capacity < static_cast<std::size_t>(valueSize)) return *this = other;
    buf = std::move(other.buf);
    capacity = buf ? other.capacity : 0;
    other.capacity = 0;
    if (!buf) Clear();
    return *this;
}

void NUString::Adopt(std::unique_ptr<char[]> newBuf, std::size_t newCapacity) {
    buf = std::move(newBuf);
    capacity = buf ? newCapacity : 0;
}

bool NUString::Reserve(std::size_t size) {
    if (buf && capacity >= size) return true;
    auto fresh = Allocate(size);
    if (!fresh) return false;
    Adopt(std::move(fresh), size);
    return true;
}

const char* NUString::GetStr() const {
    return buf ? buf.get() : reinterpret_cast<const char*>(&emptyWord);
}

int NUString::SetStr(const char* value) {
    const std::size_t len = std::strlen(OrEmpty(value));
    return SetStrLen(value, static_cast<int>(std::min<std::size_t>(len, INT_MAX)));
}

int NUString::SetStrLen(const char* value, int len) {
    value = OrEmpty(value);
    if (len < 0) len = 0;
    if (valueSize != 0) {
        const std::size_t limit = static_cast<std::size_t>(valueSize);
        const std::size_t valueLen = std::strlen(value);
        if (valueLen >= limit && static_cast<std::size_t>(len) >= limit) return NUSTR_ERR_LENGTH;
        const bool aliases = buf && std::greater_equal<const char*>()(value, buf.get()) &&
                             std::less<const char*>()(value, buf.get() + capacity);
        if (!Reserve(limit)) return NUSTR_ERR_MEMORY;
        // As strncpy: at most valueSize - 1 bytes, the rest zero-filled.
        const std::size_t n = std::min(valueLen, limit - 1);
        if (aliases)
            std::memmove(buf.get(), value, n);
        else
            std::memcpy(buf.get(), value, n);
        std::memset(buf.get() + n, 0, capacity - n);
        return 0;
    }
    const std::size_t n = strnlen(value, static_cast<std::size_t>(len));
    if (buf && capacity > n) {
        std::memmove(buf.get(), value, n);  // value may lie inside buf
        buf[n] = '\0';
        return 0;
    }
    auto fresh = Allocate(n + 1);
    if (!fresh) return NUSTR_ERR_MEMORY;
    std::memcpy(fresh.get(), value, n);
    Adopt(std::move(fresh), n + 1);
    return 0;
}

int NUString::SetCutBytes(const char* value, int limit, const char* suffix) {
    value = OrEmpty(value);
    suffix = OrEmpty(suffix);
    if (limit < 0) limit = 0;
    const std::size_t valueLen = std::strlen(value);
    const std::size_t suffixLen = std::strlen(suffix);
    const std::size_t size =
        std::max(valueLen + suffixLen + 1, static_cast<std::size_t>(valueSize));
    auto fresh = Allocate(size);  // built aside: value may be this string's own text
    if (!fresh) return NUSTR_ERR_MEMORY;
    char* out = fresh.get();
    if (valueLen <= static_cast<std::size_t>(limit)) {
        std::memcpy(out, value, valueLen);
    } else {
        std::memcpy(out, value, static_cast<std::size_t>(limit));
        const long room = static_cast<long>(limit) - static_cast<long>(suffixLen);
        comUtf8CutBytes(out, static_cast<int>(std::max(room, 0L)), true);
        std::memcpy(out + std::strlen(out), suffix, suffixLen + 1);
    }
    Adopt(std::move(fresh), size);
    return 0;
}

int NUString::SetCutChars(const char* value, int limit, const char* suffix, bool countWideAsOne) {
    value = OrEmpty(value);
    suffix = OrEmpty(suffix);
    const std::size_t valueLen = std::strlen(value);
    const std::size_t suffixLen = std::strlen(suffix);
    const std::size_t size =
        std::max(valueLen + suffixLen + 1, static_cast<std::size_t>(valueSize));
    auto fresh = Allocate(size);
    if (!fresh) return NUSTR_ERR_MEMORY;
    char* out = fresh.get();
    std::memcpy(out, value, valueLen);
    const long room = static_cast<long>(limit) - static_cast<long>(suffixLen);
    // No room left for the suffix empties the text without a cut, so nothing is appended.
    if (comUtf8CutChars(out, static_cast<int>(std::max(room, 0L)), countWideAsOne))
        std::memcpy(out + std::strlen(out), suffix, suffixLen + 1);
    Adopt(std::move(fresh), size);
    return 0;
}

bool NUString::IsEmpty() const { return !buf || buf[0] == '\0'; }

void NUString::Clear() {
    if (valueSize != 0) {
        if (buf) std::memset(buf.get(), 0, capacity);
    } else {
        Adopt(nullptr, 0);
    }
}

int NUString::Printf(const char* format, ...) {
    if (!format) {
        Clear();
        return 0;
    }
    const std::size_t formatLen = std::strlen(format);
    const std::size_t size = std::max(formatLen + 8192, static_cast<std::size_t>(valueSize));
    auto fresh = Allocate(size);  // formatted aside: an argument may be this string's text
    if (!fresh) {
        Clear();
        return NUSTR_ERR_MEMORY;
    }
    va_list args;
    va_start(args, format);
    std::vsnprintf(fresh.get(), formatLen + 8191, format, args);
    va_end(args);
    Adopt(std::move(fresh), size);
    return 0;
}

int NUString::Append(const char* text) {
    if (IsNullOrEmpty(text)) return 0;
    const std::size_t oldLen = buf ? std::strlen(buf.get()) : 0;
    const std::size_t addLen = std::strlen(text);
    // An unbounded text grows by doubling, so that repeated appends cost
    // amortised constant time a byte.
    const std::size_t size = std::max({oldLen + addLen + 1, static_cast<std::size_t>(valueSize),
                                       valueSize == 0 ? 2 * capacity : std::size_t{0}});
    if (buf && capacity >= oldLen + addLen + 1) {
        std::memmove(buf.get() + oldLen, text, addLen);
        buf[oldLen + addLen] = '\0';
        return 0;
    }
    auto fresh = Allocate(size);
    if (!fresh) return NUSTR_ERR_MEMORY;
    if (buf) std::memcpy(fresh.get(), buf.get(), oldLen);
    std::memcpy(fresh.get() + oldLen, text, addLen);
    Adopt(std::move(fresh), size);
    return 0;
}

void NUString::ReplaceChar(char from, char to) {
    if (!buf) return;
    const std::size_t len = std::strlen(buf.get());
    for (std::size_t i = 0; i < len; ++i)
        if (buf[i] == from) buf[i] = to;
}

void NUString::RTrim() {
    if (buf) comStrRTrim(buf.get());
}

int NUString::CopyTo(char* dst, int dstSize) const {
    if (!dst || dstSize <= 0) return NUSTR_ERR_OUTPUT;
    const char* text = GetStr();
    const std::size_t len = std::strlen(text);
    const std::size_t room = static_cast<std::size_t>(dstSize) - 1;
    const std::size_t n = std::min(len, room);
    std::memcpy(dst, text, n);
    dst[n] = '\0';
    // Only the bytes before the cut decide where a character starts.
    if (len > room) comUtf8CutBytes(dst, static_cast<int>(room), true);
    return 0;
}

int NUString::Compare(const char* text) const { return std::strcmp(GetStr(), OrEmpty(text)); }

int NUString::CompareN(const char* text, std::size_t n) const {
    return std::strncmp(GetStr(), OrEmpty(text), n);
}

int NUString::CompareNoCase(const char* text) const { return strcasecmp(GetStr(), OrEmpty(text)); }

int NUString::CompareNoCaseN(const char* text, std::size_t n) const {
    return strncasecmp(GetStr(), OrEmpty(text), n);
}

// ---- NUFixedInt ----

int NUFixedInt::SetStr(const char* value) {
    const int rc = NUString::SetStr(value);
    if (rc != 0) return rc;
    if (IsEmpty()) return 0;
    const char* text = GetStr();
    if (static_cast<long>(std::strlen(text)) != GetValueSize() - 1L || !comIsNumeric(text)) {
        Clear();
        return NUSTR_ERR_FIXED;
    }
    return 0;
}

// ---- NUDateStr ----

int NUDateStr::SetStr(const char* value) {
    if (IsNullOrEmpty(value)) {
        Clear();
        return 0;
    }
    const std::size_t len = std::strlen(value);
    const char* candidate = value;
    char rewritten[64] = {};
    for (char sep : {'/', '-'}) {
        if (!std::strchr(value, sep) || len > 11) continue;
        long year = 0, month = 0, day = 0;
        if (!ReadTriple(value, sep, &year, &month, &day)) {
            Clear();
            return NUSTR_ERR_DATE;
        }
        std::snprintf(rewritten, sizeof rewritten, "%04ld%02ld%02ld", year, month, day);
        candidate = rewritten;
        break;
    }
    if (comDateCheck(candidate) != 0) {
        Clear();
        return comIsNumeric(candidate) ? NUSTR_ERR_NODATE : NUSTR_ERR_DATE;
    }
    if (NUFixedInt::SetStr(candidate) != 0) {
        Clear();
        return NUSTR_ERR_DATE;
    }
    return 0;
}

int NUDateStr::SetYMD(const char* year, const char* month, const char* day) {
    const bool yEmpty = IsNullOrEmpty(year), mEmpty = IsNullOrEmpty(month), dEmpty = IsNullOrEmpty(day);
    if (yEmpty && mEmpty && dEmpty) return 0;
    if (yEmpty || mEmpty || dEmpty) return NUSTR_ERR_NODATE;
    if (std::strlen(year) > 4 || std::strlen(month) > 2 || std::strlen(day) > 2) return NUSTR_ERR_LENGTH;
    if (!comIsNumeric(year) || !comIsNumeric(month) || !comIsNumeric(day)) return NUSTR_ERR_NODATE;
    char text[64];
    std::snprintf(text, sizeof text, "%04ld%02ld%02ld", std::strtol(year, nullptr, 10),
                  std::strtol(month, nullptr, 10), std::strtol(day, nullptr, 10));
    return SetStr(text);
}

int NUDateStr::GetYear(const char* dflt) const {
    if (!IsEmpty()) return comDateYear(GetStr());
    if (!IsNullOrEmpty(dflt)) return comDateYear(dflt);
    char today[16] = {};
    comTimeNowDate(today, true);
    return comDateYear(today);
}

int NUDateStr::GetMonth(const char* dflt) const {
    if (!IsEmpty()) return comDateMonth(GetStr());
    if (!IsNullOrEmpty(dflt)) return comDateMonth(dflt);
    char today[16] = {};
    comTimeNowDate(today, true);
    return comDateMonth(today);
}

int NUDateStr::GetDay(const char* dflt) const {
    if (!IsEmpty()) return comDateDay(GetStr());
    if (!IsNullOrEmpty(dflt)) return comDateDay(dflt);
    char today[16] = {};
    comTimeNowDate(today, true);
    return comDateDay(today);
}

int NUDateStr::GetYear() const { return IsEmpty() ? NUSTR_ERR_OUTPUT : comDateYear(GetStr()); }
int NUDateStr::GetMonth() const { return IsEmpty() ? NUSTR_ERR_OUTPUT : comDateMonth(GetStr()); }
int NUDateStr::GetDay() const { return IsEmpty() ? NUSTR_ERR_OUTPUT : comDateDay(GetStr()); }

int NUDateStr::GetShortYear() const { return IsEmpty() ? NUSTR_ERR_OUTPUT : comDateYear(GetStr()) % 100; }

int NUDateStr::NextDay() { return AddDays(1); }
int NUDateStr::PrevDay() { return AddDays(-1); }

int NUDateStr::AddDays(int days) {
    if (IsEmpty()) return NUSTR_ERR_FIXED;
    char date[16] = {};
    comDateAddDays(GetStr(), days, date);
    // Whatever follows the date (the time of a date-time) is carried over.
    const char* text = GetStr();
    const char* rest = std::strlen(text) > 8 ? text + 8 : "";
    char next[64];
    std::snprintf(next, sizeof next, "%s%.40s", date, rest);
    return SetStr(next);
}

// ---- NUDateTimeStr ----

int NUDateTimeStr::SetStr(const char* value) {
    const char* candidate = value;
    char rewritten[64] = {};
    if (value && std::strlen(value) < 8 && std::strchr(value, '/')) {
        // Gives twelve digits, which the length rule below rejects: the slash form
        // never leads to a stored date-time.
        long year = 0, month = 0, day = 0;
        if (ReadTriple(value, '/', &year, &month, &day)) {
            std::snprintf(rewritten, sizeof rewritten, "%04ld%02ld%02ld0000", year, month, day);
            candidate = rewritten;
        }
    }
    const int rc = NUFixedInt::SetStr(candidate);
    if (rc != 0) return rc;
    if (IsEmpty()) return 0;
    const char* text = GetStr();
    if (comDateCheck(text) != 0 || comTimeCheck(text + 8) != 0 || comTimeSecond(text + 8) > 59) {
        Clear();
        return NUSTR_ERR_FIXED;
    }
    return 0;
}

const char* NUDateTimeStr::GetTimePart() const {
    const char* text = GetStr();
    return std::strlen(text) > 8 ? text + 8 : "";
}

int NUDateTimeStr::GetHour() const { return IsEmpty() ? NUSTR_ERR_OUTPUT : comTimeHour(GetTimePart()); }

int NUDateTimeStr::GetMinute() const {
    return IsEmpty() ? NUSTR_ERR_OUTPUT : comTimeMinute(GetTimePart());
}
