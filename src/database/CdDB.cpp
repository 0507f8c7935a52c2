// Escaping of SQL literals and the base-36 ids of the target database. The numbers
// may exceed a machine word, so the conversions work on digit strings.
#include "database/CdDB.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "base/comClock.h"

namespace {

constexpr int kBadArgument = -1099;
constexpr char kBase36Digits[] = "0123456789abcdefghijklmnopqrstuvwxyz";
constexpr std::size_t kIdLength = 12;
constexpr std::size_t kPaddedDecimalLength = 18;

// Decimal digits (most significant first, no leading zeros needed) to base 36.
std::string ToBase36(std::vector<int> digits) {
    std::string reversed;
    std::size_t head = 0;
    while (head < digits.size() && digits[head] == 0) ++head;
    while (head < digits.size()) {
        int remainder = 0;
        for (std::size_t i = head; i < digits.size(); ++i) {
            const int current = remainder * 10 + digits[i];
            digits[i] = current / 36;
            remainder = current % 36;
        }
        reversed.push_back(kBase36Digits[remainder]);
        while (head < digits.size() && digits[head] == 0) ++head;
    }
    if (reversed.empty()) return "0";
    return std::string(reversed.rbegin(), reversed.rend());
}

int Base36Value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    return -1;
}

// Base 36 to decimal digits without leading zeros; empty on a bad character.
std::string ToDecimal(const char* text, int* rc) {
    std::vector<int> reversed{0};  // least significant decimal digit first
    for (const char* p = text; *p; ++p) {
        const int value = Base36Value(*p);
        if (value < 0) {
            *rc = kBadArgument;
            return {};
        }
        int carry = value;
        for (int& digit : reversed) {
            const int current = digit * 36 + carry;
            digit = current % 10;
            carry = current / 10;
        }
        while (carry > 0) {
            reversed.push_back(carry % 10);
            carry /= 10;
        }
    }
    while (reversed.size() > 1 && reversed.back() == 0) reversed.pop_back();
    std::string out;
    for (auto it = reversed.rbegin(); it != reversed.rend(); ++it)
        out.push_back(static_cast<char>('0' + *it));
    *rc = 0;
    return out;
}

}  // namespace

CdDB::~CdDB() = default;

int EscapeLiteral(const char* source, char* destination, const char* backslashSet,
                  char doubledChar) {
    if (!destination) return 0;
    int met = 0;
    char* out = destination;
    for (const char* p = source ? source : ""; *p; ++p) {
        const char c = *p;
        if (c == '\'') {
            *out++ = '\'';
        } else if (backslashSet && std::strchr(backslashSet, c)) {
            met = 1;
            *out++ = '\\';
            *out++ = '\\';
            if (c == '\\') *out++ = '\\';
        } else if (doubledChar != '\0' && c == doubledChar) {
            *out++ = c;
        }
        *out++ = c;
    }
    *out = '\0';
    return met;
}

int DecimalToBase36(const char* decimal, char* out) {
    if (!out) return kBadArgument;
    out[0] = '\0';
    if (!decimal) return kBadArgument;
    const std::size_t length = std::strlen(decimal);
    if (length == 0 || length > kCdDBMaxDecimalDigits) return kBadArgument;
    std::vector<int> digits;
    int rc = 0;
    for (std::size_t i = 0; i < length; ++i) {
        if (decimal[i] < '0' || decimal[i] > '9') {
            rc = kBadArgument;
            break;
        }
        digits.push_back(decimal[i] - '0');
    }
    if (digits.empty()) return rc;
    const std::string text = ToBase36(std::move(digits));
    std::snprintf(out, kCdDBBase36Size, "%s", text.c_str());
    return rc;
}

int MakeBase36Id(const char* decimal, char* out) {
    if (!out) return kBadArgument;
    char base36[kCdDBBase36Size];
    const int rc = DecimalToBase36(decimal, base36);
    const std::size_t length = std::strlen(base36);
    if (length > kIdLength) {
        out[0] = '\0';
        return kBadArgument;
    }
    std::memset(out, '0', kIdLength - length);
    std::memcpy(out + (kIdLength - length), base36, length + 1);
    return rc;
}

int MakeStampId(char* out, char* stampOut) {
    timespec now{};
    comClockNow(&now);
    std::tm utc{};
    gmtime_r(&now.tv_sec, &utc);
    char stamp[64];
    std::snprintf(stamp, sizeof stamp, "%04d%02d%02d%02d%02d%02d%06d", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec,
                  static_cast<int>(now.tv_nsec / 1000));
    const char* digits = stamp + 2;  // the century is dropped: 18 digits remain
    if (stampOut) {
        const std::size_t length = std::min(std::strlen(digits), static_cast<std::size_t>(kCdDBStampSize - 1));
        std::memcpy(stampOut, digits, length);
        stampOut[length] = '\0';
    }
    return MakeBase36Id(digits, out);
}

int Base36ToDecimal(const char* text, char* out) {
    if (!out) return kBadArgument;
    out[0] = '\0';
    if (!text || !*text) return kBadArgument;
    int rc = 0;
    const std::string decimal = ToDecimal(text, &rc);
    if (rc != 0) return rc;
    std::memcpy(out, decimal.c_str(), decimal.size() + 1);
    return 0;
}

int Base36ToDecimalPadded(const char* text, char* out) {
    const int rc = Base36ToDecimal(text, out);
    if (rc != 0) return rc;
    const std::size_t length = std::strlen(out);
    if (length < kPaddedDecimalLength) {
        const std::size_t pad = kPaddedDecimalLength - length;
        std::memmove(out + pad, out, length + 1);
        std::memset(out, '0', pad);
    }
    return 0;
}
