// The rows-per-page setting: a number from 10 to 100, "10" by default.
#pragma once

#include "MakeConvLib/cs3base/CS3Int.h"

class CiofRowInt : public CS3Int {
public:
    CiofRowInt() { Clear(); }
    // Anything outside 10 to 100 (the empty text reads as 0) resets to "10"
    // and gives -10007.
    int SetStr(const char* value) override;
    // Sets "10".
    void Clear() override;
};
