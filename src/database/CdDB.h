// Text helpers beside the database connection: escaping of SQL literals and the
// base-36 ids of the target database, made from decimal ids or from the clock.
#pragma once

#include <cstddef>

// The module's class; everything it offers is a free function below.
class CdDB {
public:
    ~CdDB();
};

// Longest decimal text that DecimalToBase36 takes.
constexpr std::size_t kCdDBMaxDecimalDigits = 127;
// Buffer for the output of DecimalToBase36 (127 decimal digits need 82 base-36 ones).
constexpr std::size_t kCdDBBase36Size = 128;
// A target id: 12 base-36 characters and the terminator.
constexpr std::size_t kCdDBIdSize = 13;
// The 18 digits of MakeStampId and the terminator.
constexpr std::size_t kCdDBStampSize = 19;

// Copies source to destination doubling each "'". A character of backslashSet
// (none: no such characters) is written behind two backslashes, a backslash itself
// with one more; a character equal to doubledChar ('\0': none) is doubled.
// Returns 1 when a character of backslashSet was met, else 0 (also with no
// destination). destination must hold 2 * strlen(source) + 1 bytes when only quotes
// are doubled, 4 * strlen(source) + 1 when backslashSet is given.
int EscapeLiteral(const char* source, char* destination, const char* backslashSet,
                  char doubledChar);

// Decimal digits (at most 127) to lower-case base 36 in out (kCdDBBase36Size bytes).
// -1099 for no, empty or too long input, or a non-digit; the digits ahead of the
// first non-digit are still converted.
int DecimalToBase36(const char* decimal, char* out);

// DecimalToBase36 right-aligned in 12 characters, padded with '0' (out: 13 bytes).
// -1099 also when the number needs more than 12 base-36 digits.
int MakeBase36Id(const char* decimal, char* out);

// A new id from the UTC clock: "YYYYMMDDhhmmss" and microseconds, less the first two
// digits of the year, through MakeBase36Id. stampOut (19 bytes), when given,
// receives the 18 digits.
int MakeStampId(char* out, char* stampOut);

// Lower-case base 36 to decimal digits without leading zeros ("0" for zero).
// out must hold 2 * strlen(text) + 2 bytes. -1099 for no or empty text or a
// character outside "0-9a-z"; out is then empty.
int Base36ToDecimal(const char* text, char* out);
// As Base36ToDecimal, padded on the left with '0' to 18 digits; out must hold
// the larger of 19 and 2 * strlen(text) + 2 bytes.
int Base36ToDecimalPadded(const char* text, char* out);
