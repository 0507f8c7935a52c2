// The facilities (data/setubi/plant/index) with their access rights (pltacc),
// one transaction per facility: a right that fails rolls the facility back and
// the record is walked again without that statement.
#pragma once

#include <cstdint>
#include <memory>

#include "MakeConvSToKiv/convstdcom/ConvExStdIndex.h"

class tm_plant;

class ConvExStdPlantPlt : public ConvExStdIndex {
public:
    // Always transactional; writes TM_INDEX (3, "001") first.
    explicit ConvExStdPlantPlt(ConvAppStd* app);

    // The TM_INDEX row, committed at once: a first facility that is rolled
    // back must not take it along. Over an index row of an earlier run the
    // transaction is spoilt and the commit fails, which stops the step.
    int32_t Prepare() override;
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
    void DeleteWriter(std::unique_ptr<ConvDBEntryStd> writer) override;
    // Empties the retry list and gives the next record its number: called once
    // per record read, never for the second walk of a record.
    void ClearRetryList() override;
    // The TM_PLANT row, then the facility's rights.
    int32_t InsertRecord(ConvDBEntryStd* writer, ConvRow& record) override;
    // The first object of data/setubi/plant/<id>/pltacc into TM_ACCPLT_ALL,
    // _GROUP and _USER. A facility without a rights file has no rights rows.
    virtual int32_t InsertRights(const char* plantId);

private:
    tm_plant* plantWriter = nullptr;  // owned by the frame while it converts
};
