// An index file and one record directory per entry: the module's TM_INDEX row,
// then each record, walked again after a rollback while the retry list grows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStd.h"

class ConvStdComIndex;

class ConvExStdIndex : public ConvExStd {
public:
    ConvExStdIndex(ConvAppStd* app, bool transactional, const char* relativePath, const char* tableName,
                   int32_t moduleId, const char* subCode);

    // The index's id list only; records are read one at a time.
    std::unique_ptr<ConvStdCom> NewReader() override;
    // Writes the TM_INDEX row; 0 (nothing to convert) when the last id is 0.
    int32_t Prepare() override;
    int32_t ConvertAll(ConvDBEntryStd* writer) override;

    virtual std::unique_ptr<ConvDBEntryStdIndex> NewIndexWriter();
    virtual void DeleteIndexWriter(std::unique_ptr<ConvDBEntryStdIndex> writer);
    virtual int32_t GetLastId();
    virtual int32_t InsertRecord(ConvDBEntryStd* writer, ConvRow& record);

    int32_t ModuleId() const { return moduleId; }
    const std::string& SubCode() const { return subCode; }

protected:
    ConvStdComIndex* IndexReader() const;

    int32_t moduleId;
    std::string subCode;
    std::string indexTable = "TM_INDEX";
};
