// Digit strings of a fixed length, the common ground of the date, time, year
// and month fields.
#pragma once

#include "MakeConvLib/cs3base/CS3Int.h"

class CS3FixedInt : public CS3Int {
public:
    CS3FixedInt() : CS3Int(11) {}
    // Stores without the CS3Int digit test; a non-empty value must then have
    // the fixed length and be numeric, else the field is cleared (-10007).
    int SetStr(const char* value) override;
    // The stored text has exactly valueSize - 1 bytes: 0, else -10007.
    virtual int CheckFixedLen();

protected:
    explicit CS3FixedInt(int valueSizeIn) : CS3Int(valueSizeIn) {}
    // The checks that follow a store: fixed length and digits; clears on failure.
    int CheckStored();
    // Reads up to count integers separated by sep as sscanf("%d<sep>%d...")
    // would (blanks and a sign before each; values kept within nine digits).
    // Gives the number of fields read.
    static int ScanFields(const char* text, char sep, int count, int* out);
};
