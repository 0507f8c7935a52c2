// Attachment paths of the flat store: its file tree has no corporate directory
// and no bucket directories above the owners.
#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"

void ConvAppStd::GetSourceFileRoot(std::string& path) {
    try {
        path = sourceFileRoot_;
    } catch (const std::bad_alloc&) {
        ReportError(-1102, CONV_HERE, false, nullptr, nullptr);
    }
}

void ConvAppStd::AppendUserDir(std::string& path, const char* id) {
    try {
        EnsureSlash(path);
        path += "user/";
    } catch (const std::bad_alloc&) {
        ReportError(-1102, CONV_HERE, false, nullptr, nullptr);
        return;
    }
    AppendNumberedDir(path, id, false);
}

void ConvAppStd::AppendIdDir(std::string& path, const char* id) { AppendNumberedDir(path, id, false); }
