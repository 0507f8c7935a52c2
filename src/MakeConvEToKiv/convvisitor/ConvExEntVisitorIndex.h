// The visitor module's index master rows.
#pragma once

#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convcom/kiv_index.h"

class ConvExEntVisitorIndex : public ConvExEntShared<kiv_index> {
public:
    explicit ConvExEntVisitorIndex(ConvApp* app, bool useTransaction = false)
        : ConvExEntShared(app, useTransaction, "TM_INDEX", "TM_INDEX_Visitor", {"SID_MODULE", "SUBCODE"}) {}
};
