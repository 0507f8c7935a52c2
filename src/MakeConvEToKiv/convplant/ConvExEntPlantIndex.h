// The facility module's rows of the shared tables: its index master and its
// administrators.
#pragma once

#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convcom/kiv_index.h"

class ConvExEntPlantRModuleAssignUser : public ConvExEntShared<kiv_RModuleAssignUser> {
public:
    explicit ConvExEntPlantRModuleAssignUser(ConvApp* app, bool useTransaction = false)
        : ConvExEntShared(app, useTransaction, "TM_RMODULE_ASSIGNUSER", "TM_RMODULE_ASSIGNUSER_Plant",
                          {"SID_MODULE", "SID_ASSIGN"}) {}
};

class ConvExEntPlantIndex : public ConvExEntShared<kiv_index> {
public:
    explicit ConvExEntPlantIndex(ConvApp* app, bool useTransaction = false)
        : ConvExEntShared(app, useTransaction, "TM_INDEX", "TM_INDEX_Plant", {"SID_MODULE", "SUBCODE"}) {}
};
