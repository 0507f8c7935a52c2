// One table's conversion from the flat store into the working database: how the
// source is walked and how a row, a record and a run are committed. Concrete
// conversions choose a frame, give paths and tables, and replace a few steps.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "MakeConvEToKiv/convcom/ConvRow.h"

class ConvAppStd;
class ConvDBEntryStd;
class ConvStdCom;
class CdDBConnection;

// The driver calls OpenSource, then Convert, then destroys the object, which
// closes the source. Results: 0 done, 1 left out (reported, tolerated), 2 a
// statement of the retry list, negative failures that stop the batch.
class ConvExStd {
public:
    // relativePath lies below the flat store's root.
    ConvExStd(ConvAppStd* app, bool transactional, const char* relativePath, const char* tableName);
    virtual ~ConvExStd();
    ConvExStd(const ConvExStd&) = delete;
    ConvExStd& operator=(const ConvExStd&) = delete;

    // Makes the reader and reads: 0 or a negative failure.
    virtual int32_t OpenSource();
    virtual int32_t Convert();
    virtual void CloseSource();
    virtual int32_t ConvertAll(ConvDBEntryStd* writer);
    virtual int32_t ConvertRecord(ConvDBEntryStd* writer, ConvRow& record);
    virtual std::unique_ptr<ConvStdCom> NewReader();
    virtual void DeleteReader(std::unique_ptr<ConvStdCom> reader);
    // 1 goes on, 0 ends Convert with nothing done, other results fail.
    virtual int32_t Prepare();
    virtual std::unique_ptr<ConvDBEntryStd> NewWriter();
    virtual void DeleteWriter(std::unique_ptr<ConvDBEntryStd> writer);
    // Fixed fields and the key map of the writer.
    virtual int32_t SetUpWriter(ConvDBEntryStd* writer);
    // Commits a transactional conversion at every multiple of the commit
    // interval (0 included) and at the last call.
    virtual int32_t CommitBatch(CdDBConnection* connection, int32_t count, bool last);
    virtual int32_t RollBack(CdDBConnection* connection, int32_t code);
    virtual void ClearRetryList();
    virtual bool HasRetryList();
    virtual bool IsAcceptable(int32_t code);

    const std::string& SourcePath() const { return sourcePath; }
    const std::string& TableName() const { return tableName; }
    bool IsTransactional() const { return transactional; }
    ConvStdCom* Reader() const { return reader.get(); }
    int32_t ReadResult() const { return readResult; }

protected:
    // Marks the run as having left something out (status "2").
    void NoteLeftOut();
    // The size of the retry list, to see whether a walk found a new statement.
    std::size_t RetryListSize() const;

    ConvAppStd* app;
    std::string rootPath;
    std::string sourcePath;
    std::string tableName;
    bool transactional;
    CdDBConnection* connection;
    std::unique_ptr<ConvStdCom> reader;
    int32_t readResult = 0;
};

// A list of text lines: a row per line, the line number (from 1) as `ID`.
class ConvExStdStrIndex : public ConvExStd {
public:
    using ConvExStd::ConvExStd;
    std::unique_ptr<ConvStdCom> NewReader() override;
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};

// The module-wide administrators: data/group/nogroup/<module>/admin, an id a line.
class ConvExStdManageAll : public ConvExStd {
public:
    ConvExStdManageAll(ConvAppStd* app, const char* module, const char* tableName);
    std::unique_ptr<ConvStdCom> NewReader() override;
    int32_t SetUpWriter(ConvDBEntryStd* writer) override;
};
