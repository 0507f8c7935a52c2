// A user's own schedule (data/user/<id>/schedule), with the user's personal
// access rights (schacc) written before the entries.
#pragma once

#include "MakeConvSToKiv/convstdsch/ConvExStdSchSch.h"

class ConvExStdSchSchUser : public ConvExStdSchSch {
public:
    explicit ConvExStdSchSchUser(ConvAppStd* app);

    // Per user: the access rights, committed on their own; 1 lets the entries follow.
    int32_t Prepare() override;
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
    int32_t SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem) override;
};
