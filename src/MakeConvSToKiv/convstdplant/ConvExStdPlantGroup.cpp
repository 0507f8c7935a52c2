#include "MakeConvSToKiv/convstdplant/ConvExStdPlantGroup.h"

#include <new>

#include "MakeConvSToKiv/convstdplant/tm_plant.h"

ConvExStdPlantEvent::ConvExStdPlantEvent(ConvAppStd* appIn)
    : ConvExStdStrIndex(appIn, false, "data/setubi/event", "TM_PLT_EVENT") {}

ConvExStdPlantGroup::ConvExStdPlantGroup(ConvAppStd* appIn)
    : ConvExStdIndex(appIn, false, "data/setubi/group/index", "TM_PLT_GROUP", 3, "002") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdPlantGroup::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) tm_plt_group(app, connection));
}

ConvExStdPlantPPltCsvindex::ConvExStdPlantPPltCsvindex(ConvAppStd* appIn)
    : ConvExStdCSVIndex(appIn, "setubi/infocsvindex", "TMPR_PLTMST_CSVINDEX", "data/user/index") {}
