// The process-wide debug log writer and the numbered logs.
#pragma once

#include <cstddef>

// Sets the file that comDebugLog appends to (null or empty turns it off). When
// outOldPath isn't null it first receives the path set until now (1024 bytes).
void comLogSetPath(const char* newPath, char* outOldPath);
// The path now set (empty when none).
const char* comLogGetPath();
// Appends "YYYY/MM/DD hh:mm:ss.mmm " and the formatted text (at most 8191 bytes).
void comDebugLog(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Numbered logs: a table of (number, path) pairs set up by the settings.
void comNumberedLogSet(int number, const char* path);
void comNumberedLog(int number, const char* format, ...) __attribute__((format(printf, 2, 3)));
void comNumberedLogReset();
