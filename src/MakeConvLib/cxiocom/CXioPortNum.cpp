// The port field: the limited-text store followed by the digit checks.
#include "MakeConvLib/cxiocom/CXioPortNum.h"

#include <cstring>

#include "base/comStr.h"

int CXioPortNum::SetStr(const char* value) {
    if (!value || *value == '\0') {
        Clear();
        return 0;
    }
    const int ret = CXioLCString::SetStr(value);
    if (ret != 0) return ret;
    if (!comIsNumeric(GetStr()) || GetStr()[0] == '-') return CXIO_ERR_PORT;
    if (std::strlen(GetStr()) >= 7) return CS3_ERR_LENGTH;
    return 0;
}
