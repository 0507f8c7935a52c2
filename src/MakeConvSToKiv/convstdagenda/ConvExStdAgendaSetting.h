// The minutes' settings: the installation's (data/agenda/setting) and each
// user's own (data/user/<id>/agenda/setting).
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvExStdAgendaSetting : public ConvExStd {
public:
    explicit ConvExStdAgendaSetting(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};

class ConvExStdAgendaPriSetting : public ConvExStdStackIndex {
public:
    explicit ConvExStdAgendaPriSetting(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};
