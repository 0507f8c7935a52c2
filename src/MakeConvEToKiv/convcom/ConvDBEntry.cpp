// The row writer: collects a row's columns into an INSERT or an UPDATE and runs it.
#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

#include <strings.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "database/CdDB.h"
#include "database/CdDBConnection.h"

ConvDBEntry::~ConvDBEntry() = default;

int32_t ConvDBEntry::CheckColumn(ConvRowItem&) { return 0; }

int32_t ConvDBEntry::BeforeCollect() { return 0; }

int32_t ConvDBEntry::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (!name) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    if (!value) value = "";
    if (type == kRowTypeLong && paramCount >= kMaxParams) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, "[text count=%d]", static_cast<int>(paramCount));
        return kDbBadArgument;
    }
    const std::size_t length = std::strlen(value);
    try {
        if (!columns.empty()) {
            columns += ',';
            values += ',';
        }
        columns += name;
        if (type == kRowTypeNumber) {
            values += *value ? value : "NULL";
        } else if (type == kRowTypeLong) {
            params[paramCount++] = value;
            values += '$';
            values += std::to_string(paramCount);
        } else {
            // Escaped in place: a quote doubles, so the text needs at most twice its length.
            values += '\'';
            const std::size_t at = values.size();
            values.resize(at + length * 2 + 1);
            EscapeLiteral(value, values.data() + at, nullptr, '\0');
            values.resize(at + std::strlen(values.data() + at));
            values += '\'';
        }
        if (updateMode) {
            if (!assignments.empty()) assignments += ',';
            assignments += columns + "=" + values;
            columns.clear();
            values.clear();
        }
        // The message keys show the row's values as they pass.
        const std::size_t nameLength = std::strlen(name);
        for (auto& [key, keyValue] : keys)
            if (key.size() == nameLength && strcasecmp(key.c_str(), name) == 0) keyValue = value;
    } catch (const std::bad_alloc&) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "[errno=%d] [size=%d]", errno,
                         static_cast<int>(length * 2 + 1));
        return kDbNoMemory;
    }
    return 0;
}

int32_t ConvDBEntry::AddNullColumn(const char* name, uint32_t) {
    if (!name) return 0;
    const std::size_t nameLength = std::strlen(name);
    for (auto& [key, keyValue] : keys)
        if (key.size() == nameLength && strcasecmp(key.c_str(), name) == 0) keyValue.clear();
    return 0;
}

void ConvDBEntry::Clear() {
    sql.clear();
    columns.clear();
    values.clear();
    assignments.clear();
    whereText.clear();
    for (std::string& param : params) param.clear();
    paramCount = 0;
}

void ConvDBEntry::AddWhere(const char* text) {
    if (text) whereText += text;
}

void ConvDBEntry::SetUpdateMode(bool flag) { updateMode = flag; }

int32_t ConvDBEntry::CollectColumns(const char*, ConvRow& row) {
    Clear();
    // A message names only values of the row it is about.
    for (auto& entry : keys) entry.second.clear();
    int32_t ret = BeforeCollect();
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    for (auto& item : row) {
        if (!item || item->type == kRowTypeList) continue;
        ret = CheckColumn(*item);
        if (ret == 0)
            ret = item->HasValue() ? AddColumnValue(item->name.c_str(), item->Value(), item->type)
                                   : AddNullColumn(item->name.c_str(), item->type);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}

int32_t ConvDBEntry::Entry(const char* table, ConvRow& row) {
    if (!connection || !table) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    title = table;
    int32_t ret = CollectColumns(table, row);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    // Bad input can leave a row without a column to write; the statement would
    // not parse, so the row is left out and the run goes on.
    if (updateMode ? assignments.empty() : columns.empty()) {
        if (sourceFile.empty())
            return ReportRowMessage(row, kConvRowSkipped, CONV_HERE, true, "登録する値がないため、スキップしました。");
        return ReportRowMessage(row, kConvRowSkipped, CONV_HERE, true, "登録する値がないため、スキップしました。ファイル[%s]",
                                sourceFile.c_str());
    }
    if (updateMode) {
        sql = "UPDATE " + title + " SET " + assignments + " WHERE SID_CORPORATE=" + std::to_string(GetCorporateId());
        if (!whereText.empty()) sql += " AND " + whereText;
    } else {
        sql = "INSERT INTO " + title + " (" + columns + ") VALUES (" + values + ")";
    }
    std::array<const char*, kMaxParams> paramArray{};
    for (uint32_t i = 0; i < paramCount; ++i) paramArray[i] = params[i].c_str();
    ret = Exec(sql.c_str(), paramArray.data(), static_cast<int>(paramCount));
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}
