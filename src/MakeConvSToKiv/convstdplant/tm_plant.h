// Writers of the facility masters: TM_PLT_GROUP and TM_PLANT rows out of the
// `info` records behind data/setubi/group/index and data/setubi/plant/index.
#pragma once

#include <cstdint>

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

// A facility group, numbered in seqno by the rows that reach the table.
class tm_plt_group : public ConvDBEntryStdItemIndex {
public:
    tm_plt_group(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
};

// A facility. Its seqno is the record's place in the index: the conversion
// raises the count once per record read (RaiseCount), so a record walked again
// after a rollback keeps its number and one left out still takes one.
class tm_plant : public ConvDBEntryStdItemIndex {
public:
    // Longest memo kept, in characters.
    static constexpr int kMemoMax = 2047;

    tm_plant(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
    // The record's fields, then managegroup (the first entry of the record's
    // `managegroup` list, or "0"), then seqno with the current count.
    int32_t CollectColumns(const char* table, ConvRow& record) override;
    // memo is cut to kMemoMax characters with a warning; a plain `managegroup`
    // field is passed over, the column comes from the list alone.
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;

    void RaiseCount() { ++count; }
};
