// Month and day fields: MMDD valid in a leap year (so 0229 passes), and the
// required form.
#pragma once

#include "MakeConvLib/cs3base/CS3FixedInt.h"

class CS3MDStr : public CS3FixedInt {
public:
    CS3MDStr() : CS3FixedInt(5) {}
    int SetStr(const char* value) override;
    // Stores as the base does, then checks the stored text as SetStr would.
    int SetStrLen(const char* value, int len) override;
    // Two digit texts; both empty changes nothing, one empty gives -10007.
    int SetMD(const char* month, const char* day);

private:
    int CheckMonthDay();
};

class CS3MDStrH : public CS3Required<CS3MDStr> {};
