// The row writer for rows that own a file: the row first, its file second, and the
// renaming of file names into the "attachNNNNN" form.
#include "MakeConvEToKiv/convcom/ConvDBEntryAttach.h"

#include <strings.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "MakeConvEToKiv/convcom/ConvApp.h"

namespace {

constexpr std::size_t kFileNameMax = 2046;  // the part of a name that renaming looks at
constexpr std::size_t kShortStem = 6;       // stems shorter than this are numbers to rename
constexpr int32_t kNoMemory = -1102;

bool BeginsWithAttach(const char* text) { return std::strncmp(text, "attach", 6) == 0; }

}  // namespace

ConvDBEntryAttach::~ConvDBEntryAttach() = default;

int32_t ConvDBEntryAttach::GetFilePath(std::string& outPath, const ConvRow&, char) {
    outPath.clear();
    return 0;
}

int32_t ConvDBEntryAttach::NormalizeFileName(std::string& name) {
    try {
        const std::string work = name.substr(0, kFileNameMax);
        if (work.empty() || BeginsWithAttach(work.c_str())) return 0;
        const std::size_t dot = work.rfind('.');
        const std::string stem = work.substr(0, dot);
        if (stem.size() >= kShortStem) return 0;
        // At most five characters: the number fits an int.
        const long number = std::strtol(stem.c_str(), nullptr, 10);
        char head[32];
        std::snprintf(head, sizeof head, "attach%05ld", number);
        name = head;
        if (dot != std::string::npos) name += work.substr(dot);
        return 0;
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}

int32_t ConvDBEntryAttach::NormalizePath(std::string& path) {
    try {
        const std::size_t slash = path.rfind('/');
        const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
        std::string name = path.substr(nameStart);
        if (name.empty() || BeginsWithAttach(name.c_str())) return 0;
        const int32_t ret = NormalizeFileName(name);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        path.replace(nameStart, std::string::npos, name);
        return 0;
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}

int32_t ConvDBEntryAttach::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (!renameToAttach || !name || !value || strcasecmp(name, "filename") != 0 || BeginsWithAttach(value))
        return ConvDBEntry::AddColumnValue(name, value, type);
    try {
        std::string renamed = value;
        const int32_t ret = NormalizeFileName(renamed);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        return ConvDBEntry::AddColumnValue(name, renamed.c_str(), type);
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}

int32_t ConvDBEntryAttach::TakeLogTitle(ConvRow& row) {
    try {
        copyTitle.clear();
        const ConvRowItem* item = FindItem(row, "logtitle");
        if (!item) return 0;
        if (item->HasValue()) copyTitle = *item->value;
        RemoveColumn("logtitle", row);
        return 0;
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}

int32_t ConvDBEntryAttach::CopyRowFile(const ConvRow& row) {
    try {
        std::string source;
        std::string target;
        int32_t ret = GetFilePath(source, row, 'E');
        if (ret == 0) ret = GetFilePath(target, row, 'N');
        if (ret == 0 && renameToAttach) ret = NormalizePath(target);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        if (source.empty()) return 0;
        return app->CopyAttachFile(source.c_str(), target.c_str(), copyTitle.c_str());
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}

int32_t ConvDBEntryAttach::Entry(const char* table, ConvRow& row) {
    int32_t ret = TakeLogTitle(row);
    if (ret == 0) ret = ConvDBEntry::Entry(table, row);
    // No file for a row that wasn't written.
    if (ret == 0) ret = CopyRowFile(row);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}
