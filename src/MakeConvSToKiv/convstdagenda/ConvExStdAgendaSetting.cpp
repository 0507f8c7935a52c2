// Common and personal minutes settings.
#include "MakeConvSToKiv/convstdagenda/ConvExStdAgendaSetting.h"

#include <new>

#include "MakeConvSToKiv/convstdagenda/kiv_std_agendasetting.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"

ConvExStdAgendaSetting::ConvExStdAgendaSetting(ConvAppStd* appIn)
    : ConvExStd(appIn, false, "data/agenda/setting", "TM_AGENDA_SETTING") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdAgendaSetting::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) kiv_std_agendasetting(app, connection));
}

ConvExStdAgendaPriSetting::ConvExStdAgendaPriSetting(ConvAppStd* appIn)
    : ConvExStdStackIndex(appIn, false, "agenda/setting", "TMPR_AGENDA_SETTING", "data/user/index") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdAgendaPriSetting::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) kiv_std_agendaprisetting(app, connection));
}
