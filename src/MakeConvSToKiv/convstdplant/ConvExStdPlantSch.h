// The facilities' reservations (data/setubi/plant/<id>/schedule): schedule
// entries owned by a facility, with their dates and attached files. The owners
// are the ids of the store's facility index, so a facility whose own row was
// left out, or whose record is missing, still has its reservations converted.
#pragma once

#include <memory>

#include "MakeConvSToKiv/convstdsch/ConvDBEntryStdSchSch.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSch.h"

// The reservation row: the schedule entry's keys, with SID_PLANT as owner.
class tt_sch_plant : public ConvDBEntryStdSchSch {
public:
    tt_sch_plant(ConvAppStd* app, CdDBConnection* connection);
};

class ConvExStdPlantSch : public ConvExStdSchSch {
public:
    explicit ConvExStdPlantSch(ConvAppStd* app);

    // Reads its own facility index, the id list only.
    int32_t OpenSource() override;
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
    // SID_PLANT: the owner's id, a fixed field and a message key.
    int32_t SetUpWriter(ConvDBEntryStd* writer) override;
    int32_t SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem) override;
};
