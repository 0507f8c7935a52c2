// The stage-A row writers: key map, fixed fields, number check, repair of a
// column named twice, retry list, settings, list and index rows.
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

#include <strings.h>

#include <cctype>
#include <cstring>
#include <new>
#include <string>
#include <unordered_set>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "base/comStr.h"
#include "database/CdDBConnection.h"

namespace {

// An integer text (Part of the flat store's own rule) with no blank or TAB
// anywhere: "12 " passes the integer rule but not this one.
bool IsStrictInteger(const char* text) {
    if (!comIsNumeric(text)) return false;
    return std::strpbrk(text, " \t") == nullptr;
}

std::string Lower(const std::string& text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

}  // namespace

// ---------------------------------------------------------------- ConvDBEntryStd

ConvDBEntryStd::ConvDBEntryStd(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntry(appIn, connectionIn) {}

ConvDBEntryStd::~ConvDBEntryStd() = default;

ConvAppStd* ConvDBEntryStd::StdApp() const { return static_cast<ConvAppStd*>(app); }

bool ConvDBEntryStd::IsContinuable(int32_t code) {
    if (code == kConvDuplicateColumn) return true;
    return ConvDBEntry::IsContinuable(code);
}

bool ConvDBEntryStd::IsDuplicateColumnError() {
    return connection && connection->GetStatus() == kDbStatusDuplicateColumn;
}

int32_t ConvDBEntryStd::Entry(const char* table, ConvRow& record) {
    const int32_t ret = ConvDBEntry::Entry(table, record);
    if (ret == kConvDuplicateColumn) return Reinsert(table, record);
    return ret;
}

int32_t ConvDBEntryStd::Reinsert(const char* table, ConvRow& record) {
    int32_t ret = connection->Rollback(kDbStatusDuplicateColumn);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    // The first item of a name stays; nested lists are left alone.
    try {
        std::unordered_set<std::string> seen;
        std::size_t kept = 0;
        for (std::size_t i = 0; i < record.size(); ++i) {
            auto& item = record[i];
            const bool drop = item && item->type != kRowTypeList && !seen.insert(Lower(item->name)).second;
            if (!drop) {
                if (kept != i) record[kept] = std::move(item);
                ++kept;
            }
        }
        record.resize(kept);
    } catch (const std::bad_alloc&) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "メモリー確保に失敗しました。[%d]", kDbNoMemory);
        return kDbNoMemory;
    }
    ret = ConvDBEntry::Entry(table, record);
    if (ret == kConvDuplicateColumn) {
        // Two keys that map to one column: no third try, the row is left out.
        app->ReportError(kConvRowSkipped, CONV_HERE, false, nullptr, nullptr);
        return kConvRowSkipped;
    }
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvDBEntryStd::CheckColumn(ConvRowItem& item) {
    if (IsNumberField(item.name.c_str())) item.type = kRowTypeNumber;
    if (item.type != kRowTypeNumber || !item.HasValue() || item.value->empty()) return 0;
    if (IsStrictInteger(item.Value())) return 0;
    ReportMessage(-1109, CONV_HERE, true,
                  "数値型の項目に文字列が指定されたため、登録を行いませんでした。field=[%s] value=[%s]",
                  item.name.c_str(), item.Value());
    return kConvRowSkipped;
}

int32_t ConvDBEntryStd::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (!name) return 0;
    const auto found = keyMap.find(name);
    if (found == keyMap.end()) return 0;
    return AddRawColumn(found->second.c_str(), value, type);
}

