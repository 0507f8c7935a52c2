// Access-right rows of stage A.
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStdAcc.h"

#include <strings.h>

#include <cstring>
#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "base/comStr.h"
#include "database/CdDBConnection.h"

namespace {

const std::vector<std::string>* FindList(const ConvRow& record, const char* name) {
    for (const auto& item : record)
        if (item && item->type == kRowTypeList && strcasecmp(item->name.c_str(), name) == 0) return &item->list;
    return nullptr;
}

}  // namespace

// -------------------------------------------------------------- ConvDBEntryStdAcc

ConvDBEntryStdAcc::ConvDBEntryStdAcc(ConvAppStd* appIn, CdDBConnection* connectionIn, const char* value,
                                     const char* column)
    : ConvDBEntryStd(appIn, connectionIn), keyValue(value ? value : ""), keyColumn(column ? column : "") {
    MapKey("accesskind", "accesskind");
    AddKey(keyColumn.c_str(), "");
}

ConvDBEntryStdAcc::~ConvDBEntryStdAcc() = default;

bool ConvDBEntryStdAcc::IsNumberField(const char* name) { return name && std::strcmp(name, "accesskind") == 0; }

int32_t ConvDBEntryStdAcc::AddKeyField() {
    SetFixedField(keyColumn.c_str(), keyValue.c_str(), kRowTypeNumber);
    return 0;
}

int32_t ConvDBEntryStdAcc::Entry(const char* table, ConvRow& record) {
    if (!table) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    const std::string base = table;
    int32_t ret = 0;
    if (!FindItem(record, "accesskind")) ret = AddColumn("accesskind", defaultAccessKind.c_str(), kRowTypeNumber, record);
    if (ret == 0) ret = AddKeyField();
    if (ret == 0) ret = ConvDBEntryStd::Entry((base + "_ALL").c_str(), record);
    if (ret == 0) ret = InsertAssignList((base + "_GROUP").c_str(), record, "group", "gaccess");
    if (ret == 0) ret = InsertAssignList((base + "_USER").c_str(), record, "user", "uaccess");
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

std::unique_ptr<ConvDBEntryStdEnableRetry> ConvDBEntryStdAcc::NewAssignWriter() {
    return std::unique_ptr<ConvDBEntryStdEnableRetry>(
        new (std::nothrow) ConvDBEntryStdEnableRetry(StdApp(), connection));
}

void ConvDBEntryStdAcc::DeleteAssignWriter(std::unique_ptr<ConvDBEntryStdEnableRetry>) {}

int32_t ConvDBEntryStdAcc::SetUpAssignWriter(ConvDBEntryStdEnableRetry& writer) {
    if (!moduleNumber.empty()) writer.SetFixedField("SID_MODULE", moduleNumber.c_str(), kRowTypeNumber);
    writer.SetFixedField(keyColumn.c_str(), keyValue.c_str(), kRowTypeNumber);
    writer.MapKey("sid_assign", "sid_assign");
    writer.MapKey("accesskind", "accesskind");
    writer.AddKey(keyColumn.c_str(), keyValue.c_str());
    writer.AddKey("sid_assign", "");
    return 0;
}

int32_t ConvDBEntryStdAcc::IsAssignValid(const char* value, const char* listName) {
    // An entry that can't name anyone: empty or 0 is dropped quietly like a
    // deleted id; text that isn't a number is reported and dropped.
    if (!value || !*value) return 0;
    if (!comIsNumeric(value)) {
        ReportMessage(-1109, CONV_HERE, true,
                      "数値型の項目に文字列が指定されたため、登録を行いませんでした。field=[%s] value=[%s]",
                      "sid_assign", value);
        app->SetStatusWord(kConvRowSkipped);
        return 0;
    }
    if (std::strtol(value, nullptr, 10) == 0) return 0;
    const int32_t ret = StdApp()->ExistsInIndex(value, listName);
    if (ret < 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvDBEntryStdAcc::InsertAssignList(const char* table, ConvRow& record, const char* listName,
                                            const char* accessListName) {
    const std::vector<std::string>* ids = FindList(record, listName);
    const std::vector<std::string>* kinds = FindList(record, accessListName);
    if (!ids || !kinds) return 0;

    std::unique_ptr<ConvDBEntryStdEnableRetry> writer = NewAssignWriter();
    if (!writer) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "メモリー確保に失敗しました。[%d]", kDbNoMemory);
        return kDbNoMemory;
    }
    int32_t ret = SetUpAssignWriter(*writer);
    const std::size_t pairs = std::min(ids->size(), kinds->size());
    for (std::size_t i = 0; ret == 0 && i < pairs; ++i) {
        const int32_t valid = IsAssignValid((*ids)[i].c_str(), listName);
        if (valid == 0) continue;
        if (valid < 0) {
            ret = valid;
            break;
        }
        ConvRow row;
        AddColumn("sid_assign", (*ids)[i].c_str(), kRowTypeNumber, row);
        AddColumn("accesskind", (*kinds)[i].c_str(), kRowTypeNumber, row);
        const int32_t written = writer->Entry(table, row);
        if (written == 0 || written == kConvRetryListed) continue;
        if (written == kConvRowSkipped) {
            // In a transaction the failed statement spoilt the rest: walk again.
            if (connection->IsTransactional()) ret = kConvRowSkipped;
            continue;
        }
        app->ReportError(written, CONV_HERE, false, nullptr, nullptr);
        ret = written;
    }
    DeleteAssignWriter(std::move(writer));
    return ret;
}

// -------------------------------------------------------- ConvDBEntryStdAccPerson

ConvDBEntryStdAccPerson::ConvDBEntryStdAccPerson(ConvAppStd* appIn, CdDBConnection* connectionIn,
                                                 const char* value, int32_t module)
    : ConvDBEntryStdAcc(appIn, connectionIn, value, "ID") {
    defaultAccessKind.assign(1, '3');  // (a plain "3" trips a false -Wrestrict of g++ 12)
    moduleNumber = std::to_string(module);
    SetFixedField("SID_MODULE", moduleNumber.c_str(), kRowTypeNumber);
    AddKey("SID_MODULE", "");
}

// ----------------------------------------------------------- ConvDBEntryStdAccSch

std::unique_ptr<ConvDBEntryStdEnableRetry> ConvDBEntryStdAccSch::NewAssignWriter() {
    return std::unique_ptr<ConvDBEntryStdEnableRetry>(
        new (std::nothrow) ConvDBEntryStdSchAccAssign(StdApp(), connection));
}

int32_t ConvDBEntryStdAccSch::IsAssignValid(const char* value, const char* listName) {
    if (listName && std::strcmp(listName, "group") == 0 && (!value || !*value || value[0] == '-')) return 1;
    return ConvDBEntryStdAcc::IsAssignValid(value, listName);
}

// ---------------------------------------------------- ConvDBEntryStdSchAccAssign

int32_t ConvDBEntryStdSchAccAssign::Entry(const char* table, ConvRow& row) {
    if (table && std::strcmp(table, "TMPR_ACCESS_GROUP") == 0) {
        ConvRowItem* item = FindItem(row, "sid_assign");
        if (item && item->HasValue() && item->value->size() > 1 && (*item->value)[0] == '-') {
            item->value->erase(0, 1);
            return ConvDBEntryStd::Entry("TMPR_ACCESS_PRGROUP", row);
        }
    }
    return ConvDBEntryStd::Entry(table, row);
}
