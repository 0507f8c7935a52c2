// Year and month fields: the month check through the first of the month, and
// the step to the next month.
#include "MakeConvLib/cs3base/CS3YMStr.h"

#include <cstdio>

#include "base/comTime.h"

int CS3YMStr::SetStr(const char* value) {
    const int ret = CS3FixedInt::SetStr(value);
    return ret != 0 ? ret : CheckMonth();
}

int CS3YMStr::SetStrLen(const char* value, int len) {
    int ret = CS3String::SetStrLen(value, len);
    if (ret == 0) ret = CheckStored();
    return ret != 0 ? ret : CheckMonth();
}

int CS3YMStr::CheckMonth() {
    if (IsEmpty()) return 0;
    char date[16];
    std::snprintf(date, sizeof date, "%.6s01", GetStr());
    if (comDateCheck(date) != 0) {
        Clear();
        return CS3_ERR_INVALID;
    }
    return 0;
}

int CS3YMStr::NextMonth() {
    if (IsEmpty()) return CS3_ERR_INVALID;
    char date[16], next[16] = {};
    std::snprintf(date, sizeof date, "%.6s01", GetStr());
    comDateAddMonths(date, 1, next);
    next[6] = '\0';
    return SetStr(next);
}
