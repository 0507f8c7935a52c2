// The process-wide debug log writer and the numbered logs.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>
#include <string_view>

// Sets the file that comDebugLog appends to (null or empty turns it off). When
// outOldPath isn't null it first receives the path set until now (1024 bytes).
void comLogSetPath(const char* newPath, char* outOldPath);
// The path now set (empty when none).
const char* comLogGetPath();
// Appends "YYYY/MM/DD hh:mm:ss.mmm " and the formatted text (at most 8191 bytes).
// A line longer than that is cut between characters and still ends in a line feed.
void comDebugLog(const char* format, ...) __attribute__((format(printf, 1, 2)));
void comDebugLogV(const char* format, va_list args);

// Each byte as two lower-case hex digits, except that LF stays LF and CR is
// dropped; stops before the encoding would pass maxChars characters. The form
// of the trace log, which scripts/decode-trace reads.
std::string comTraceEncode(std::string_view text, std::size_t maxChars);

// The engineers' notes of the base library and the database layer (a failed
// copy, a time that doesn't convert, a server's error block): written by
// comDebugLog to the log now set, as plain text, or encoded as the trace log's
// reports are while notes are encoded (one line of at most 8,191 characters
// and its line feed). An application that makes its trace log the current log
// turns encoding on, so that one decoder reads every line of that file.
void comLogSetNotesEncoded(bool on);
void comDebugNote(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Numbered logs: a table of (number, path) pairs set up by the settings.
void comNumberedLogSet(int number, const char* path);
void comNumberedLog(int number, const char* format, ...) __attribute__((format(printf, 2, 3)));
void comNumberedLogReset();
