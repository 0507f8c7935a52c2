// The application object's attachment operations: where files lie in the source
// and target trees, how target names are formed, and one copy with its report.
#include "MakeConvEToKiv/convcom/ConvApp.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cxiocom/CXioLCString.h"
#include "base/comEncoding.h"
#include "base/comFile.h"

namespace {

constexpr std::size_t kPathMax = 1023;       // working copies of paths
constexpr std::size_t kBaseNameMax = 260;    // a file name taken into a target directory
constexpr std::size_t kErrorTextMax = 1023;  // the error text of a failed copy
constexpr std::size_t kAttachNameMax = 255;  // "attachNNNNN" and the part of a name searched for its extension
constexpr std::size_t kReadPiece = 8191;
constexpr int32_t kNoMemory = -1102;
constexpr int32_t kCopyFailed = -80;  // a copy failure that must stop the table

std::string Cut(const char* text, std::size_t max) {
    if (!text) return {};
    return std::string(text, strnlen(text, max));
}

// An id read as a decimal number, as the bucket needs it: 0 when it doesn't
// read as one, held within the range of int.
int ReadId(const char* id) {
    if (!id) return 0;
    const int savedErrno = errno;
    long long value = std::strtoll(id, nullptr, 10);
    errno = savedErrno;
    return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
}

// A UTF-8 name in another encoding, through JIS; empty when memory runs out.
std::string EncodedForm(const std::string& utf8, std::size_t (*fromJis)(const char*, char*)) {
    try {
        std::vector<char> jis(utf8.size() * 4 + 8);
        const std::size_t jisLength = comUtf8ToJis(utf8.c_str(), jis.data());
        // The converters need four bytes per input byte, and the JIS text may be
        // longer than the UTF-8 one.
        std::vector<char> out(std::max(utf8.size() * 4 + 8, jisLength * 4 + 4));
        const std::size_t length = fromJis(jis.data(), out.data());
        return std::string(out.data(), std::min(length, kPathMax));
    } catch (const std::bad_alloc&) {
        return {};
    }
}

// The name under which a missing source may lie: its EUC-JP or Shift_JIS form
// when the name isn't plain ASCII and that form exists, else the name without
// its last extension (a missing "a.tar.gz" is tried as "a.tar").
std::string FindSourceForm(const std::string& source) {
    const int chars = CountChars(source.c_str(), static_cast<int>(source.size()) + 1);
    if (chars != static_cast<int>(source.size())) {
        const std::string euc = EncodedForm(source, comJisToEuc);
        if (!euc.empty()) {
            if (comFileExists(euc.c_str())) return euc;
            const std::string sjis = EncodedForm(source, comJisToSjis);
            if (!sjis.empty() && comFileExists(sjis.c_str())) return sjis;
        }
    }
    // Only a dot inside the file's own name counts, and not one that starts it:
    // cutting elsewhere would name a directory or some other file.
    const std::size_t slash = source.find_last_of('/');
    const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    const std::size_t dot = source.rfind('.');
    if (dot != std::string::npos && dot > nameStart) return source.substr(0, dot);
    return source;
}

// True when a path below a root would lead out of it: an absolute path, or
// one with a ".." part.
bool LeavesTree(const char* relative) {
    if (!relative) return false;
    if (relative[0] == '/') return true;
    for (const char* part = relative; *part;) {
        const std::size_t length = std::strcspn(part, "/");
        if (length == 2 && part[0] == '.' && part[1] == '.') return true;
        part += length;
        if (*part == '/') ++part;
    }
    return false;
}

}  // namespace

int CopyFileTolerant(const char* source, const char* target) {
    try {
        const std::string sourceText = Cut(source, kPathMax);
        const std::string targetText = Cut(target, kPathMax);

        // A target that ends in a separator is a directory: the file keeps the
        // name the caller gave, whichever form it is found under.
        std::string targetPath = targetText;
        if (!targetText.empty() && (targetText.back() == '/' || targetText.back() == '\\')) {
            char name[kBaseNameMax + 1];
            comBaseName(sourceText.c_str(), name, sizeof name);
            targetPath = Cut((targetText + name).c_str(), kPathMax);
        }
        char targetDir[kPathMax + 1];
        comDirName(targetPath.c_str(), targetDir, sizeof targetDir);

        std::string from = sourceText;
        if (!comFileExists(from.c_str())) from = FindSourceForm(sourceText);
        // A directory would copy as an empty file.
        if (comIsDir(from.c_str())) {
            errno = EISDIR;
            return -1;
        }

        // An empty directory part is the current directory.
        if (targetDir[0] != '\0' && !comIsDir(targetDir) && comDirCreateAll(targetPath.c_str()) < 0) return -1;
        return comFileCopy(from.c_str(), targetPath.c_str(), false) ? 0 : -1;
    } catch (const std::bad_alloc&) {
        errno = ENOMEM;
        return -1;
    }
}

