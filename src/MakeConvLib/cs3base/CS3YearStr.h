// Year fields: four digits, not negative, and the required form.
#pragma once

#include "MakeConvLib/cs3base/CS3FixedInt.h"

class CS3YearStr : public CS3FixedInt {
public:
    CS3YearStr() : CS3FixedInt(5) {}
    int SetStr(const char* value) override;
    // Stores as the base does, then checks the stored text as SetStr would.
    int SetStrLen(const char* value, int len) override;

private:
    int CheckYear();
};

class CS3YearStrH : public CS3Required<CS3YearStr> {
public:
    // An empty value gives -10006 and changes nothing.
    int SetStrLen(const char* value, int len) override;
};
