// The minutes module's rows of the shared tables: its administrators and its
// index master.
#pragma once

#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convcom/kiv_index.h"

class ConvExEntAgendaRModuleAssignUser : public ConvExEntShared<kiv_RModuleAssignUser> {
public:
    explicit ConvExEntAgendaRModuleAssignUser(ConvApp* app, bool useTransaction = false)
        : ConvExEntShared(app, useTransaction, "TM_RMODULE_ASSIGNUSER", "TM_RMODULE_ASSIGNUSER_Agenda",
                          {"SID_MODULE", "SID_ASSIGN"}) {}
};

class ConvExEntAgendaIndex : public ConvExEntShared<kiv_index> {
public:
    explicit ConvExEntAgendaIndex(ConvApp* app, bool useTransaction = false)
        : ConvExEntShared(app, useTransaction, "TM_INDEX", "TM_INDEX_Agenda", {"SID_MODULE", "SUBCODE"}) {}
};
