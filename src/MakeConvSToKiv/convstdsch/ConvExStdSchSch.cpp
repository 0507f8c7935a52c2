// Schedule entries with their repeat dates and attachment rows.
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSch.h"

#include <cstring>
#include <new>
#include <string>
#include <unordered_set>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStdAttach.h"
#include "MakeConvSToKiv/convstdsch/ConvDBEntryStdSchSch.h"
#include "database/CdDBConnection.h"

namespace {

// The last nested list of that name in record, or null.
const ConvRowItem* LastList(const ConvRow& record, const char* name) {
    const ConvRowItem* found = nullptr;
    for (const auto& item : record)
        if (item && item->type == kRowTypeList && item->name == name) found = item.get();
    return found;
}

}  // namespace

ConvExStdSchSch::ConvExStdSchSch(ConvAppStd* appIn, const char* file, const char* mainTable, const char* indexPath)
    : ConvExStdStackIndex(appIn, false, file, mainTable, indexPath) {}

ConvExStdSchSch::~ConvExStdSchSch() = default;

int32_t ConvExStdSchSch::ConvertRecord(ConvDBEntryStd* writer, ConvRow& record) {
    int32_t ret = ConvExStdStackIndex::ConvertRecord(writer, record);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    const ConvRowItem* id = FindItem(record, "ID");
    if (!id || !id->HasValue()) return 0;
    ret = InsertDates(record, *id);
    if (ret == 0) ret = InsertAttachments(record, *id);
    if (ret != 0) {
        if (ret == kConvRowSkipped) NoteLeftOut();
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    }
    return ret;
}

int32_t ConvExStdSchSch::InsertDates(ConvRow& record, const ConvRowItem& idItem) {
    ConvDBEntryStdEnableRetry writer(app, connection);
    int32_t ret = SetUpDetailWriter(&writer, idItem);
    if (ret == 0) {
        writer.AddKey("sid_assign", "");
        ret = InsertDateList(&writer, dateTable.c_str(), LastList(record, "dates"), "0");
    }
    if (ret == 0) ret = InsertDateList(&writer, dateTable.c_str(), LastList(record, "deldates"), "1");
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvExStdSchSch::SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem) {
    if (!writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    writer->SetFixedField("ID", idItem.Value(), kRowTypeNumber);
    writer->AddKey("ID", idItem.Value() ? idItem.Value() : "");
    writer->MapKey("sid_assign", "sid_assign");
    writer->MapKey("deldates", "deldates");
    return 0;
}

int32_t ConvExStdSchSch::InsertDateList(ConvDBEntryStd* writer, const char* table, const ConvRowItem* list,
                                        const char* flag) {
    if (!list || !table || !*table) return 0;
    if (!flag || !writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    try {
        std::unordered_set<std::string> written;
        for (const std::string& entry : list->list) {
            if (!ConvDBEntryStdSchSch::IsValidDate(entry.c_str())) continue;
            // The eight digits that were checked are the date; a tail isn't part of it.
            std::string date = entry.substr(0, 8);
            if (!written.insert(date).second) continue;
            ConvRow row;
            AddColumn("sid_assign", date.c_str(), kRowTypeNumber, row);
            AddColumn("deldates", flag, kRowTypeNumber, row);
            const int32_t ret = writer->Entry(table, row);
            // 2: the statement failed on an earlier walk and was reported then.
            if (ret == 0 || ret == kConvRetryListed) continue;
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    } catch (const std::bad_alloc&) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "メモリー確保に失敗しました。[%d]", kDbNoMemory);
        return kDbNoMemory;
    }
    return 0;
}

int32_t ConvExStdSchSch::InsertAttachments(ConvRow& record, const ConvRowItem& idItem) {
    ConvDBEntryStdAttach writer(app, connection, false);
    int32_t ret = SetUpDetailWriter(&writer, idItem);
    if (ret == 0) ret = writer.InsertAttach(attachTable.c_str(), record);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}
