// Writers of one set of minutes: the minutes' record (info), its topics and
// its members.
#pragma once

#include <cstdint>

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

// data/agenda/<g>/<id>/info into TT_AGENDA; the memo is cut to 2,000
// characters with a warning.
class kiv_std_agendaagenda : public ConvDBEntryStd {
public:
    static constexpr int kMemoMax = 2000;

    kiv_std_agendaagenda(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
};

// One object of .../topic into TT_AGENDA_TOPIC; the conversion gives the
// fixed fields SID_CORPORATE and agnid. Topic memos are never cut.
class kiv_std_agendtopic : public ConvDBEntryStd {
public:
    kiv_std_agendtopic(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
};

// One object of .../member into TT_AGENDA_MEMBER; the conversion gives the
// fixed fields SID_CORPORATE, agnid and SEQNO.
class kiv_std_agendamember : public ConvDBEntryStd {
public:
    kiv_std_agendamember(ConvAppStd* app, CdDBConnection* connection);
    bool IsNumberField(const char* name) override;
};