int32_t ConvDBEntryStd::BeforeCollect() {
    for (const auto& item : fixedFields) {
        if (!item) continue;
        const int32_t ret = item->HasValue() ? AddRawColumn(item->name.c_str(), item->Value(), item->type)
                                             : AddNullColumn(item->name.c_str(), item->type);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}

bool ConvDBEntryStd::IsNumberField(const char*) { return false; }

void ConvDBEntryStd::MapKey(const char* sourceKey, const char* column) {
    if (sourceKey && column) keyMap[sourceKey] = column;
}

void ConvDBEntryStd::SetFixedField(const char* name, const char* value, uint32_t type) {
    if (!name) return;
    for (auto& item : fixedFields) {
        if (item && strcasecmp(item->name.c_str(), name) == 0) {
            item->value = (value && *value) ? std::optional<std::string>(value) : std::nullopt;
            item->type = type;
            return;
        }
    }
    AddColumn(name, value, type, fixedFields);
}

// ----------------------------------------------------- ConvDBEntryStdEnableRetry

std::string ConvDBEntryStdEnableRetry::RetryKey(const char* sql, const char* const* paramArray, int paramCount) {
    // The same text with other bound values is another statement.
    std::string key = sql ? sql : "";
    for (int i = 0; paramArray && i < paramCount; ++i) {
        key += '\x1f';
        if (paramArray[i]) key += paramArray[i];
    }
    return key;
}

int32_t ConvDBEntryStdEnableRetry::Exec(const char* sql, const char* const* paramArray, int paramCount) {
    std::string key;
    try {
        key = RetryKey(sql, paramArray, paramCount);
    } catch (const std::bad_alloc&) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "メモリー確保に失敗しました。[%d]", kDbNoMemory);
        return kDbNoMemory;
    }
    if (StdApp()->IsInRetryList(key.c_str())) return kConvRetryListed;
    const int32_t ret = ConvDBEntryStd::Exec(sql, paramArray, paramCount);
    if (ret == kConvRowSkipped) StdApp()->AddToRetryList(key.c_str());
    if (ret != 0 && ret != kConvRowSkipped) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

// ------------------------------------------------------------- ConvDBEntryStdGen

ConvDBEntryStdGen::ConvDBEntryStdGen(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStd(appIn, connectionIn) {
    MapKey("row", "ROWCOUNT");
    MapKey("save", "save");
}

bool ConvDBEntryStdGen::IsNumberField(const char* name) {
    return name && (std::strcmp(name, "row") == 0 || std::strcmp(name, "save") == 0);
}

// ------------------------------------------------------- ConvDBEntryStdItemIndex

ConvDBEntryStdItemIndex::ConvDBEntryStdItemIndex(ConvAppStd* appIn, CdDBConnection* connectionIn,
                                                 const char* sourceKey, const char* column,
                                                 const char* sequence)
    : ConvDBEntryStd(appIn, connectionIn) {
    MapKey(sourceKey, column);
    if (column) AddKey(column, "");
    if (sequence && *sequence) {
        sequenceColumn = sequence;
        numbering = true;
    }
}

bool ConvDBEntryStdItemIndex::IsNumberField(const char* name) {
    return numbering && name && sequenceColumn == name;
}

int32_t ConvDBEntryStdItemIndex::CollectColumns(const char* table, ConvRow& row) {
    // An empty line still takes its number: the numbers are the lines' order.
    int32_t ret = ConvDBEntry::CollectColumns(table, row);
    if (ret != 0) return ret;
    if (numbering) {
        ++count;
        ret = AddRawColumn(sequenceColumn.c_str(), std::to_string(count).c_str(), kRowTypeNumber);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}

// ----------------------------------------------------------- ConvDBEntryStdIndex

ConvDBEntryStdIndex::ConvDBEntryStdIndex(ConvAppStd* appIn, CdDBConnection* connectionIn, int32_t moduleId,
                                         const char* subCode, int32_t lastId)
    : ConvDBEntryStd(appIn, connectionIn) {
    SetFixedField("SID_MODULE", std::to_string(moduleId).c_str(), kRowTypeNumber);
    SetFixedField("SUBCODE", subCode, kRowTypeText);
    SetFixedField("lastid", std::to_string(lastId).c_str(), kRowTypeNumber);
    AddKey("SID_MODULE", "");
    AddKey("SUBCODE", "");
}
