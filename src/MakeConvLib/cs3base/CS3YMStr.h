// Year and month fields: YYYYMM with a valid month.
#pragma once

#include "MakeConvLib/cs3base/CS3FixedInt.h"

class CS3YMStr : public CS3FixedInt {
public:
    CS3YMStr() : CS3FixedInt(7) {}
    int SetStr(const char* value) override;
    // Stores as the base does, then checks the stored text as SetStr would.
    int SetStrLen(const char* value, int len) override;
    // The following month; -10007 when empty.
    int NextMonth();

private:
    int CheckMonth();
};
