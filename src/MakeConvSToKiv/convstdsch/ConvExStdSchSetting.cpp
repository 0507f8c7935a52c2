// Common and personal schedule settings.
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSetting.h"

#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdsch/ConvDBEntryStdSchGen.h"

ConvExStdSchSetting::ConvExStdSchSetting(ConvAppStd* appIn)
    : ConvExStd(appIn, false, "data/schedule/setting", "TM_SCH_SETTING") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdSchSetting::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) ConvDBEntryStdSchGen(app, connection, true));
}

ConvExStdSchPrSetting::ConvExStdSchPrSetting(ConvAppStd* appIn)
    : ConvExStdStackIndex(appIn, false, "schgen", "TMPR_SCH_SETTING", "data/user/index") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdSchPrSetting::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) ConvDBEntryStdSchGen(app, connection, false));
}
