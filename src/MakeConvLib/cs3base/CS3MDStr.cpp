// Month and day fields: the check against a leap year and the setter by parts.
#include "MakeConvLib/cs3base/CS3MDStr.h"

#include <cstdio>
#include <cstring>

#include "base/comTime.h"

int CS3MDStr::SetStr(const char* value) {
    const int ret = CS3FixedInt::SetStr(value);
    return ret != 0 ? ret : CheckMonthDay();
}

int CS3MDStr::SetStrLen(const char* value, int len) {
    int ret = CS3String::SetStrLen(value, len);
    if (ret == 0) ret = CheckStored();
    return ret != 0 ? ret : CheckMonthDay();
}

int CS3MDStr::CheckMonthDay() {
    if (IsEmpty()) return 0;
    char date[16];
    std::snprintf(date, sizeof date, "2000%.4s", GetStr());
    if (comDateCheck(date) != 0) {
        Clear();
        return CS3_ERR_INVALID;
    }
    return 0;
}

int CS3MDStr::SetMD(const char* month, const char* day) {
    const bool noMonth = !month || *month == '\0', noDay = !day || *day == '\0';
    if (noMonth && noDay) return 0;
    if (noMonth || noDay) return CS3_ERR_INVALID;
    if (std::strlen(month) > 2 || std::strlen(day) > 2) return CS3_ERR_LENGTH;
    CS3Int m, d;
    int ret = m.SetStr(month);
    if (ret == 0) ret = d.SetStr(day);
    if (ret != 0) return ret;
    char text[32];
    std::snprintf(text, sizeof text, "%02d%02d", m.GetInt(), d.GetInt());
    return SetStr(text);
}
