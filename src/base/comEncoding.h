// Conversions between EUC-JP, Shift_JIS, ISO-2022-JP (JIS) and UTF-8 over the program's
// own JIS / UCS-2 tables (base/jisUcsTable.h); JIS is the hub of every route.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

// Each converter reads the terminated text in and writes a terminated result into out,
// which the caller sizes to 4 * strlen(in) + 4 bytes. A null in counts as empty; a null
// out writes nothing. They never fail: what can't be mapped becomes "?" in a
// single-byte position and U+FF1F (full-width question mark) in a double-byte one.
// The return value is the length of the result, without the terminator.
//
// JIS output switches with ESC "$" "B", ESC "(" "I" and ESC "(" "B", only when the
// mode changes, and always ends in ASCII mode. JIS input also takes ESC "$" "@",
// ESC "&" "@", ESC "$" "(" "D" (double byte) and ESC "(" "J", ESC "(" "H" (single byte).

// EUC-JP to JIS; stray bytes are copied as single bytes.
std::size_t comEucToJis(const char* in, char* out);
// JIS to EUC-JP; a double-byte pair outside 0xA1-0xFE after the shift becomes "??".
std::size_t comJisToEuc(const char* in, char* out);
// JIS to Shift_JIS; rows 0x79-0x7C (NEC-selected IBM extensions) go to their IBM codes.
std::size_t comJisToSjis(const char* in, char* out);
// Shift_JIS to JIS; the IBM extensions become the rows 0x93-0x97.
std::size_t comSjisToJis(const char* in, char* out);
// UTF-8 to JIS: table search in table order, first match.
std::size_t comUtf8ToJis(const char* in, char* out);
// JIS to UTF-8: the row of the first byte, then the alternative part of the table.
std::size_t comJisToUtf8(const char* in, char* out);

// EUC-JP to UTF-8 through JIS. The result comes from malloc and the caller frees it;
// null only when memory runs out. A null text counts as empty.
char* EucToUtf8(const char* text);

// EUC-JP to UTF-8 for a text that arrives in parts. Feed appends what the parts so
// far decide; Peek appends what the bytes held back (a cut character, a cut
// escape sequence) give if the text ends there. Every part's output joined with
// Peek equals EucToUtf8 of the whole text, at a cost linear in the text.
// Allocation failures throw std::bad_alloc.
class EucToUtf8Stream {
public:
    EucToUtf8Stream();
    ~EucToUtf8Stream();
    EucToUtf8Stream(const EucToUtf8Stream&) = delete;
    EucToUtf8Stream& operator=(const EucToUtf8Stream&) = delete;

    // Starts a new text.
    void Reset();
    void Feed(const char* part, std::size_t length, std::string& out);
    void Peek(std::string& out) const;

private:
    struct State;
    std::unique_ptr<State> state_;
};
