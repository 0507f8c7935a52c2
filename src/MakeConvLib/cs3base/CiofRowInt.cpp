// The rows-per-page setting and its default.
#include "MakeConvLib/cs3base/CiofRowInt.h"

int CiofRowInt::SetStr(const char* value) {
    const int ret = CS3Int::SetStr(value);
    if (ret != 0) return ret;
    const int rows = GetInt();
    if (rows < 10 || rows > 100) {
        Clear();
        return CS3_ERR_INVALID;
    }
    if (IsEmpty()) Clear();
    return 0;
}

void CiofRowInt::Clear() {
    CS3String::Clear();
    CS3String::SetStr("10");
}
