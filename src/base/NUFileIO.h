// Reader and writer of record files ('name=value' lines with TAB continuation
// lines and comments), guarded by a lock file "PATH.lk" and written through
// "PATH.bk" and a rename.
#pragma once

#include <cstdio>
#include <string>

#include "base/NUioObj.h"

// Results: -1 null object, -10 open of the file (reading) or of ".bk" failed,
// -11 the path is a directory, -12 write failed, -13 rename failed, -14 read
// lock failed, -15 write lock failed, -16 file or lock file missing, -17 lock
// busy after the retries, -18 rename failed with EEXIST, -19 read done with
// dirtyOk while the lock was busy. Errors of the object pass through.
class NUFileIO {
public:
    static constexpr int kLineBuffer = 2048;  // lines arrive in pieces of at most 2047 bytes

    NUFileIO() = default;
    NUFileIO(const NUFileIO&) = delete;
    NUFileIO& operator=(const NUFileIO&) = delete;
    // Releases a held lock.
    virtual ~NUFileIO();

    // Fills object from its file under a shared lock (none with SetNoLock).
    // With dirtyOk a busy lock is tried once, from then on for this reader, and
    // the file is read anyway with -19 as the result.
    virtual int ReadFile(NUioObj* object, bool dirtyOk);
    // Writes every item of object to "PATH.bk" and renames it over the file,
    // under the write lock. With keepLock the lock stays held afterwards, and a
    // lock already held is used without locking again.
    virtual int WriteFile(NUioObj* object, bool keepLock);
    // Takes the write lock for the file of object and holds it.
    virtual int LockFile(NUioObj* object);
    // Unlinks the file of object under the write lock; keepLock holds the lock
    // afterwards, removeLockFile also unlinks "PATH.lk".
    virtual int DeleteFile(NUioObj* object, bool keepLock, bool removeLockFile);
    virtual void SetSeparator(char character);
    // Applied in place to every value before it is handed on; cuts trailing
    // white space.
    virtual char* TrimValue(char* text);

    // Releases the held lock, if any.
    void Unlock();
    void SetNoLock(bool flag) { noLock = flag ? 1 : 0; }

    void SetLockRetry(int attempts) { lockRetry = attempts; }
    void SetLockSleep(unsigned seconds) { lockSleep = seconds; }
    void SetLockShare(bool share) { lockShare = share ? 1 : 0; }
    int GetLockRetry() const { return lockRetry; }
    unsigned GetLockSleep() const { return lockSleep; }
    bool IsLocked() const { return lockFd >= 0; }

protected:
    int ReadLock(const std::string& path);
    int WriteLock(const std::string& path);
    // Hands one piece of a physical line (without its LF) to object.
    int ReadPiece(NUioObj* object, char* line, bool continuesPiece, std::string& section);
    // Appends one entry in the file's byte form.
    void WriteRecord(std::string& out, const std::string& section, const char* name, const char* value) const;

    int lockRetry = 3;
    unsigned lockSleep = 2;
    int lockShare = 0;
    int lockFd = -1;
    unsigned char noLock = 0;
    char separator = '=';
};
