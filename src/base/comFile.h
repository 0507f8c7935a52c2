// File and directory helpers: existence tests, copy, create, delete, rename and
// path cutting. Failures are noted in the debug log (comDebugNote); errno is
// left as the failing call set it.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <functional>

bool comFileExists(const char* path);
// False for a null path or a failed stat.
bool comIsDir(const char* path);

// Copies in blocks; exclusive fails when `to` exists. 1 on success, 0 on failure
// (a failed write removes `to`).
int comFileCopy(const char* from, const char* to, bool exclusive);

// mkdir with mode 0755: 0, or -1 with errno.
int comDirCreate(const char* path);
// Creates the directory that filePath lies in, with its missing parents: 0 or
// -1. An existing directory is a failure (EEXIST); callers test for it first.
int comDirCreateAll(const char* filePath);

// Decides whether an entry of the top directory may go: the entry's name,
// isFile 1 for a file and 0 for a directory, and its stat data.
using comDirFilter = std::function<bool(const char* name, int isFile, const struct stat& info)>;
// Removes a tree: 0, -9 for a null or empty path, -1 on failure. A missing path
// is 0; a plain file is unlinked. With filter, entries it refuses stay, and so
// does the directory holding them; keepGoing passes over subtrees that can't go
// for EACCES or ENOENT.
int comDirDelete(const char* path, const comDirFilter& filter, bool keepGoing);

// rename, replacing an existing target, a directory tree included: 0, or -1.
int comFileRename(const char* from, const char* to);

// Path cutting; each output is cut to outSize - 1 bytes and always terminated.
// The directory part: the text before the last "/", or up to and including the
// last ":" when that comes later; empty with neither.
void comDirName(const char* path, char* out, std::size_t outSize);
// The text behind the last "\", "/" or ":".
void comBaseName(const char* path, char* out, std::size_t outSize);
// The path without its extension: the text before the last "."; copied whole
// when there is no "." or only one at the very start.
void comFileStem(const char* path, char* out, std::size_t outSize);
// The extension with its dot; empty when there is none or the last "." is the
// first character.
void comFileExt(const char* path, char* out, std::size_t outSize);
