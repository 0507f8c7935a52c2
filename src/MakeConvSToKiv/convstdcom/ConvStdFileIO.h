// The line reader of the flat store: a record file reader that hands values on
// untrimmed, so that blanks, TABs and CRs inside a value survive.
#pragma once

#include "base/NUFileIO.h"

class ConvStdFileIO : public NUFileIO {
public:
    // Leaves the value as it stands.
    char* TrimValue(char* text) override;
};
