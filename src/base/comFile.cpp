// File and directory helpers of the base library; every failure leaves its own
// line in the debug log.
#include "base/comFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "base/comLog.h"

namespace {

// Writing a log line must not change the errno that callers look at.
#define LOG_KEEP_ERRNO(...)            \
    do {                               \
        int savedErrno_ = errno;       \
        comDebugNote(__VA_ARGS__);     \
        errno = savedErrno_;           \
    } while (0)

class Fd {
public:
    explicit Fd(int fd) : fd_(fd) {}
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    ~Fd() { Close(); }
    int get() const { return fd_; }
    void Close() {
        if (fd_ < 0) return;
        int savedErrno = errno;
        ::close(fd_);
        errno = savedErrno;
        fd_ = -1;
    }

private:
    int fd_;
};

struct DirCloser {
    void operator()(DIR* dir) const noexcept {
        int savedErrno = errno;
        closedir(dir);
        errno = savedErrno;
    }
};
using DirHandle = std::unique_ptr<DIR, DirCloser>;

void CopyCut(const char* from, std::size_t len, char* out, std::size_t outSize) {
    if (!out || outSize == 0) return;
    if (len > outSize - 1) len = outSize - 1;
    if (len) std::memcpy(out, from, len);
    out[len] = '\0';
}

// Position of the last "." that makes an extension; npos when there is none.
std::size_t ExtensionDot(const char* path) {
    const char* dot = std::strrchr(path, '.');
    if (!dot || dot == path) return std::string::npos;
    return static_cast<std::size_t>(dot - path);
}

}  // namespace

bool comFileExists(const char* path) { return path && access(path, F_OK) == 0; }

bool comIsDir(const char* path) {
    if (!path) return false;
    struct stat64 info{};
    if (stat64(path, &info) != 0) return false;
    return S_ISDIR(info.st_mode);
}

int comFileCopy(const char* from, const char* to, bool exclusive) {
    if (!from || !to) return 0;
    Fd in(open(from, O_RDONLY | O_CLOEXEC));
    if (in.get() < 0) {
        LOG_KEEP_ERRNO("copy file:open(O_RDONLY) path[%s] errno[%d]\r\n", from, errno);
        return 0;
    }
    int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | (exclusive ? O_EXCL : 0);
    Fd out(open(to, flags, 0666));
    if (out.get() < 0) {
        LOG_KEEP_ERRNO("copy file:open(O_WRONLY) path[%s] errno[%d]\r\n", to, errno);
        return 0;
    }
    char block[4096];
    for (;;) {
        ssize_t got = read(in.get(), block, sizeof block);
        if (got <= 0) break;  // a read error ends the copy like the end of the file
        ssize_t put = write(out.get(), block, static_cast<std::size_t>(got));
        if (put != got) {
            LOG_KEEP_ERRNO("copy file:write path[%s->%s] read[%d]size[%d] errno[%d]\r\n", from, to,
                           static_cast<int>(got), static_cast<int>(put), errno);
            in.Close();
            out.Close();
            int savedErrno = errno;
            unlink(to);
            errno = savedErrno;
            return 0;
        }
    }
    return 1;
}

int comDirCreate(const char* path) {
    if (!path) {
        errno = EINVAL;
        return -1;
    }
    int ret = mkdir(path, 0755);
    if (ret != 0 && errno != ENOENT) LOG_KEEP_ERRNO("mkdir[%s] errno=[%d]\n", path, errno);
    return ret;
}

int comDirCreateAll(const char* filePath) {
    char dir[8192];
    comDirName(filePath, dir, sizeof dir);
    if (dir[0] == '\0') {
        LOG_KEEP_ERRNO("dircreate dir empty\r\n");
        return -1;
    }
    int ret = comDirCreate(dir);
    if (ret == 0) return 0;
    if (errno == ENOENT) {
        ret = comDirCreateAll(dir);
        if (ret != 0) {
            LOG_KEEP_ERRNO("dircreateall:dircreateall path[%s] ret[%d] errno[%d]\r\n", dir, ret,
                           errno);
            return ret;
        }
        return comDirCreate(dir);
    }
    LOG_KEEP_ERRNO("dircreateall:dircreate path[%s] ret[%d] errno[%d]\r\n", dir, ret, errno);
    return -1;
}

