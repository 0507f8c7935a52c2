// The row writer: turns one row into one INSERT (or UPDATE) with quoted literals,
// bare numbers and up to eight bound parameters, on the connection it was given.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDB.h"

class ConvDBEntry : public ConvDB {
public:
    // Statement parameters (type 2 columns) one statement may carry.
    static constexpr int kMaxParams = 8;

    using ConvDB::ConvDB;
    ~ConvDBEntry() override;

    // Writes one row into table; the result is that of ConvDB::Exec.
    virtual int32_t Entry(const char* table, ConvRow& row);
    // Hook before an item is used; a non-zero result stops the row.
    virtual int32_t CheckColumn(ConvRowItem& item);
    // Adds one column (or, in update mode, one assignment) to the statement.
    virtual int32_t AddColumnValue(const char* name, const char* value, uint32_t type);
    // An item without a value: its column is left out so that the table's default
    // applies; only the key of that name is emptied.
    virtual int32_t AddNullColumn(const char* name, uint32_t type);
    virtual void Clear();
    // Raw condition text that an UPDATE adds behind the corporate condition.
    virtual void AddWhere(const char* text);
    virtual void SetUpdateMode(bool flag);
    // Clear, BeforeCollect, then every item of row but nested lists.
    virtual int32_t CollectColumns(const char* table, ConvRow& row);
    // Hook at the start of CollectColumns; a non-zero result ends it.
    virtual int32_t BeforeCollect();

    const std::string& GetSql() const { return sql; }
    bool IsUpdateMode() const { return updateMode; }
    int GetParamCount() const { return static_cast<int>(paramCount); }
    // The file the rows come from, named when a row has to be left out.
    void SetSourceFile(std::string path) { sourceFile = std::move(path); }

protected:
    std::string sourceFile;
    std::string sql;
    std::string columns;      // INSERT column list; one column's scratch in update mode
    std::string values;       // INSERT value list; scratch in update mode
    std::string assignments;  // "name=value" pairs of an UPDATE
    std::string whereText;
    // Copies of the type 2 values, bound as $1.. in order.
    std::array<std::string, kMaxParams> params;
    uint32_t paramCount = 0;
    bool updateMode = false;
};
