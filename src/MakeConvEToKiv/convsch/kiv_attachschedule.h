// The writer of TT_ATTACH_SCHEDULE: one attached file of a schedule. The row
// takes the base-36 id; the file is copied from the owner's tree of the old
// store into schedule/<first 6 of the old id>/<new id>/ under its own name.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntryAttach.h"

class kiv_attachschedule : public ConvDBEntryAttach {
public:
    using ConvDBEntryAttach::ConvDBEntryAttach;

    void AppendKeys(std::string& text) const override;
    int32_t Entry(const char* table, ConvRow& row) override;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    void Clear() override;
    // 'N': "schedule/<oldId 1-6>/<newId>/"; 'E': the tree of KBN, then
    // "schedule/<ORG_ID>/<FILENAME>". Both empty without a FILENAME.
    int32_t GetFilePath(std::string& outPath, const ConvRow& row, char which) override;

protected:
    std::string newId;
    std::string oldId;
    const ConvRow* currentRow = nullptr;
};
