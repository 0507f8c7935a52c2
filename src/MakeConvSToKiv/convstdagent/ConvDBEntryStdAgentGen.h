// Writers of the alarm module: its settings, common (TM_ALM_SETTING) or one
// user's (TMPR_ALM_SETTING), and a user's notification plan (TMPR_AGENT).
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

class ConvDBEntryStdAgentGen : public ConvDBEntryStdGen {
public:
    // A personal writer (common false) drops `save` and names SID_USER in its
    // messages.
    ConvDBEntryStdAgentGen(ConvAppStd* app, CdDBConnection* connection, bool common);
};

// The plan's options and its SENDTIMES, which the conversion appends to the
// record from the plan's `sendtimes` list.
class tmpr_agent : public ConvDBEntryStd {
public:
    tmpr_agent(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
};
