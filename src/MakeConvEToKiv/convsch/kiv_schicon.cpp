// TM_SCH_ICON rows and their files.
#include "MakeConvEToKiv/convsch/kiv_schicon.h"

#include <strings.h>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convsch/kiv_schcommon.h"

int32_t kiv_schicon::Entry(const char* table, ConvRow& row) {
    SetTitle(table);
    if (NormalizeCreateUpdateTimes(row, "cretime", "updtime") != 0)
        return SchReportDates(*this, row, kSchStampFailed);
    int32_t ret = TakeLogTitle(row);
    if (ret != 0) return ret;
    std::string source;
    std::string target;
    ret = GetFilePath(source, row, 'E');
    if (ret == 0) ret = GetFilePath(target, row, 'N');
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    if (!source.empty()) {
        ret = app->CopyAttachFile(source.c_str(), target.c_str(), copyTitle.c_str());
        if (ret != 0) return ret;
    }
    return ConvDBEntry::Entry(table, row);
}

int32_t kiv_schicon::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (strcasecmp(name, "seqno") == 0) {
        const std::string number = std::to_string(nextSeqno++);
        return ConvDBEntryAttach::AddColumnValue(name, number.c_str(), kRowTypeNumber);
    }
    return ConvDBEntryAttach::AddColumnValue(name, value, type);
}

int32_t kiv_schicon::GetFilePath(std::string& outPath, const ConvRow& row, char) {
    outPath.clear();
    const char* id = FindColumn(row, "ID");
    const char* fileName = FindColumn(row, "filename");
    if (!id || !*id || !fileName || !*fileName) return 0;
    outPath = std::string("schedule/icon/") + id + "/" + fileName;
    return 0;
}
