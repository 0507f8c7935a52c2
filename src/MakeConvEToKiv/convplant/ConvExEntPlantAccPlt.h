// Who may reserve a facility: rights given to groups, roles, users and all.
#pragma once

#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"
#include "MakeConvEToKiv/convcom/ConvExEnt.h"

class kiv_AccPltGroup : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };
class kiv_AccPltRole : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };
class kiv_AccPltUser : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };

class ConvExEntPlantAccPltGroup : public ConvExEntWith<kiv_AccPltGroup> {
public:
    explicit ConvExEntPlantAccPltGroup(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_ACCPLT_GROUP", {"SID_ASSIGN"}) {}
};

class ConvExEntPlantAccPltRole : public ConvExEntWith<kiv_AccPltRole> {
public:
    explicit ConvExEntPlantAccPltRole(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_ACCPLT_ROLE", {"SID_ASSIGN"}) {}
};

class ConvExEntPlantAccPltUser : public ConvExEntWith<kiv_AccPltUser> {
public:
    explicit ConvExEntPlantAccPltUser(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_ACCPLT_USER", {"SID_ASSIGN"}) {}
};

// Rows are copied as they come, times included.
class ConvExEntPlantAccPltAll : public ConvExEnt {
public:
    explicit ConvExEntPlantAccPltAll(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TM_ACCPLT_ALL") {}
};
