// Who may see a user's schedule: rights given to groups, roles, users and all.
#pragma once

#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"
#include "MakeConvEToKiv/convcom/ConvExEnt.h"

class kiv_praccessgroup : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };
class kiv_praccessrole : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };
class kiv_praccessuser : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };

class ConvExEntSchPrAccessGroup : public ConvExEntWith<kiv_praccessgroup> {
public:
    explicit ConvExEntSchPrAccessGroup(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TMPR_ACCESS_GROUP", {"SID_MODULE", "SID_ASSIGN"}) {}
};

class ConvExEntSchPrAccessRole : public ConvExEntWith<kiv_praccessrole> {
public:
    explicit ConvExEntSchPrAccessRole(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TMPR_ACCESS_ROLE", {"SID_MODULE", "SID_ASSIGN"}) {}
};

class ConvExEntSchPrAccessUser : public ConvExEntWith<kiv_praccessuser> {
public:
    explicit ConvExEntSchPrAccessUser(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TMPR_ACCESS_USER", {"SID_MODULE", "SID_ASSIGN"}) {}
};

// Rows are copied as they come, times included.
class ConvExEntSchPrAccessAll : public ConvExEnt {
public:
    explicit ConvExEntSchPrAccessAll(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TMPR_ACCESS_ALL", {"SID_MODULE"}) {}
};
