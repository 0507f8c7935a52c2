// Fixed-length digit strings: the length and digit checks after a store, and
// the reading of "Y/M/D" style texts for the date and time fields.
#include "MakeConvLib/cs3base/CS3FixedInt.h"

#include <cctype>
#include <cstring>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "base/comSource.h"
#include "base/comStr.h"

int CS3FixedInt::SetStr(const char* value) {
    const int ret = CS3String::SetStr(value);
    if (ret != 0) return ret;
    return CheckStored();
}

int CS3FixedInt::CheckStored() {
    if (IsEmpty()) return 0;
    const int ret = CheckFixedLen();
    if (ret != 0) {
        comTrace("[%s:%d] ret[%d]", CONV_HERE, ret);
        Clear();
        return ret;
    }
    if (!comIsNumeric(GetStr())) {
        Clear();
        return CS3_ERR_INVALID;
    }
    return 0;
}

int CS3FixedInt::CheckFixedLen() {
    const auto len = std::strlen(GetStr());
    if (len + 1 != static_cast<std::size_t>(GetValueSize())) {
        comTrace("[%s:%d] size[%d]val[%d]", CONV_HERE, GetValueSize(), static_cast<int>(len));
        return CS3_ERR_INVALID;
    }
    return 0;
}

int CS3FixedInt::ScanFields(const char* text, char sep, int count, int* out) {
    constexpr long kBound = 999999999;
    if (!text) return 0;
    const char* p = text;
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            if (*p != sep) return i;
            ++p;
        }
        while (std::isspace(static_cast<unsigned char>(*p))) ++p;
        bool negative = false;
        if (*p == '+' || *p == '-') negative = *p++ == '-';
        if (*p < '0' || *p > '9') return i;
        long n = 0;
        for (; *p >= '0' && *p <= '9'; ++p)
            if (n <= kBound) n = n * 10 + (*p - '0');
        if (n > kBound) n = kBound;
        out[i] = static_cast<int>(negative ? -n : n);
    }
    return count;
}
