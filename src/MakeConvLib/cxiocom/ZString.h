// Texts whose character limit is in the class name, and their required forms.
#pragma once

#include "MakeConvLib/cxiocom/CXioLCString.h"

class ZString : public CXioLCString {
public:
    // The byte capacity without the terminator.
    virtual int GetMaxBytes() const { return GetValueSize() - 1; }

protected:
    explicit ZString(int limit) : CXioLCString(limit) {}
};

// One class per limit; the limit is all that differs.
template <int Limit>
class ZStringOf : public ZString {
public:
    ZStringOf() : ZString(Limit) {}
};

using ZString31 = ZStringOf<31>;
using ZString40 = ZStringOf<40>;
using ZString256 = ZStringOf<256>;
using ZString511 = ZStringOf<511>;
using ZString1023 = ZStringOf<1023>;
using ZString2000 = ZStringOf<2000>;
using ZString2047 = ZStringOf<2047>;
using ZString4000 = ZStringOf<4000>;

class ZString40H : public CS3Required<ZString40> {};
class ZString256H : public CS3Required<ZString256> {};
class ZString1023H : public CS3Required<ZString1023> {};
class ZString2000H : public CS3Required<ZString2000> {};
class ZString4000H : public CS3Required<ZString4000> {};
