// Writer of the minutes' topics: numbers the topics of each set of minutes
// from 1 and stores the memo as rich text, keeping the plain memo under
// "format".
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class kiv_agendatopic : public ConvDBEntry {
public:
    using ConvDBEntry::ConvDBEntry;
    ~kiv_agendatopic() override;

    // The row's columns, then "memo": memo and format merged into HTML. A
    // failed merge drops the row (1).
    int32_t CollectColumns(const char* table, ConvRow& row) override;
    // "agnid" adds "SEQNO", the topic's place within its minutes; the source
    // "memo" goes to "format", the source "format" isn't written.
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;

    int32_t GetSeqno() const { return seqno; }

protected:
    std::string lastAgnid;
    std::string richText;
    int32_t seqno = 0;
};
