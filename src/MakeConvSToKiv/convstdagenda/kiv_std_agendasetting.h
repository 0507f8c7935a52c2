// Writers of the minutes' settings: the installation's and each user's.
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

// data/agenda/setting: `row`, `save` and `mngrow`.
class kiv_std_agendasetting : public ConvDBEntryStdGen {
public:
    kiv_std_agendasetting(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
};

// data/user/<id>/agenda/setting: as the installation's, without `save`.
class kiv_std_agendaprisetting : public ConvDBEntryStdGen {
public:
    kiv_std_agendaprisetting(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
};
