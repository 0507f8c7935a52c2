// The schedule settings record: the installation's common settings
// (data/schedule/setting) or one user's own (schgen).
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

class ConvDBEntryStdSchGen : public ConvDBEntryStdGen {
public:
    // common: the installation's record, with the keys only it has and `save`;
    // otherwise a user's, named by SID_USER in messages.
    ConvDBEntryStdSchGen(ConvAppStd* app, CdDBConnection* connection, bool common);
    bool IsNumberField(const char* name) override;

    bool IsCommon() const { return common; }

private:
    bool common;
};
