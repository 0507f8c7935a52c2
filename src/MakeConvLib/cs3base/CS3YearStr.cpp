// Year fields: the fixed digit check and the refusal of negative years.
#include "MakeConvLib/cs3base/CS3YearStr.h"

int CS3YearStr::SetStr(const char* value) {
    const int ret = CS3FixedInt::SetStr(value);
    return ret != 0 ? ret : CheckYear();
}

int CS3YearStr::SetStrLen(const char* value, int len) {
    int ret = CS3String::SetStrLen(value, len);
    if (ret == 0) ret = CheckStored();
    return ret != 0 ? ret : CheckYear();
}

int CS3YearStr::CheckYear() {
    if (!IsEmpty() && GetInt() < 0) {
        Clear();
        return CS3_ERR_INVALID;
    }
    return 0;
}

int CS3YearStrH::SetStrLen(const char* value, int len) {
    if (!value || *value == '\0' || len <= 0) return CS3_ERR_REQUIRED;
    return CS3YearStr::SetStrLen(value, len);
}
