// The writer of most target tables: the row's creation and update times move
// from Japan time to UTC before the row is written; a row whose times can't be
// shifted is left out with a warning.
#pragma once

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

// A row whose value could not be converted; the row is dropped.
inline constexpr int32_t kConvValueDropped = -8000001;

class ConvDBEntryTimes : public ConvDBEntry {
public:
    using ConvDBEntry::ConvDBEntry;
    int32_t Entry(const char* table, ConvRow& row) override;
};
