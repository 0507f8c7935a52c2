// Integer fields: the decimal test and the digit limits of CS3Int and CS3Double.
#include "MakeConvLib/cs3base/CS3Int.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "base/comSource.h"
#include "base/comStr.h"

bool comIsDecimal(const char* text) {
    if (!text || *text == '\0') return false;
    const char* dot = std::strrchr(text, '.');
    if (!dot) return comIsNumeric(text);
    if (dot[1] == '-') return false;
    if (!comIsNumeric(dot + 1)) return false;
    const auto before = static_cast<std::size_t>(dot - text);
    if (before == 0) return true;  // ".5"
    if (before > 511) return false;
    char head[512];
    std::memcpy(head, text, before);
    head[before] = '\0';
    return comIsNumeric(head);
}

int CS3Int::SetStr(const char* value) {
    if (value && *value != '\0') {
        int ret = 0;
        const std::size_t len = std::strlen(value);
        const auto size = static_cast<std::size_t>(GetValueSize());
        if (!comIsDecimal(value))
            ret = CS3_ERR_NOTNUMBER;
        else if (std::strchr(value, '.'))
            ret = CS3_ERR_FRACTION;
        else if (value[0] == '-' ? len >= size : len + 1 >= size)
            ret = CS3_ERR_DIGITS;
        if (ret != 0) {
            comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
            Clear();
            return ret;
        }
    }
    return CS3String::SetStr(value);
}

int CS3Int::SetInt(int number) {
    char text[16];
    std::snprintf(text, sizeof text, "%d", number);
    return SetStr(text);
}

int CS3Int::GetInt() const {
    const long n = std::strtol(GetStr(), nullptr, 10);
    if (n > INT_MAX) return INT_MAX;
    if (n < INT_MIN) return INT_MIN;
    return static_cast<int>(n);
}

double CS3Double::GetDouble() const { return std::strtod(GetStr(), nullptr); }

int CS3Double::SetDouble(double number) {
    char text[512];  // "%0.0f" of the largest double has 309 digits
    std::snprintf(text, sizeof text, "%0.0f", number);
    return SetStr(text);
}
