// The minutes module's own tables: settings, the minutes, their files, topics,
// last topics and members.
#pragma once

#include "MakeConvEToKiv/convagenda/kiv_AgendaSet.h"
#include "MakeConvEToKiv/convagenda/kiv_agenda.h"
#include "MakeConvEToKiv/convagenda/kiv_agendatopic.h"
#include "MakeConvEToKiv/convagenda/kiv_attachagenda.h"
#include "MakeConvEToKiv/convcom/ConvExEnt.h"

class ConvExEntAgendaAgendaSetting : public ConvExEntWith<kiv_AgendaSet> {
public:
    explicit ConvExEntAgendaAgendaSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_AGENDA_SETTING", {"SID_CORPORATE"}) {}
};

class ConvExEntAgendaPAgendaSetting : public ConvExEnt {
public:
    explicit ConvExEntAgendaPAgendaSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TMPR_AGENDA_SETTING", {"SID_USER"}) {}
};

class ConvExEntAgendaAgenda : public ConvExEntWith<kiv_agenda> {
public:
    explicit ConvExEntAgendaAgenda(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TT_AGENDA", {"subject"}) {}
};

class ConvExEntAgendaAttachAgenda : public ConvExEntWith<kiv_attachagenda> {
public:
    explicit ConvExEntAgendaAttachAgenda(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TT_ATTACH_AGENDA", {"topicid", "FILENAME"}) {}
};

class ConvExEntAgendaAgendaTopic : public ConvExEntWith<kiv_agendatopic> {
public:
    explicit ConvExEntAgendaAgendaTopic(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TT_AGENDA_TOPIC", {"agnid"}) {}
};

class ConvExEntAgendaIndexAgendaTopic : public ConvExEnt {
public:
    explicit ConvExEntAgendaIndexAgendaTopic(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TT_INDEX_AGENDA_TOPIC") {}
};

class ConvExEntAgendaAgendaMember : public ConvExEnt {
public:
    explicit ConvExEntAgendaAgendaMember(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TT_AGENDA_MEMBER", {"agnid"}) {}
};
