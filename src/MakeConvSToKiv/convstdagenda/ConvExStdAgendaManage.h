// The minutes module's administrators: module-wide and per group.
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvExStdAgendaManageAll : public ConvExStdManageAll {
public:
    explicit ConvExStdAgendaManageAll(ConvAppStd* app) : ConvExStdManageAll(app, "agenda", "TM_AGENDA_COMMON") {}
};

class ConvExStdAgendaManageGroup : public ConvExStdManageGroup {
public:
    explicit ConvExStdAgendaManageGroup(ConvAppStd* app)
        : ConvExStdManageGroup(app, "agenda", "TM_AGENDA_ADMIN_GROUP") {}
};
