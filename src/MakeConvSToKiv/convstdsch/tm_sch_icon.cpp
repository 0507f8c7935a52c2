// Icon rows: ID, name, running seqno, and the file named by the lists.
#include "MakeConvSToKiv/convstdsch/tm_sch_icon.h"

#include <cstring>

#include "MakeConvEToKiv/convcom/ConvApp.h"

tm_sch_icon::tm_sch_icon(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStdItemIndex(appIn, connectionIn, "ID", "ID", "seqno") {
    MapKey("Name", "Name");
    MapKey("attach", "filename");
    MapKey("attachdisp", "dispname");
    MapKey("mimetype", "mimetype");
    AddKey("Name", "");
}

bool tm_sch_icon::IsNumberField(const char* name) {
    if (name && std::strcmp(name, "ID") == 0) return true;
    return ConvDBEntryStdItemIndex::IsNumberField(name);
}

int32_t tm_sch_icon::CollectColumns(const char* table, ConvRow& record) {
    int32_t ret = ConvDBEntryStdItemIndex::CollectColumns(table, record);
    if (ret != 0) return ret;
    for (const auto& item : record) {
        if (!item || item->type != kRowTypeList) continue;
        for (const std::string& entry : item->list) {
            ret = AddColumnValue(item->name.c_str(), entry.c_str(), kRowTypeText);
            if (ret != 0) {
                app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
                return ret;
            }
        }
    }
    return 0;
}