int comDirDelete(const char* path, const comDirFilter& filter, bool keepGoing) {
    if (!path || path[0] == '\0') return -9;
    DirHandle dir(opendir(path));
    if (!dir) {
        if (errno == ENOENT) return 0;
        if (errno == ENOTDIR) {
            if (unlink(path) != 0) {
                LOG_KEEP_ERRNO("ENOTDIR delete dir:unilnk path[%s] errno[%d]\r\n", path, errno);
                return -1;
            }
            return 0;
        }
        return -1;
    }
    while (dirent* entry = readdir(dir.get())) {
        const char* name = entry->d_name;
        if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) continue;
        std::string full = std::string(path) + "/" + name;
        // lstat: a link is removed as the link, never followed into its target.
        struct stat info{};
        if (lstat(full.c_str(), &info) != 0) {
            if (errno == ENOENT) {
                if (unlink(full.c_str()) == 0 || errno == ENOENT) continue;
                LOG_KEEP_ERRNO("ENOENT delete dir:unilnk path[%s] errno[%d]\r\n", full.c_str(),
                               errno);
                return -1;
            }
            if (errno == EOVERFLOW) {
                struct stat64 wide{};
                if (lstat64(full.c_str(), &wide) != 0) {
                    LOG_KEEP_ERRNO("EOVERFLOW delete dir:stat64 path[%s] errno[%d]\r\n",
                                   full.c_str(), errno);
                    return -1;
                }
                info.st_mode = wide.st_mode;
                info.st_mtim = wide.st_mtim;
            } else {
                dir.reset();
                LOG_KEEP_ERRNO("delete dir:stat path[%s] errno[%d]\r\n", full.c_str(), errno);
                return -1;
            }
        }
        bool isDir = S_ISDIR(info.st_mode);
        if (filter && !filter(name, isDir ? 0 : 1, info)) continue;
        if (!isDir) {
            if (unlink(full.c_str()) != 0 && errno != ENOENT) {
                LOG_KEEP_ERRNO("delete dir:unlink path[%s] errno[%d]\r\n", full.c_str(), errno);
                return -1;
            }
            continue;
        }
        if (comDirDelete(full.c_str(), nullptr, keepGoing) != 0) {
            if (!keepGoing || (errno != EACCES && errno != ENOENT)) return -1;
        }
    }
    dir.reset();
    if (rmdir(path) == 0 || errno == ENOENT) return 0;
    if ((filter || keepGoing) && (errno == ENOTEMPTY || errno == EACCES || errno == EEXIST))
        return 0;
    if (errno == ENOTDIR) return (unlink(path) == 0 || errno == ENOENT) ? 0 : -1;
    LOG_KEEP_ERRNO("delete dir:rmdir path[%s] errno[%d]\r\n", path, errno);
    return -1;
}

int comFileRename(const char* from, const char* to) {
    if (!from || !to) {
        errno = EINVAL;
        return -1;
    }
    int ret = rename(from, to);
    if (ret == 0) return 0;
    if (errno != EEXIST && errno != ENOTEMPTY && errno != EISDIR) return ret;
    if (unlink(to) != 0) {
        LOG_KEEP_ERRNO("rename unlink[%s] errno=[%d]\n", to, errno);
        if (to[0] == '\0' || std::strcmp(to, "/") == 0) return -1;
        comDirDelete(to, nullptr, false);
    }
    ret = rename(from, to);
    if (ret != 0) LOG_KEEP_ERRNO("rename[%s->%s] errno=[%d]\n", from, to, errno);
    return ret;
}

void comDirName(const char* path, char* out, std::size_t outSize) {
    if (!out || outSize == 0) return;
    out[0] = '\0';
    if (!path) return;
    const char* slash = std::strrchr(path, '/');
    const char* colon = std::strrchr(path, ':');
    std::size_t end = 0;
    if (slash) end = static_cast<std::size_t>(slash - path);
    if (colon && static_cast<std::size_t>(colon - path) + 1 > end)
        end = static_cast<std::size_t>(colon - path) + 1;
    CopyCut(path, end, out, outSize);
}

void comBaseName(const char* path, char* out, std::size_t outSize) {
    if (!out || outSize == 0) return;
    out[0] = '\0';
    if (!path) return;
    const char* start = path;
    for (const char* p = path; *p; ++p)
        if (*p == '\\' || *p == '/' || *p == ':') start = p + 1;
    CopyCut(start, std::strlen(start), out, outSize);
}

void comFileStem(const char* path, char* out, std::size_t outSize) {
    if (!out || outSize == 0) return;
    out[0] = '\0';
    if (!path) return;
    std::size_t dot = ExtensionDot(path);
    CopyCut(path, dot == std::string::npos ? std::strlen(path) : dot, out, outSize);
}

void comFileExt(const char* path, char* out, std::size_t outSize) {
    if (!out || outSize == 0) return;
    out[0] = '\0';
    if (!path) return;
    std::size_t dot = ExtensionDot(path);
    if (dot == std::string::npos) return;
    CopyCut(path + dot, std::strlen(path + dot), out, outSize);
}
