// The schedule's common settings and masters: settings, events, places and
// icons.
#pragma once

#include <memory>

#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convsch/kiv_schicon.h"
#include "MakeConvEToKiv/convsch/kiv_schmaster.h"

// The installation's row exists already: its writer updates it.
class ConvExEntSchSchSetting : public ConvExEntWith<kiv_schsetting> {
public:
    explicit ConvExEntSchSchSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_SCH_SETTING") {}

    std::unique_ptr<ConvDBEntry> NewWriter() override {
        std::unique_ptr<ConvDBEntry> writer = ConvExEntWith::NewWriter();
        if (writer) writer->SetUpdateMode(true);
        return writer;
    }
};

class ConvExEntSchSchEvent : public ConvExEntWith<kiv_schevent> {
public:
    explicit ConvExEntSchSchEvent(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_SCH_EVENT", {"item"}) {}
};

class ConvExEntSchSchPlace : public ConvExEntWith<kiv_schplace> {
public:
    explicit ConvExEntSchSchPlace(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_SCH_PLACE", {"item"}) {}
};

class ConvExEntSchSchIcon : public ConvExEntWith<kiv_schicon> {
public:
    explicit ConvExEntSchSchIcon(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TM_SCH_ICON", {"Name"}) {}
};
