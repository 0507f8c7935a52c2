// Lock file primitives: open the lock file, then F_SETLK over the whole file
// until it succeeds or the attempts run out.
#include "base/comLock.h"

#include <unistd.h>

#include <cerrno>

#include "base/comClock.h"
#include "base/comFile.h"
#include "base/comLog.h"

namespace {

// Takes the lock on fd; on failure closes fd and returns -1 with errno.
int TakeLock(int fd, const char* path, int retry, unsigned sleepSeconds, short lockType) {
    struct flock range{};
    range.l_type = lockType;
    range.l_whence = SEEK_SET;
    range.l_start = 0;
    range.l_len = 0;
    int lastErrno = EACCES;
    for (int attempt = 1; attempt <= retry; ++attempt) {
        if (fcntl(fd, F_SETLK, &range) == 0) return fd;
        lastErrno = errno;
        if (lastErrno != EACCES && lastErrno != EAGAIN) {
            comLockLogFail(path, retry, sleepSeconds, lastErrno, lockType);
            close(fd);
            errno = lastErrno;
            return -1;
        }
        if (attempt < retry) comSleep(sleepSeconds);
    }
    comLockLogFail(path, retry, sleepSeconds, lastErrno, lockType);
    close(fd);
    errno = EACCES;
    return -1;
}

int OpenForWrite(const char* path, int openFlags, bool largeFile) {
    int flags = openFlags | O_CLOEXEC | (largeFile ? O_LARGEFILE : 0);
    int fd = open(path, flags, 0644);
    if (fd < 0 && (errno == ENOENT || errno == ENOTDIR)) {
        comDirCreateAll(path);
        fd = open(path, flags, 0644);
    }
    return fd;
}

}  // namespace

int comLockFileRead(const char* path, int retry, unsigned sleepSeconds, bool noLockWanted) {
    if (!path) {
        errno = EINVAL;
        return -1;
    }
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0 && errno == EFBIG) fd = open(path, O_RDONLY | O_CLOEXEC | O_LARGEFILE);
    if (fd < 0 || noLockWanted) return fd;
    return TakeLock(fd, path, retry, sleepSeconds, F_RDLCK);
}

int comLockFileWrite(const char* path, int retry, unsigned sleepSeconds) {
    return comLockFileWriteShare(path, retry, sleepSeconds, O_RDWR | O_CREAT, false);
}

int comLockFileWriteShare(const char* path, int retry, unsigned sleepSeconds, int openFlags,
                          bool largeFile) {
    if (!path) {
        errno = EINVAL;
        return -1;
    }
    int fd = OpenForWrite(path, openFlags, largeFile);
    if (fd < 0) return -1;
    return TakeLock(fd, path, retry, sleepSeconds, F_WRLCK);
}

void comLockLogFail(const char* path, int retry, unsigned sleepSeconds, int err, int lockMode) {
    int savedErrno = errno;
    comNumberedLog(1, "RETRY[%d] SLEEPTIME[%d] LOCKMODE[%d] ERRNO[%d]\n                    FILE[%s]\n",
                   retry, static_cast<int>(sleepSeconds), lockMode, err, path ? path : "");
    errno = savedErrno;
}
