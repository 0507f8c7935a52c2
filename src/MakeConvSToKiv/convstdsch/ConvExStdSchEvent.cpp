// Event and place word lists.
#include "MakeConvSToKiv/convstdsch/ConvExStdSchEvent.h"

#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"

ConvExStdSchEvent::ConvExStdSchEvent(ConvAppStd* appIn)
    : ConvExStdStrIndex(appIn, false, "data/schedule/event", "TM_SCH_EVENT") {}

ConvExStdSchPlace::ConvExStdSchPlace(ConvAppStd* appIn)
    : ConvExStdStrIndex(appIn, false, "data/schedule/place", "TM_SCH_PLACE") {}

ConvExStdSchPrEvent::ConvExStdSchPrEvent(ConvAppStd* appIn, const char* file, const char* table)
    : ConvExStdStackIndex(appIn, false, file, table, "data/user/index") {}

std::unique_ptr<ConvStdCom> ConvExStdSchPrEvent::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) ConvStdComStrIndex(app, sourcePath.c_str()));
}

std::unique_ptr<ConvDBEntryStd> ConvExStdSchPrEvent::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(
        new (std::nothrow) ConvDBEntryStdItemIndex(app, connection, "ITEM", "ITEM", "ID"));
}

ConvExStdSchPrPlace::ConvExStdSchPrPlace(ConvAppStd* appIn)
    : ConvExStdSchPrEvent(appIn, "place", "TMPR_SCH_PLACE") {}
