// Record file reading and writing: the line rules of the reader, the byte format
// of the writer, and the lock file around both.
#include "base/NUFileIO.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "base/comFile.h"
#include "base/comLock.h"
#include "base/comStr.h"

namespace {

struct FileCloser {
    void operator()(FILE* file) const noexcept { fclose(file); }
};
using FilePtr = std::unique_ptr<FILE, FileCloser>;

// The buffer getline grows.
struct LineBuffer {
    char* data = nullptr;
    std::size_t capacity = 0;
    LineBuffer() = default;
    LineBuffer(const LineBuffer&) = delete;
    LineBuffer& operator=(const LineBuffer&) = delete;
    ~LineBuffer() { std::free(data); }
};

// A "#" is a comment only with a TAB directly before it; the text is cut at the TAB.
void CutTabComment(char* text) {
    if (char* tab = std::strstr(text, "\t#")) *tab = '\0';
}

}  // namespace

NUFileIO::~NUFileIO() { Unlock(); }

void NUFileIO::Unlock() {
    if (lockFd < 0) return;
    close(lockFd);
    lockFd = -1;
}

void NUFileIO::SetSeparator(char character) { separator = character; }

char* NUFileIO::TrimValue(char* text) { return comStrRTrim(text); }

int NUFileIO::ReadLock(const std::string& path) {
    std::string lockPath = path + ".lk";
    Unlock();
    int fd = comLockFileRead(lockPath.c_str(), lockRetry, lockSleep, false);
    if (fd < 0) {
        switch (errno) {
            case ENOENT:
            case EBADF:
            case ENOTDIR:
                return -16;
            case EAGAIN:
            case EACCES:
                return -17;
            default:
                return -14;
        }
    }
    lockFd = fd;
    return 0;
}

int NUFileIO::WriteLock(const std::string& path) {
    std::string lockPath = path + ".lk";
    Unlock();
    int fd = lockShare ? comLockFileWriteShare(lockPath.c_str(), lockRetry, lockSleep,
                                               O_RDWR | O_CREAT, false)
                       : comLockFileWrite(lockPath.c_str(), lockRetry, lockSleep);
    if (fd < 0) return (errno == EACCES || errno == EAGAIN) ? -17 : -15;
    lockFd = fd;
    return 0;
}

int NUFileIO::ReadFile(NUioObj* object, bool dirtyOk) {
    if (!object) return -1;
    std::string path;
    int ret = object->NUioObjGetPath(path);
    if (ret != 0) return ret;

    int result = 0;
    if (!noLock) {
        if (dirtyOk) {
            lockRetry = 1;
            lockSleep = 0;
        }
        ret = ReadLock(path);
        if (ret != 0) {
            if (!dirtyOk || ret != -17) return ret;
            result = -19;  // read anyway, without the lock
        }
    }

    ret = 0;
    FilePtr in(fopen(path.c_str(), "r"));
    if (!in) {
        ret = (errno == ENOENT || errno == EBADF || errno == ENOTDIR) ? -16 : -10;
    }
    // A physical line is everything up to its LF, whatever bytes stand before
    // it; it is handed on in pieces of at most kLineBuffer - 1 bytes.
    LineBuffer buffer;
    char piece[kLineBuffer];
    std::string section;
    long lineNumber = 0;
    while (ret == 0 && in) {
        errno = 0;
        const ssize_t read = getline(&buffer.data, &buffer.capacity, in.get());
        if (read <= 0) {
            // The end of the file, or a failure that must not pass for one.
            if (errno == ENOMEM) ret = -2;
            else if (ferror(in.get())) ret = -10;
            break;
        }
        const char* physical = buffer.data;
        const std::size_t length = static_cast<std::size_t>(read);
        object->SetReadLineNumber(++lineNumber);
        const std::size_t content = physical[length - 1] == '\n' ? length - 1 : length;
        if (std::memchr(physical, '\0', content)) {
            ret = object->BadLine(physical, content);
            continue;
        }
        for (std::size_t pos = 0; ret == 0 && pos < length;) {
            const std::size_t take = std::min(length - pos, sizeof piece - 1);
            std::memcpy(piece, physical + pos, take);
            piece[take] = '\0';
            const bool continuesPiece = pos > 0;
            pos += take;
            if (piece[take - 1] == '\n') piece[take - 1] = '\0';
            ret = ReadPiece(object, piece, continuesPiece, section);
        }
    }
    in.reset();
    if (!noLock) Unlock();
    return ret != 0 ? ret : result;
}

