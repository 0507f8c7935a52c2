// Writer of the facility module's settings, common (TM_PLT_SETTING) or one
// user's (TMPR_PLT_SETTING).
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

class ConvDBEntryStdPlantGen : public ConvDBEntryStdGen {
public:
    // A personal writer (common false) drops `save` and the keys that only the
    // common settings have, and names SID_USER in its messages.
    ConvDBEntryStdPlantGen(ConvAppStd* app, CdDBConnection* connection, bool common);
    // `defgroup` stands in the list but is matched against record keys: the key
    // that reaches that column is `Group`, which so stays text.
    bool IsNumberField(const char* name) override;

    bool IsCommon() const { return common; }

private:
    bool common;
};