int ReadTextFile(const char* path, std::string& out) {
    out.clear();
    if (!path) return -1;
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return -1;
    char piece[kReadPiece];
    try {
        for (;;) {
            const ssize_t got = read(fd, piece, sizeof piece);
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) break;
            out.append(piece, static_cast<std::size_t>(got));
        }
    } catch (const std::bad_alloc&) {
        // Keeps what was read; the caller sees a short text.
    }
    close(fd);
    return 0;
}

void ConvApp::GetSourceFileRoot(std::string& path) {
    try {
        path = sourceFileRoot_ + std::to_string(GetCorporateId()) + "/";
    } catch (const std::bad_alloc&) {
        ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
    }
}

void ConvApp::GetTargetFileRoot(std::string& path) {
    try {
        path = GetFileDir();
        EnsureSlash(path);
        path += std::to_string(GetCorporateId()) + "/";
    } catch (const std::bad_alloc&) {
        ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
    }
}

void ConvApp::AppendNumberedDir(std::string& path, const char* id, bool withBucket) {
    try {
        EnsureSlash(path);
        if (withBucket) {
            char bucket[32];
            GetDirBucket(ReadId(id), bucket, sizeof bucket, true);
            path += bucket;
        }
        if (id) path += id;
        path += '/';
    } catch (const std::bad_alloc&) {
        ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
    }
}

void ConvApp::AppendUserDir(std::string& path, const char* id) {
    try {
        EnsureSlash(path);
        path += "user/";
    } catch (const std::bad_alloc&) {
        ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return;
    }
    AppendNumberedDir(path, id, true);
}

void ConvApp::AppendIdDir(std::string& path, const char* id) { AppendNumberedDir(path, id, true); }

void ConvApp::AppendAttachName(std::string& path, int32_t number, const char* fileName) {
    char name[kAttachNameMax + 1];
    std::snprintf(name, sizeof name, "attach%05d", static_cast<int>(number));
    char extension[kAttachNameMax + 1];
    try {
        comFileExt(Cut(fileName, kAttachNameMax).c_str(), extension, sizeof extension);
        EnsureSlash(path);
        path += name;
        path += extension;
    } catch (const std::bad_alloc&) {
        ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
    }
}

int32_t ConvApp::MapCopyError(int errnum, int32_t fallback) {
    switch (errnum) {
        case EACCES:
        case EOVERFLOW:
        case ENOENT:
        case EEXIST:
        case EBUSY:
        case EFBIG:
        case ENAMETOOLONG:
        case EISDIR:
        case ENOTDIR:
        case EAGAIN:
            return 1;
        default:
            return fallback;
    }
}

int32_t ConvApp::CopyAttachFile(const char* sourcePath, const char* targetPath, const char* title) {
    try {
        std::string from;
        GetSourceFileRoot(from);
        if (sourcePath) from += sourcePath;
        std::string to;
        GetTargetFileRoot(to);
        if (targetPath) to += targetPath;

        // A stored name that leads out of the source tree is refused like a
        // missing file: nothing outside the store is read.
        int copied;
        if (LeavesTree(sourcePath)) {
            errno = ENOENT;
            copied = -1;
        } else {
            copied = CopyFileTolerant(from.c_str(), to.c_str());
        }
        if (copied == 0) return 0;
        const int err = errno;
        const std::string errorText = Cut(std::strerror(err), kErrorTextMax);
        const int32_t ret = MapCopyError(err, kCopyFailed);
        ReportError(ret, CONV_HERE, true, nullptr,
                    "添付ファイルの複写に失敗しました。Name=[%s] From=[%s] To=[%s] エラー詳細[%s]", title ? title : "",
                    from.c_str(), to.c_str(), errorText.c_str());
        return ret;
    } catch (const std::bad_alloc&) {
        ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}
