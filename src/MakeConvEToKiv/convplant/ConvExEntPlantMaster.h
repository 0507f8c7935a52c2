// The facility module's settings and masters in the target: common and
// personal settings, purposes, groups, facilities and the users' column orders.
#pragma once

#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convplant/kiv_plant.h"

// An INSERT: the target has no facility settings row of its own.
class ConvExEntPlantPltSetting : public ConvExEntWith<kiv_PltSet> {
public:
    explicit ConvExEntPlantPltSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_PLT_SETTING", {"SID_CORPORATE"}) {}
};

class ConvExEntPlantPltEvent : public ConvExEntWith<kiv_pltEvent> {
public:
    explicit ConvExEntPlantPltEvent(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_PLT_EVENT", {"item"}) {}
};

class ConvExEntPlantPltGroup : public ConvExEntWith<kiv_pltGroup> {
public:
    explicit ConvExEntPlantPltGroup(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_PLT_GROUP", {"Name"}) {}
};

class ConvExEntPlantPlant : public ConvExEntWith<kiv_plant> {
public:
    explicit ConvExEntPlantPlant(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_PLANT", {"Name"}) {}
};

class ConvExEntPlantPPltSetting : public ConvExEntWith<kiv_PPltSet> {
public:
    explicit ConvExEntPlantPPltSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TMPR_PLT_SETTING", {"SID_USER"}) {}
};

// Rows are copied as they come, times included.
class ConvExEntPlantPPltMstCsvindex : public ConvExEnt {
public:
    explicit ConvExEntPlantPPltMstCsvindex(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TMPR_PLTMST_CSVINDEX", {"SID_USER"}) {}
};
