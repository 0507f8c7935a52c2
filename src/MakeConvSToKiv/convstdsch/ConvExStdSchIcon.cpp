// Schedule icons.
#include "MakeConvSToKiv/convstdsch/ConvExStdSchIcon.h"

#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdsch/tm_sch_icon.h"

ConvExStdSchIcon::ConvExStdSchIcon(ConvAppStd* appIn)
    : ConvExStdIndex(appIn, false, "data/schedule/icon/index", "TM_SCH_ICON", 1, "001") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdSchIcon::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) tm_sch_icon(app, connection));
}
