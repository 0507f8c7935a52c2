// Short texts of at most 63 characters, and the required form.
#pragma once

#include "MakeConvLib/cxiocom/CXioLCString.h"

class CS3ShortStr : public CXioLCString {
public:
    CS3ShortStr() : CXioLCString(63) {}
};

class CS3ShortStrH : public CS3Required<CS3ShortStr> {};
