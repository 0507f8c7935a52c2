// The writer of TM_SCH_ICON: the icon's file is copied first, and only a row
// whose file arrived is inserted; migrated icons are numbered from 48, after
// the installation's own.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntryAttach.h"

class kiv_schicon : public ConvDBEntryAttach {
public:
    // The first number of a migrated icon.
    static constexpr int32_t kFirstSeqno = 48;

    using ConvDBEntryAttach::ConvDBEntryAttach;

    // Times to UTC, the copy of "schedule/icon/<ID>/<filename>", then the
    // INSERT. A file that can't be copied leaves the row out with the copy's
    // result (1 warning, -80 stop).
    int32_t Entry(const char* table, ConvRow& row) override;
    // "seqno" takes the next number in the order of the rows.
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    int32_t GetFilePath(std::string& outPath, const ConvRow& row, char which) override;

protected:
    int32_t nextSeqno = kFirstSeqno;
};
