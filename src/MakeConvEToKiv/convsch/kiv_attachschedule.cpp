// TT_ATTACH_SCHEDULE rows and their files.
#include "MakeConvEToKiv/convsch/kiv_attachschedule.h"

#include <string.h>
#include <strings.h>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convsch/kiv_schcommon.h"

namespace {

// Where the file lies and what it belongs to; no columns of the target.
const char* const kSourceOnly[] = {"ORG_ID", "SID_ASSIGN", "SID_USER", "KBN", "event", "detail", nullptr};
constexpr size_t kOldIdMax = 255;

}  // namespace

void kiv_attachschedule::AppendKeys(std::string& text) const {
    if (currentRow) {
        AppendRowKeys(*currentRow, text);
    } else {
        ConvDBEntryAttach::AppendKeys(text);
    }
}

int32_t kiv_attachschedule::Entry(const char* table, ConvRow& row) {
    currentRow = &row;
    return ConvDBEntryAttach::Entry(table, row);
}

void kiv_attachschedule::Clear() {
    ConvDBEntryAttach::Clear();
    newId.clear();
    oldId.clear();
}

int32_t kiv_attachschedule::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (strcasecmp(name, "ID") == 0) {
        oldId.assign(value, strnlen(value, kOldIdMax));
        const int32_t ret = SchMakeId(*this, currentRow, value, newId);
        if (ret != 0) return ret;
        return ConvDBEntryAttach::AddColumnValue(name, newId.c_str(), kRowTypeText);
    }
    if (SchIsLogColumn(name) || SchNameIn(name, kSourceOnly)) return 0;
    return ConvDBEntryAttach::AddColumnValue(name, value, type);
}

int32_t kiv_attachschedule::GetFilePath(std::string& outPath, const ConvRow& row, char which) {
    outPath.clear();
    const char* fileName = FindColumn(row, "FILENAME");
    if (!fileName || !*fileName) return 0;
    if (which == 'N') {
        outPath = "schedule/" + oldId.substr(0, 6) + "/" + newId + "/";
        return 0;
    }
    const char* kbn = FindColumn(row, "KBN");
    const char* assign = FindColumn(row, "SID_ASSIGN");
    const char* user = FindColumn(row, "SID_USER");
    const char* orgId = FindColumn(row, "ORG_ID");
    const std::string tree = kbn ? kbn : "";
    if (tree == "1") {
        app->AppendUserDir(outPath, assign ? assign : "");
    } else if (tree == "2") {
        outPath = "group/";
        app->AppendIdDir(outPath, assign ? assign : "");
    } else if (tree == "3") {
        app->AppendUserDir(outPath, user ? user : "");
        outPath += "group/";
        outPath += assign ? assign : "";
        outPath += "/";
    } else if (tree == "4") {
        outPath = "setubi/plant/";
        app->AppendIdDir(outPath, assign ? assign : "");
    }
    outPath += "schedule/";
    outPath += orgId ? orgId : "";
    outPath += "/";
    outPath += fileName;
    return 0;
}
