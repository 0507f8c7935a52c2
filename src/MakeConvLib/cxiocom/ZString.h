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

class ZString31 : public ZString {
public:
    ZString31() : ZString(31) {}
};

class ZString40 : public ZString {
public:
    ZString40() : ZString(40) {}
};

class ZString256 : public ZString {
public:
    ZString256() : ZString(256) {}
};

class ZString511 : public ZString {
public:
    ZString511() : ZString(511) {}
};

class ZString1023 : public ZString {
public:
    ZString1023() : ZString(1023) {}
};

class ZString2000 : public ZString {
public:
    ZString2000() : ZString(2000) {}
};

class ZString2047 : public ZString {
public:
    ZString2047() : ZString(2047) {}
};

class ZString4000 : public ZString {
public:
    ZString4000() : ZString(4000) {}
};

class ZString40H : public CS3Required<ZString40> {};
class ZString256H : public CS3Required<ZString256> {};
class ZString1023H : public CS3Required<ZString1023> {};
class ZString2000H : public CS3Required<ZString2000> {};
class ZString4000H : public CS3Required<ZString4000> {};
