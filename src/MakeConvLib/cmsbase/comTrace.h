// The trace of the base library: text gathered in the settings object, hex
// encoded, until the application writes it to its trace log.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/comLog.h"

// Most bytes of one formatted trace text, and most characters of its encoding.
inline constexpr std::size_t COM_TRACE_TEXT_MAX = 7999;
inline constexpr std::size_t COM_TRACE_CODE_MAX = 15999;

// comTraceEncode, the trace log's encoding, is declared with the log writer.

// Formats into at most 7,999 bytes, encodes, and appends the result and a LF to
// the settings' trace buffer. 0, or -99 without a settings object.
int comTrace(const char* format, ...) __attribute__((format(printf, 1, 2)));
