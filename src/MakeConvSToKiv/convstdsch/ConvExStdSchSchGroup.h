// A group's schedule (data/group/<id>/schedule) for every group of the group
// index whose own record could be read.
#pragma once

#include <memory>

#include "MakeConvSToKiv/convstdsch/ConvExStdSchSch.h"

class ConvExStdSchSchGroup : public ConvExStdSchSch {
public:
    explicit ConvExStdSchSchGroup(ConvAppStd* app);

    // Reads its own, fully loaded group index.
    int32_t OpenSource() override;
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
    // SID_GROUP: the owner's id, a fixed field and a message key.
    int32_t SetUpWriter(ConvDBEntryStd* writer) override;
    int32_t SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem) override;
};
