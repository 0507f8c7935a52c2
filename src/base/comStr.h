// Small text helpers of the base library: trimming, case-insensitive compare,
// numeric tests and UTF-8 aware cutting.
#pragma once

#include <cstdint>

#include <cstddef>

// Removes trailing white space (blank, TAB, LF, CR) in place; returns text.
char* comStrRTrim(char* text);
// strcasecmp / strncasecmp with null counted as the empty string.
int comStrCaseCmp(const char* a, const char* b);
int comStrNCaseCmp(const char* a, const char* b, std::size_t n);

// Optional leading "-", digits, then only white space to the end.
bool comIsNumeric(const char* text);
// The number strtol reads at the start of text (0 for none or a null text) into
// out; false, with out untouched, when that number doesn't fit in 32 bits.
bool comStrToInt32(const char* text, int32_t& out);

// Length of a UTF-8 sequence from its lead byte, -1 for a byte that can't lead.
int comUtf8CharLen(unsigned char leadByte);
// Cuts text at byte position without splitting a UTF-8 sequence.
void comUtf8CutBytes(char* text, int position, bool clamp);
// Cuts text to count characters (four-byte sequences count 2 unless countWideAsOne);
// returns true when it cut.
bool comUtf8CutChars(char* text, int count, bool countWideAsOne);
