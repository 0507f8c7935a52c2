// Middle texts of at most 127 characters, and the required form.
#pragma once

#include "MakeConvLib/cxiocom/CXioLCString.h"

class CS3MiddleStr : public CXioLCString {
public:
    CS3MiddleStr() : CXioLCString(127) {}
};

class CS3MiddleStrH : public CS3Required<CS3MiddleStr> {};
