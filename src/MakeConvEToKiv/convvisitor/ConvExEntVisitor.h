// The visitor module's own tables: settings, places, receptionists, personal
// settings and the visitors.
#pragma once

#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convvisitor/kiv_visitor.h"

class ConvExEntVisitorVisitorSetting : public ConvExEnt {
public:
    explicit ConvExEntVisitorVisitorSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TM_VIS_SETTING", {"SID_CORPORATE"}) {}
};

class ConvExEntVisitorVisitorPlace : public ConvExEnt {
public:
    explicit ConvExEntVisitorVisitorPlace(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TM_VIS_PLACE", {"Name"}) {}
};

class ConvExEntVisitorVisitorReceptPlace : public ConvExEnt {
public:
    explicit ConvExEntVisitorVisitorReceptPlace(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TM_VIS_RECEPT_PLACE", {"SID_PLACE"}) {}
};

class ConvExEntVisitorPVisitorSetting : public ConvExEnt {
public:
    explicit ConvExEntVisitorPVisitorSetting(ConvApp* app, bool useTransaction = false)
        : ConvExEnt(app, useTransaction, "TMPR_VIS_SETTING", {"SID_USER"}) {}
};

class ConvExEntVisitorVisitor : public ConvExEntWith<kiv_visitor> {
public:
    explicit ConvExEntVisitorVisitor(ConvApp* app, bool useTransaction = false)
        : ConvExEntWith(app, useTransaction, "TT_VISITOR") {}
};
