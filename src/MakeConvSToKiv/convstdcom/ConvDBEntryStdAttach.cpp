// Attachment rows of a flat-store record.
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStdAttach.h"

#include <strings.h>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "database/CdDBConnection.h"

namespace {

// The nested list of that name in the record, or null.
const std::vector<std::string>* FindList(const ConvRow& record, const char* name) {
    for (const auto& item : record)
        if (item && item->type == kRowTypeList && strcasecmp(item->name.c_str(), name) == 0) return &item->list;
    return nullptr;
}

const char* EntryAt(const std::vector<std::string>* list, std::size_t index) {
    return list && index < list->size() ? (*list)[index].c_str() : "";
}

}  // namespace

ConvDBEntryStdAttach::ConvDBEntryStdAttach(ConvAppStd* appIn, CdDBConnection* connectionIn, bool stop)
    : ConvDBEntryStdEnableRetry(appIn, connectionIn), stopOnFailure(stop) {
    for (const char* name : {"sid_attach", "filename", "dispname", "mimetype"}) MapKey(name, name);
    AddKey("sid_attach", "");
    AddKey("dispname", "");
}

int32_t ConvDBEntryStdAttach::InsertAttach(const char* table, ConvRow& record) {
    const std::vector<std::string>* attach = FindList(record, "attach");
    if (!attach) return 0;
    const int32_t ret =
        InsertAttachList(table, record, *attach, FindList(record, "attachdisp"), FindList(record, "mimetype"));
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvDBEntryStdAttach::InsertAttachList(const char* table, ConvRow&, const std::vector<std::string>& attachList,
                                               const std::vector<std::string>* dispList,
                                               const std::vector<std::string>* mimeList) {
    for (std::size_t i = 0; i < attachList.size(); ++i) {
        ConvRow row;
        int32_t ret = MakeAttachRow(static_cast<int32_t>(i + 1), attachList[i].c_str(), EntryAt(dispList, i),
                                    EntryAt(mimeList, i), row);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        ret = Entry(table, row);
        if (ret == 0 || ret == kConvRetryListed) continue;
        if (ret == kConvRowSkipped) {
            if (stopOnFailure) {
                StdApp()->ClearRetryList();
                return kConvRowSkipped;
            }
            // In a transaction the failed statement spoilt the rest: walk again.
            if (connection->IsTransactional()) return kConvRowSkipped;
            continue;
        }
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 0;
}

int32_t ConvDBEntryStdAttach::MakeAttachRow(int32_t number, const char* file, const char* disp, const char* mime,
                                            ConvRow& row) {
    const std::string id = std::to_string(number);
    int32_t ret = AddColumn("sid_attach", id.c_str(), kRowTypeNumber, row);
    if (ret == 0) ret = AddColumn("filename", file, kRowTypeText, row);
    if (ret == 0) ret = AddColumn("dispname", disp, kRowTypeText, row);
    if (ret == 0) ret = AddColumn("mimetype", mime, kRowTypeText, row);
    return ret;
}
