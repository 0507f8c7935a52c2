// Text limited in characters rather than bytes: a four-byte UTF-8 character
// counts two, the buffer allows four bytes per character, and over-long or
// broken text is refused (only SetCut cuts).
#pragma once

#include "MakeConvLib/cs3base/CS3String.h"

inline constexpr int CXIO_ERR_PORT = -508;            // port not numeric or negative
inline constexpr int CXIO_ERR_SHORT = -70010;         // below the lower limit
inline constexpr int CXIO_ERR_BROKEN_UTF8 = -1000030; // a multi-byte sequence ends early

// Characters of text: a lead byte 0xC0-0xDF takes one continuation byte,
// 0xE0-0xEF two, 0xF0-0xF7 three (and counts two); any other byte is one
// character. More than limit gives -62 and records the "comzlength" message;
// a continuation byte below 0x80 gives -1000030. Null counts 0.
int CountChars(const char* text, int limit);

class CXioLCString : public CS3String {
public:
    // No limit until SetLimit.
    CXioLCString() = default;
    explicit CXioLCString(int limit) { SetLimit(limit); }

    // Counted against maxChars (when set) before it is stored.
    int SetStr(const char* value) override;
    // Empties the value; the limit and the buffer stay.
    void Clear() override;
    // Takes limit (when not 0) as the character limit while no buffer exists;
    // afterwards the limit is fixed. Clears the value in every case.
    virtual void SetLimit(int limit);

    // Stores value cut to fit limit (see SetLimit for when limit applies):
    // by characters or by bytes, with suffix ending a cut value within it.
    int SetCut(const char* value, int limit, const char* suffix, bool byBytes);
    // When the last open byte has no close byte behind it, cuts the text there
    // and gives true.
    bool DropOpenTail(char open, char close);

    int GetMaxChars() const { return maxChars; }

protected:
    int maxChars = 0;  // 0: no limit
};

// Text with a lower limit of characters as well.
class CXioLCStrLower : public CXioLCString {
public:
    CXioLCStrLower() = default;
    // Below lower gives -70010 and stores nothing.
    int SetStr(const char* value) override;
    void SetLimits(int lower, int limit);

    int GetMinChars() const { return minChars; }

protected:
    int minChars = 0;
};
