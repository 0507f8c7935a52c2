// The schedule module's rows of the shared tables: its index master and its
// administrators.
#pragma once

#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convcom/kiv_index.h"

class ConvExEntSchIndex : public ConvExEntShared<ConvDBEntry> {
public:
    explicit ConvExEntSchIndex(ConvApp* app, bool useTransaction = false)
        : ConvExEntShared(app, useTransaction, "TM_INDEX", "TM_INDEX_Schedule", {"SID_MODULE", "SUBCODE"}) {}
};

class ConvExEntSchRModuleAssignUser : public ConvExEntShared<kiv_RModuleAssignUser> {
public:
    explicit ConvExEntSchRModuleAssignUser(ConvApp* app, bool useTransaction = false)
        : ConvExEntShared(app, useTransaction, "TM_RMODULE_ASSIGNUSER", "TM_RMODULE_ASSIGNUSER_Schedule",
                          {"SID_MODULE", "SID_ASSIGN"}) {}
};
