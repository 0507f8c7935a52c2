// The writers of schedule entries: one record of an owner's `schedule` file
// becomes one row of the owner's entry table. The record keys that are carried
// over are the same for every owner; the owner column(s) come as fixed fields.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

class ConvDBEntryStdSchSch : public ConvDBEntryStd {
public:
    // Characters a memo keeps; a longer one is cut with a warning.
    static constexpr int kMemoMax = 2047;

    ConvDBEntryStdSchSch(ConvAppStd* app, CdDBConnection* connection, const char* ownerColumn);
    ~ConvDBEntryStdSchSch() override;

    bool IsNumberField(const char* name) override;
    // `memo` is cut to kMemoMax characters; a `startdate` that isn't a date
    // leaves the row out (1) with a warning; all else goes through the key map.
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    // The record's columns, then `agenda` = "1" when its first `agnids` list
    // holds any entry: the linked minutes themselves are not carried over.
    int32_t CollectColumns(const char* table, ConvRow& record) override;

    // YYYYMMDD at the head of text: eight digits forming a real calendar day,
    // the 29th of February in leap years only. Anything behind them is not read.
    static bool IsValidDate(const char* text);

    const std::string& OwnerColumn() const { return ownerColumn; }

protected:
    // Puts the fixed fields that the record lacks into it, so that a message
    // built from the record names the owner too.
    void AddOwnerToRecord();
    int32_t CollectRecord(const char* table, ConvRow& row);

    ConvRow* record = nullptr;  // the record being written, for messages
    std::string ownerColumn;
};

// A user's own entries, with the user's alarm and approval state.
class ttpr_schedule : public ConvDBEntryStdSchSch {
public:
    ttpr_schedule(ConvAppStd* app, CdDBConnection* connection);
};

// A group's entries.
class tt_sch_group : public ConvDBEntryStdSchSch {
public:
    tt_sch_group(ConvAppStd* app, CdDBConnection* connection);
};

// The entries of a user's personal group; the user is the second owner column.
class ttpr_sch_group : public ConvDBEntryStdSchSch {
public:
    ttpr_sch_group(ConvAppStd* app, CdDBConnection* connection);
};
