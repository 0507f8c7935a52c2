// Access rights of a facility or a user's schedule: the `_ALL` row with the
// default access kind, then one row per group and per user of the record's
// parallel lists (`group`/`gaccess`, `user`/`uaccess`).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

class ConvDBEntryStdAcc : public ConvDBEntryStd {
public:
    // keyValue: the owner's id, written into keyColumn of every row.
    ConvDBEntryStdAcc(ConvAppStd* app, CdDBConnection* connection, const char* keyValue, const char* keyColumn);
    ~ConvDBEntryStdAcc() override;

    // <table>_ALL, then <table>_GROUP and <table>_USER.
    int32_t Entry(const char* table, ConvRow& record) override;
    bool IsNumberField(const char* name) override;

    // One row per pair of listName and accessListName entries, until one list
    // ends; 0 when either list is missing.
    virtual int32_t InsertAssignList(const char* table, ConvRow& record, const char* listName,
                                     const char* accessListName);
    // 1 when the id is in the users' or groups' index (listName is the kind), 0
    // to leave the pair out, negative to stop.
    virtual int32_t IsAssignValid(const char* value, const char* listName);
    // The key column and value as a fixed field.
    virtual int32_t AddKeyField();
    virtual std::unique_ptr<ConvDBEntryStdEnableRetry> NewAssignWriter();
    virtual void DeleteAssignWriter(std::unique_ptr<ConvDBEntryStdEnableRetry> writer);
    virtual int32_t SetUpAssignWriter(ConvDBEntryStdEnableRetry& writer);

    const std::string& DefaultAccessKind() const { return defaultAccessKind; }

protected:
    std::string keyValue;
    std::string keyColumn;
    std::string defaultAccessKind = "1";
    // SID_MODULE of the person classes; empty for the plain rights.
    std::string moduleNumber;
};

// Personal access rights of a module: key column ID, default access kind 3,
// SID_MODULE in every row.
class ConvDBEntryStdAccPerson : public ConvDBEntryStdAcc {
public:
    ConvDBEntryStdAccPerson(ConvAppStd* app, CdDBConnection* connection, const char* keyValue,
                            int32_t moduleNumber);
};

// Personal schedule access rights: a negative `group` entry is a personal group.
class ConvDBEntryStdAccSch : public ConvDBEntryStdAccPerson {
public:
    using ConvDBEntryStdAccPerson::ConvDBEntryStdAccPerson;
    std::unique_ptr<ConvDBEntryStdEnableRetry> NewAssignWriter() override;
    // A `group` entry that is missing or negative is valid without looking.
    int32_t IsAssignValid(const char* value, const char* listName) override;
};

// The assignment rows of personal schedule rights: a negative group id goes to
// TMPR_ACCESS_PRGROUP as its absolute value.
class ConvDBEntryStdSchAccAssign : public ConvDBEntryStdEnableRetry {
public:
    using ConvDBEntryStdEnableRetry::ConvDBEntryStdEnableRetry;
    int32_t Entry(const char* table, ConvRow& row) override;
};
