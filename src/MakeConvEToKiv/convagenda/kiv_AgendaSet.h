// Writer of the minutes' common settings: the target installation has the row
// already, so the migrated values update it, stamped with the conversion's time.
#pragma once

#include <cstdint>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class kiv_AgendaSet : public ConvDBEntry {
public:
    // Always in update mode.
    kiv_AgendaSet(ConvApp* app, CdDBConnection* connection);
    ~kiv_AgendaSet() override;

    // The row's columns, then "updtime" with the current UTC time.
    int32_t CollectColumns(const char* table, ConvRow& row) override;
};
