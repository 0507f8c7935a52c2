// The schedule entries of one kind of owner: each owner's `schedule` file,
// each object a main row, a row per listed date and a row per attached file.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvDBEntryStd;
struct ConvRowItem;

class ConvExStdSchSch : public ConvExStdStackIndex {
public:
    ConvExStdSchSch(ConvAppStd* app, const char* fileName, const char* mainTable, const char* ownerIndexPath);
    ~ConvExStdSchSch() override;

    // The main row, then its dates and attachments; a main row that is left out
    // takes no detail rows with it.
    int32_t ConvertRecord(ConvDBEntryStd* writer, ConvRow& record) override;

    // The record's `dates` (deldates 0) and `deldates` (deldates 1); the last
    // list of each name counts.
    virtual int32_t InsertDates(ConvRow& record, const ConvRowItem& idItem);
    // Owner column(s) and ID as fixed fields, in that order; each owner kind
    // puts its own columns in front and then calls this.
    virtual int32_t SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem);
    // One row per valid date of list, in list order; invalid and empty entries
    // are passed over, a date met again in the same list too.
    virtual int32_t InsertDateList(ConvDBEntryStd* writer, const char* table, const ConvRowItem* list,
                                   const char* flag);
    virtual int32_t InsertAttachments(ConvRow& record, const ConvRowItem& idItem);

    const std::string& AttachTable() const { return attachTable; }
    const std::string& DateTable() const { return dateTable; }
    const std::string& OwnerColumn() const { return ownerColumn; }

protected:
    std::string attachTable;
    std::string dateTable;
    std::string ownerColumn;
};
