// A network port as text: digits only, not negative, at most six characters.
#pragma once

#include "MakeConvLib/cxiocom/CS3ShortStr.h"

class CXioPortNum : public CS3ShortStr {
public:
    // Empty clears (0). A value that isn't a non-negative number (-508) or has
    // seven bytes or more (-62) is refused but stays stored.
    int SetStr(const char* value) override;
};
