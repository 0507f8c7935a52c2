// Small text helpers of the base library: trimming, case-insensitive compare,
// numeric tests and cutting UTF-8 text without splitting a character.
#include "base/comStr.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

const char* OrEmpty(const char* text) { return text ? text : ""; }

}  // namespace

char* comStrRTrim(char* text) {
    if (!text) return text;
    std::size_t len = std::strlen(text);
    while (len > 0 && IsBlank(text[len - 1])) --len;
    text[len] = '\0';
    return text;
}

int comStrCaseCmp(const char* a, const char* b) { return strcasecmp(OrEmpty(a), OrEmpty(b)); }

int comStrNCaseCmp(const char* a, const char* b, std::size_t n) {
    return strncasecmp(OrEmpty(a), OrEmpty(b), n);
}

bool comIsNumeric(const char* text) {
    if (!text || *text == '\0') return false;
    const char* p = text;
    if (*p == '-') {
        ++p;
        if (*p == '\0') return false;
    }
    // At least one digit must follow the sign; blanks right behind it don't count.
    if (*p < '0' || *p > '9') return false;
    while (*p >= '0' && *p <= '9') ++p;
    while (IsBlank(*p)) ++p;
    return *p == '\0';
}

bool comStrToInt32(const char* text, int32_t& out) {
    errno = 0;
    const long long value = std::strtoll(text ? text : "", nullptr, 10);
    if (errno == ERANGE || value < INT32_MIN || value > INT32_MAX) return false;
    out = static_cast<int32_t>(value);
    return true;
}

int comUtf8CharLen(unsigned char leadByte) {
    if (leadByte < 0x80) return 1;
    if (leadByte >= 0xC2 && leadByte <= 0xDF) return 2;
    if (leadByte >= 0xE0 && leadByte <= 0xEF) return 3;
    if (leadByte >= 0xF0 && leadByte <= 0xF4) return 4;
    if (leadByte >= 0xF8 && leadByte <= 0xFB) return 5;
    if (leadByte == 0xFC || leadByte == 0xFD) return 6;
    return -1;
}

void comUtf8CutBytes(char* text, int position, bool clamp) {
    if (!text) return;
    if (position <= 0) {
        text[0] = '\0';
        return;
    }
    const std::size_t len = std::strlen(text);
    std::size_t pos = static_cast<std::size_t>(position);
    if (pos >= len) {
        if (!clamp) return;  // nothing to cut
        pos = len;
        if (pos == 0) return;
    }
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    if (bytes[pos - 1] < 0x80) {
        text[pos] = '\0';
        return;
    }
    // Walk back over continuation bytes to the lead byte of the last sequence.
    std::size_t lead = pos - 1;
    int found = 1;
    while (bytes[lead] >= 0x80 && bytes[lead] < 0xC0) {
        if (lead == 0) {
            text[0] = '\0';  // no lead byte at all
            return;
        }
        --lead;
        ++found;
    }
    if (comUtf8CharLen(bytes[lead]) == found)
        text[pos] = '\0';
    else
        text[lead] = '\0';
}

bool comUtf8CutChars(char* text, int count, bool countWideAsOne) {
    if (!text) return false;
    if (count <= 0) {
        text[0] = '\0';
        return false;
    }
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    std::size_t pos = 0;
    long counted = 0;
    while (bytes[pos] != '\0') {
        int len = comUtf8CharLen(bytes[pos]);
        if (len < 1) len = 1;  // a stray byte counts as one character
        bool whole = true;
        for (int i = 1; i < len; ++i) {
            if (bytes[pos + i] == '\0') {
                whole = false;
                break;
            }
        }
        if (!whole) break;
        const int weight = (len >= 4 && !countWideAsOne) ? 2 : 1;
        if (counted + weight > count) break;
        counted += weight;
        pos += static_cast<std::size_t>(len);
    }
    if (bytes[pos] == '\0') return false;
    text[pos] = '\0';
    return true;
}
