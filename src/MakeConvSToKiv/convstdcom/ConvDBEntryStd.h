// The row writers of stage A: one flat-store record becomes one INSERT into a
// working table, through a map of record keys to columns. Keys the map doesn't
// name are not migrated; numeric keys are checked; fixed fields head every row;
// a column named twice is repaired by one rollback and one retry.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class ConvAppStd;

// Results of the stage-A writers besides 0, 1 (row left out, reported) and
// negative failures: the statement is in the retry list and was not run.
inline constexpr int32_t kConvRetryListed = 2;

class ConvDBEntryStd : public ConvDBEntry {
public:
    ConvDBEntryStd(ConvAppStd* app, CdDBConnection* connection);
    ~ConvDBEntryStd() override;

    // The duplicate-column code 3 is always tolerated; all else as the base.
    bool IsContinuable(int32_t code) override;
    // True when the last statement named a column twice (status 264).
    bool IsDuplicateColumnError() override;
    // Writes one record; a column named twice leads to Reinsert.
    int32_t Entry(const char* table, ConvRow& record) override;
    // A numeric item must hold an integer text without blanks; otherwise the row
    // is left out (1) with a report naming the field and the value.
    int32_t CheckColumn(ConvRowItem& item) override;
    // Adds the mapped column of a record key; an unmapped key adds nothing (0).
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    // Puts the fixed fields at the head of the statement, unmapped.
    int32_t BeforeCollect() override;
    // Whether the record key holds a number; none does here.
    virtual bool IsNumberField(const char* name);
    // Rolls back, drops every later item of a name already met, and writes the
    // record once more; no third try.
    virtual int32_t Reinsert(const char* table, ConvRow& record);

    // Set-up by the conversions.
    void MapKey(const char* sourceKey, const char* column);
    // Appends a fixed field, or replaces the value of the one of that name.
    void SetFixedField(const char* name, const char* value, uint32_t type);
    const std::map<std::string, std::string>& KeyMap() const { return keyMap; }
    const ConvRow& FixedFields() const { return fixedFields; }
    ConvAppStd* StdApp() const;

protected:
    // The base's column adder, past the key map.
    int32_t AddRawColumn(const char* name, const char* value, uint32_t type) {
        return ConvDBEntry::AddColumnValue(name, value, type);
    }

    std::map<std::string, std::string> keyMap;
    ConvRow fixedFields;
};

// Statements that failed with a tolerated result are remembered in the
// application's retry list; on the next walk over the same record they answer 2
// without running, so a walk after a rollback passes over them.
class ConvDBEntryStdEnableRetry : public ConvDBEntryStd {
public:
    using ConvDBEntryStd::ConvDBEntryStd;
    int32_t Exec(const char* sql, const char* const* paramArray = nullptr, int paramCount = 0) override;

    // The retry list's text of a statement: the SQL and its bound values.
    static std::string RetryKey(const char* sql, const char* const* paramArray, int paramCount);
};

// Setting tables: `row` becomes ROWCOUNT, `save` stays; both are numeric.
class ConvDBEntryStdGen : public ConvDBEntryStd {
public:
    ConvDBEntryStdGen(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
};

// One column from a list file, with an optional running number (from 1) in a
// sequence column behind the row's other fields.
class ConvDBEntryStdItemIndex : public ConvDBEntryStd {
public:
    // sequenceColumn may be null: no numbering.
    ConvDBEntryStdItemIndex(ConvAppStd* app, CdDBConnection* connection, const char* sourceKey, const char* column,
                            const char* sequenceColumn);
    bool IsNumberField(const char* name) override;
    // The base's walk, then the sequence column; only rows that get that far count.
    int32_t CollectColumns(const char* table, ConvRow& row) override;

    int32_t Count() const { return count; }

protected:
    std::string sequenceColumn;
    bool numbering = false;
    int32_t count = 0;
};

// The TM_INDEX row of a module: only its fixed fields.
class ConvDBEntryStdIndex : public ConvDBEntryStd {
public:
    ConvDBEntryStdIndex(ConvAppStd* app, CdDBConnection* connection, int32_t moduleId, const char* subCode,
                        int32_t lastId);
};
