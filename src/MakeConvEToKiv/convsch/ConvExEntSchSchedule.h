// Schedules and what hangs on them: repeat days, attached files, destinations
// and the users' information with their notes and alarms. Each row names its
// old record by the LOG_ columns of its query.
#pragma once

#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convsch/kiv_attachschedule.h"
#include "MakeConvEToKiv/convsch/kiv_schedule.h"
#include "MakeConvEToKiv/convsch/kiv_scheduleotherto.h"
#include "MakeConvEToKiv/convsch/kiv_scheduleuserinfo.h"
#include "MakeConvEToKiv/convsch/kiv_schschrepdate.h"

// The key columns of every message about a schedule row.
#define CONV_SCHEDULE_KEYS \
    "LOG_KBN", "LOG_TID", "LOG_SID_PRGROUP", "LOG_SCH_ID", "LOG_startdate", "LOG_starttime", "event", "detail"

class ConvExEntSchSchedule : public ConvExEntWith<kiv_schedule> {
public:
    explicit ConvExEntSchSchedule(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TT_SCHEDULE", {CONV_SCHEDULE_KEYS}) {}
};

class ConvExEntSchSchRepdate : public ConvExEntWith<kiv_schschrepdate> {
public:
    explicit ConvExEntSchSchRepdate(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TT_SCH_REPDATE", {CONV_SCHEDULE_KEYS, "LOG_repdate"}) {}
};

class ConvExEntSchAttachSchedule : public ConvExEntWith<kiv_attachschedule> {
public:
    explicit ConvExEntSchAttachSchedule(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TT_ATTACH_SCHEDULE", {CONV_SCHEDULE_KEYS}) {}
};

class ConvExEntSchScheduleOtherTo : public ConvExEntWith<kiv_scheduleotherto> {
public:
    explicit ConvExEntSchScheduleOtherTo(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TT_SCHEDULE_OTHERTO", {CONV_SCHEDULE_KEYS}) {}
};

class ConvExEntSchScheduleUserInfo : public ConvExEntWith<kiv_scheduleuserinfo> {
public:
    explicit ConvExEntSchScheduleUserInfo(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TT_SCHEDULE_USERINFO", {CONV_SCHEDULE_KEYS}) {}
};

#undef CONV_SCHEDULE_KEYS
