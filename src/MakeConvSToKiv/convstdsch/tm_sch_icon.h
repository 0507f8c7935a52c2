// The icon master: data/schedule/icon/<id>/info, numbered in index order, with
// the name of the icon's file from its attachment lists.
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

class tm_sch_icon : public ConvDBEntryStdItemIndex {
public:
    tm_sch_icon(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
    // The record's fields and the running number, then every entry of every
    // nested list as a text field, which the key map sends to its column.
    int32_t CollectColumns(const char* table, ConvRow& record) override;
};
