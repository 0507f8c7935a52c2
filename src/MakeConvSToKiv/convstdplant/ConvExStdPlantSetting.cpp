#include "MakeConvSToKiv/convstdplant/ConvExStdPlantSetting.h"

#include <new>

#include "MakeConvSToKiv/convstdplant/ConvDBEntryStdPlantGen.h"

ConvExStdPlantSetting::ConvExStdPlantSetting(ConvAppStd* appIn)
    : ConvExStd(appIn, false, "data/setubi/setting", "TM_PLT_SETTING") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdPlantSetting::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) ConvDBEntryStdPlantGen(app, connection, true));
}

ConvExStdPlantPrSetting::ConvExStdPlantPrSetting(ConvAppStd* appIn)
    : ConvExStdStackIndex(appIn, false, "setubi/setting", "TMPR_PLT_SETTING", "data/user/index") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdPlantPrSetting::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) ConvDBEntryStdPlantGen(app, connection, false));
}
