#include "MakeConvSToKiv/convstdagent/ConvExStdAgentSetting.h"

#include <new>

#include "MakeConvSToKiv/convstdagent/ConvDBEntryStdAgentGen.h"

ConvExStdAgentSetting::ConvExStdAgentSetting(ConvAppStd* appIn)
    : ConvExStd(appIn, false, "data/agent/setting", "TM_ALM_SETTING") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdAgentSetting::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) ConvDBEntryStdAgentGen(app, connection, true));
}

ConvExStdAgentPrSetting::ConvExStdAgentPrSetting(ConvAppStd* appIn)
    : ConvExStdStackIndex(appIn, false, "agent/setting", "TMPR_ALM_SETTING", "data/user/index") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdAgentPrSetting::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) ConvDBEntryStdAgentGen(app, connection, false));
}
