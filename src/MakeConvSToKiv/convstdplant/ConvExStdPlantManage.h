// The facility module's administrators: module-wide and per group.
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvExStdPlantManageAll : public ConvExStdManageAll {
public:
    explicit ConvExStdPlantManageAll(ConvAppStd* app) : ConvExStdManageAll(app, "setubi", "TM_PLT_ADMIN_COMMON") {}
};

class ConvExStdPlantManageGroup : public ConvExStdManageGroup {
public:
    explicit ConvExStdPlantManageGroup(ConvAppStd* app)
        : ConvExStdManageGroup(app, "setubi", "TM_PLT_ADMIN_GROUP") {}
};
