// Long texts of at most 255 characters, and the required form.
#pragma once

#include "MakeConvLib/cxiocom/CXioLCString.h"

class CS3LongStr : public CXioLCString {
public:
    CS3LongStr() : CXioLCString(255) {}
};

class CS3LongStrH : public CS3Required<CS3LongStr> {};
