#include "MakeConvSToKiv/convstdplant/tm_plant.h"

#include <cstring>
#include <string>

#include "MakeConvEToKiv/convcom/ConvApp.h"

namespace {

bool IsOneOf(const char* name, std::initializer_list<const char*> names) {
    if (!name) return false;
    for (const char* candidate : names)
        if (std::strcmp(name, candidate) == 0) return true;
    return false;
}

}  // namespace

tm_plt_group::tm_plt_group(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStdItemIndex(appIn, connectionIn, "ID", "ID", "seqno") {
    for (const char* key : {"Name", "starttime", "endtime", "usetime", "reservlimit"}) MapKey(key, key);
    AddKey("Name", "");
}

bool tm_plt_group::IsNumberField(const char* name) {
    return IsOneOf(name, {"ID"}) || ConvDBEntryStdItemIndex::IsNumberField(name);
}

tm_plant::tm_plant(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStdItemIndex(appIn, connectionIn, "ID", "ID", "seqno") {
    for (const char* key : {"ID", "Name", "memo", "assigngroup", "starttime", "endtime", "usetime", "reservlimit",
                            "holidayuse", "managegroup"})
        MapKey(key, key);
    AddKey("Name", "");
}

bool tm_plant::IsNumberField(const char* name) {
    return IsOneOf(name, {"ID", "assigngroup", "managegroup"}) || ConvDBEntryStdItemIndex::IsNumberField(name);
}

int32_t tm_plant::CollectColumns(const char* table, ConvRow& record) {
    // The frame's build without the item index's own numbering.
    int32_t ret = ConvDBEntryStd::CollectColumns(table, record);
    if (ret != 0) return ret;

    const char* manageGroup = "0";
    for (const auto& item : record) {
        if (item && item->type == kRowTypeList && item->name == "managegroup") {
            if (!item->list.empty() && !item->list.front().empty()) manageGroup = item->list.front().c_str();
            break;
        }
    }
    // The entry is a group id: it is checked as the numeric keys are, and
    // written as text.
    ConvRowItem check("managegroup", std::string(manageGroup), kRowTypeNumber);
    ret = CheckColumn(check);
    if (ret != 0) return ret;
    ret = AddRawColumn("managegroup", manageGroup, kRowTypeText);
    if (ret == 0) ret = AddRawColumn(sequenceColumn.c_str(), std::to_string(count).c_str(), kRowTypeNumber);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t tm_plant::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (!name) return 0;
    if (std::strcmp(name, "managegroup") == 0) return 0;
    if (std::strcmp(name, "memo") == 0 && value) {
        std::string cut;
        const int32_t ret = CutToLength(name, value, kMemoMax, cut);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        return ConvDBEntryStdItemIndex::AddColumnValue(name, cut.c_str(), type);
    }
    return ConvDBEntryStdItemIndex::AddColumnValue(name, value, type);
}
