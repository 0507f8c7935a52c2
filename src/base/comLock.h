// Advisory locks between processes: fcntl record locks over a whole lock file,
// taken without blocking and retried a bounded number of times.
#pragma once

#include <fcntl.h>

// Each returns the open descriptor that holds the lock, or -1 with errno set
// (EACCES when the lock stayed busy through all attempts). Closing the
// descriptor releases the lock. retry is the number of attempts (none for 0 or
// below), sleepSeconds the wait between them (through comSleep).

// Opens read-only and takes a shared lock; with noLockWanted only opens.
int comLockFileRead(const char* path, int retry, unsigned sleepSeconds, bool noLockWanted);
// Opens read-write, creating the file (mode 0644) and its directories when
// needed, and takes an exclusive lock.
int comLockFileWrite(const char* path, int retry, unsigned sleepSeconds);
// The same with the caller's open flags, and the large-file open on request.
int comLockFileWriteShare(const char* path, int retry, unsigned sleepSeconds, int openFlags,
                          bool largeFile);

// Writes a failed lock to numbered log 1; lockMode is F_RDLCK or F_WRLCK.
void comLockLogFail(const char* path, int retry, unsigned sleepSeconds, int err, int lockMode);
