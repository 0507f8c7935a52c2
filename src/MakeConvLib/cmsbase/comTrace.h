// The trace of the base library: text gathered in the settings object, hex
// encoded, until the application writes it to its trace log.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Most bytes of one formatted trace text, and most characters of its encoding.
inline constexpr std::size_t COM_TRACE_TEXT_MAX = 7999;
inline constexpr std::size_t COM_TRACE_CODE_MAX = 15999;

// Each byte as two lower-case hex digits, except that LF stays LF and CR is
// dropped; stops before the encoding would pass maxChars characters.
std::string comTraceEncode(std::string_view text, std::size_t maxChars);

// Formats into at most 7,999 bytes, encodes, and appends the result and a LF to
// the settings' trace buffer. 0, or -99 without a settings object.
int comTrace(const char* format, ...) __attribute__((format(printf, 1, 2)));
