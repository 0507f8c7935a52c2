// The alarm module in the target: common and personal settings, the users'
// notification plans and the scheduler's send times.
#pragma once

#include "MakeConvEToKiv/convagent/kiv_pragent.h"
#include "MakeConvEToKiv/convagent/kiv_scheduler.h"
#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"
#include "MakeConvEToKiv/convcom/ConvExEnt.h"

class kiv_almsetting : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };
class kiv_pralmsetting : public ConvDBEntryTimes { using ConvDBEntryTimes::ConvDBEntryTimes; };

class ConvExEntAgentAlmSetting : public ConvExEntWith<kiv_almsetting> {
public:
    explicit ConvExEntAgentAlmSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_ALM_SETTING") {}
};

class ConvExEntAgentPrAlmSetting : public ConvExEntWith<kiv_pralmsetting> {
public:
    explicit ConvExEntAgentPrAlmSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TMPR_ALM_SETTING", {"SID_USER"}) {}
};

class ConvExEntAgentPrAgent : public ConvExEntWith<kiv_pragent> {
public:
    explicit ConvExEntAgentPrAgent(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TMPR_AGENT", {"SID_USER"}) {}
};

class ConvExEntAgentScheduler : public ConvExEntWith<kiv_scheduler> {
public:
    explicit ConvExEntAgentScheduler(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_SCHEDULER", {"SID_SCHEDULER", "STIME"}) {}
};
