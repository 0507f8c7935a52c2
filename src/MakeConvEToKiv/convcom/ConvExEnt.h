// One target table's conversion: the rows of one query on the working database,
// each handed to a writer on the target database, with counts, progress and the
// rule of when the table is finished or given up.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDB.h"
#include "MakeConvEToKiv/convcom/ConvDBEntry.h"
#include "MakeConvEToKiv/convcom/ConvDBRead.h"

class ConvApp;
class CdDBConnection;

class ConvExEnt {
public:
    // tableName is the target table and the base of the SQL file names; keyNames
    // are the columns that name a row in the writer's messages.
    ConvExEnt(ConvApp* app, bool useTransaction, const char* tableName,
              std::initializer_list<const char*> keyNames = {});
    virtual ~ConvExEnt();
    ConvExEnt(const ConvExEnt&) = delete;
    ConvExEnt& operator=(const ConvExEnt&) = delete;

    // LoadSql, Open, Convert. A failure of the first two gives -8000003, one of
    // Convert its own code.
    virtual int32_t Run();
    virtual void Close();
    // Reads "<tableName>.sql"; members whose query has another name override it.
    virtual int32_t LoadSql();
    // Reads sql/<module>/<name>.sql into sqlText: 0, or -1 after a report.
    virtual int32_t ReadSqlFile(const char* name);
    // Counts the rows, then runs the main query on the working database.
    virtual int32_t Open();
    // "<tableName>_count.sql" into totalRows; no such file leaves it at -1.
    virtual int32_t CountRows();
    // Every row through the writer: 0, or the code that stopped the table.
    virtual int32_t Convert();
    virtual int32_t SetupWriter(ConvDBEntry& writer);
    // 0 written, 1 left out (reported), anything else stops the table.
    virtual int32_t ConvertRow(ConvDBEntry& writer, ConvRow& row);
    // Hook after the last row.
    virtual int32_t Finish(ConvDBEntry& writer);
    virtual std::unique_ptr<ConvDBRead> NewReader();
    virtual void DeleteReader(std::unique_ptr<ConvDBRead>& target);
    // A plain ConvDBEntry on the target connection; members with a writer of
    // their own override this.
    virtual std::unique_ptr<ConvDBEntry> NewWriter();
    virtual void DeleteWriter(std::unique_ptr<ConvDBEntry>& writer);
    // Every commitInterval rows (and at the end when force is set): commit when
    // transactional, then progress 4, or 6 once the count is reached.
    virtual int32_t Checkpoint(CdDBConnection* connection, int32_t rowCount, bool force);
    virtual int32_t RollbackWriter(CdDBConnection* connection, int32_t code);

    const char* TableName() const { return tableName.c_str(); }
    int32_t TotalRows() const { return totalRows; }
    int32_t FailedRows() const { return failedRows; }
    const std::string& SqlText() const { return sqlText; }
    void SetNoContinue(bool flag) { noContinue = flag; }

protected:
    ConvApp* app;
    std::unique_ptr<ConvDBRead> reader;
    CdDBConnection* readConnection;
    CdDBConnection* writeConnection;
    std::string sqlText;
    const std::string tableName;
    bool useTransaction;
    bool noContinue = false;
    int32_t totalRows = -1;
    int32_t failedRows = 0;
    ConvDB::KeyMap keys;
};

// A member whose rows go through a writer class of its own.
template <class Writer>
class ConvExEntWith : public ConvExEnt {
public:
    using ConvExEnt::ConvExEnt;

    std::unique_ptr<ConvDBEntry> NewWriter() override {
        return std::make_unique<Writer>(app, writeConnection);
    }
};

// A member of a target table that several modules share: its query has a file
// of its own ("<table>_<module>"), while the count file stays the table's.
template <class Writer>
class ConvExEntShared : public ConvExEntWith<Writer> {
public:
    ConvExEntShared(ConvApp* app, bool useTransaction, const char* tableName, const char* sqlFile,
                    std::initializer_list<const char*> keyNames)
        : ConvExEntWith<Writer>(app, useTransaction, tableName, keyNames), sqlFile_(sqlFile) {}

    int32_t LoadSql() override;

private:
    const char* sqlFile_;
};

// The report and the code of a query file that can't be read.
int32_t ReportSqlFileLoad(ConvApp* app, int32_t code, const char* source, int line);

template <class Writer>
int32_t ConvExEntShared<Writer>::LoadSql() {
    const int32_t ret = this->ReadSqlFile(sqlFile_);
    if (ret != 0) return ReportSqlFileLoad(this->app, ret, CONV_HERE);
    return 0;
}
