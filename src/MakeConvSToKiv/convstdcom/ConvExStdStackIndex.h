// An owner index (users or groups) and one file per owner: each owner is walked
// as a plain conversion of its own file and committed as one unit.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvExStd.h"

class ConvStdComIndex;

class ConvExStdStackIndex : public ConvExStd {
public:
    // fileName lies in each owner's directory beside the owner index.
    ConvExStdStackIndex(ConvAppStd* app, bool transactional, const char* fileName, const char* tableName,
                        const char* ownerIndexPath);
    ~ConvExStdStackIndex() override;

    // The owner index from the application's cache.
    int32_t OpenSource() override;
    void CloseSource() override;
    // Every owner in index order; an unreadable owner is passed over.
    int32_t Convert() override;
    std::unique_ptr<ConvStdCom> NewReader() override;
    // Owners commit as a whole, never record by record.
    int32_t CommitBatch(CdDBConnection* connection, int32_t count, bool last) override;
    // In a transaction only 0: a left-out row gives up the owner's walk.
    bool IsAcceptable(int32_t code) override;
    // SID_USER: the owner's id, a fixed field and a message key.
    int32_t SetUpWriter(ConvDBEntryStd* writer) override;

    virtual int32_t CommitOwner(CdDBConnection* connection, int32_t count, bool last);
    // The owner record's `ID`, or null.
    virtual const char* GetOwnerId(const ConvRow& record);
    // Reads the current owner's file.
    virtual int32_t OpenOwner();
    virtual bool IsOwnerOpen(int32_t code);

    const std::string& OwnerId() const { return ownerId; }
    const std::string& OwnerDirectory() const { return ownerDirectory; }

protected:
    // One owner: open, convert, walk again after a rollback, commit. 1 when the
    // owner is given up, 0 when done, others stop the conversion.
    int32_t ConvertOwner(const ConvRow& owner, int32_t count);
    // Reads the owner index itself instead of taking the cached one: with
    // loadRecords every owner's record, for walks over the records.
    int32_t OpenOwnIndex(bool loadRecords);

    ConvStdComIndex* ownerIndex = nullptr;
    std::string fileName;
    std::string ownerIndexPath;
    std::string ownerDirectory;  // the index path's directory, without its slash
    std::string ownerId;
    // The owners are the index's loaded records, not its bare id list.
    bool walkRecords = false;
    std::unique_ptr<ConvStdComIndex> ownIndex;  // when read by OpenOwnIndex
};

// The administrators of each group: data/group/<id>/<module>/admin.
class ConvExStdManageGroup : public ConvExStdStackIndex {
public:
    ConvExStdManageGroup(ConvAppStd* app, const char* module, const char* tableName);

    // Reads its own, fully loaded group index.
    int32_t OpenSource() override;
    std::unique_ptr<ConvStdCom> NewReader() override;
    int32_t SetUpWriter(ConvDBEntryStd* writer) override;
};

// A user's ordered list of ids, numbered in SEQNO; one transaction per user.
class ConvExStdCSVIndex : public ConvExStdStackIndex {
public:
    ConvExStdCSVIndex(ConvAppStd* app, const char* fileName, const char* tableName, const char* ownerIndexPath);
    std::unique_ptr<ConvStdCom> NewReader() override;
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};