int NUFileIO::ReadPiece(NUioObj* object, char* line, bool continuesPiece, std::string& section) {
    int ret;
    if (continuesPiece) {
        CutTabComment(line);
        TrimValue(line);
        ret = object->AddContinuation(line);
    } else {
        ret = object->ParseLine(line, section);
        if (ret == 1) return 0;
        if (ret != 0) return ret;
        if (line[0] != '\t') {
            char* sep = std::strchr(line, separator);
            char* hash = std::strchr(line, '#');
            if (hash && (!sep || hash < sep) && (hash == line || hash[-1] == ' ' || hash[-1] == '\t'))
                return 0;  // a comment line
            if (!sep) return 0;
            *sep = '\0';
            comStrRTrim(line);
            char* value = sep + 1;
            CutTabComment(value);
            TrimValue(value);
            return object->AddValue(line, value, section.c_str());
        }
        line[0] = '\n';
        if (line[1] != '\0') TrimValue(line + 1);
        ret = object->AddContinuation(line);
    }
    return ret == -7 ? 0 : ret;  // nothing to continue is no error
}

void NUFileIO::WriteRecord(std::string& out, const std::string& section, const char* name,
                           const char* value) const {
    if (!section.empty()) {
        out += '[';
        out += section;
        out += ']';
    }
    out += name;
    out += separator;
    for (const char* p = value; p && *p;) {
        const char* lf = std::strchr(p, '\n');
        std::size_t len = lf ? static_cast<std::size_t>(lf - p) : std::strlen(p);
        std::size_t keep = (lf && len > 0 && p[len - 1] == '\r') ? len - 1 : len;
        out.append(p, keep);
        if (!lf) break;
        out += "\n\t";
        p = lf + 1;
    }
    out += '\n';
}

int NUFileIO::WriteFile(NUioObj* object, bool keepLock) {
    if (!object) return -1;
    std::string path;
    int ret = object->NUioObjGetPath(path);
    if (ret != 0) return ret;
    if (comIsDir(path.c_str())) return -11;
    if (!(keepLock && lockFd >= 0)) {
        ret = WriteLock(path);
        if (ret != 0) return ret;
    }

    std::string backup = path + ".bk";
    FilePtr out(fopen(backup.c_str(), "w"));
    if (!out) return -10;
    // The whole text is formed first and written at once: the status file is
    // rewritten after every row. Unbuffered, the stream needs no buffer of its
    // own, so a rewrite costs no allocation and no stat of the new file.
    setvbuf(out.get(), nullptr, _IONBF, 0);
    std::string text;
    std::string section;
    try {
        for (int index = 0;; ++index) {
            const char* name = nullptr;
            const char* value = nullptr;
            section.clear();
            if (object->GetItem(index, &name, &value, section) != 0) break;
            if (!name) continue;
            WriteRecord(text, section, name, value);
        }
    } catch (const std::bad_alloc&) {
        return -12;
    }
    if (!text.empty() && fwrite(text.data(), 1, text.size(), out.get()) != text.size()) return -12;
    // Buffered bytes reach the disk only now; a failure here is a failed write.
    if (fclose(out.release()) != 0) return -12;
    if (comFileRename(backup.c_str(), path.c_str()) != 0) return errno == EEXIST ? -18 : -13;
    if (!keepLock) Unlock();
    return 0;
}

int NUFileIO::LockFile(NUioObj* object) {
    if (!object) return -1;
    std::string path;
    int ret = object->NUioObjGetPath(path);
    if (ret != 0) return ret;
    return WriteLock(path);
}

int NUFileIO::DeleteFile(NUioObj* object, bool keepLock, bool removeLockFile) {
    if (!object) return -1;
    std::string path;
    int ret = object->NUioObjGetPath(path);
    if (ret != 0) return ret;
    if (!(keepLock && lockFd >= 0)) {
        ret = WriteLock(path);
        if (ret != 0) return ret;
    }
    unlink(path.c_str());
    if (keepLock) return 0;
    Unlock();
    if (removeLockFile) unlink((path + ".lk").c_str());
    return 0;
}
