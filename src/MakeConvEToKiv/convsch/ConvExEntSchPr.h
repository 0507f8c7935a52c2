// A user's own schedule settings, masters and display groups.
#pragma once

#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"
#include "MakeConvEToKiv/convcom/ConvExEnt.h"

class kiv_prschsetting : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };
class net_prschevent : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };
class kiv_prschplace : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };

class ConvExEntSchPrSchSetting : public ConvExEntWith<kiv_prschsetting> {
public:
    explicit ConvExEntSchPrSchSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TMPR_SCH_SETTING", {"SID_USER"}) {}
};

class ConvExEntSchPrSchEvent : public ConvExEntWith<net_prschevent> {
public:
    explicit ConvExEntSchPrSchEvent(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TMPR_SCH_EVENT", {"SID_USER", "item"}) {}
};

class ConvExEntSchPrSchPlace : public ConvExEntWith<kiv_prschplace> {
public:
    explicit ConvExEntSchPrSchPlace(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TMPR_SCH_PLACE", {"SID_USER", "item"}) {}
};

// Rows are copied as they come, times included.
class ConvExEntSchPrDispGroup : public ConvExEnt {
public:
    explicit ConvExEntSchPrDispGroup(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TMPR_DISPGROUP", {"SID_USER"}) {}
};
