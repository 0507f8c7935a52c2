// Groups' schedules.
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchGroup.h"

#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "MakeConvSToKiv/convstdsch/ConvDBEntryStdSchSch.h"
#include "database/CdDBConnection.h"

ConvExStdSchSchGroup::ConvExStdSchSchGroup(ConvAppStd* appIn)
    : ConvExStdSchSch(appIn, "schedule", "TT_SCH_GROUP", "data/group/index") {
    attachTable = "TT_ATTACH_SCH_GROUP";
    dateTable = "TT_SCH_GROUP_REPDATE";
    ownerColumn = "SID_GROUP";
    walkRecords = true;
}

int32_t ConvExStdSchSchGroup::OpenSource() { return OpenOwnIndex(true); }

std::unique_ptr<ConvDBEntryStd> ConvExStdSchSchGroup::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) tt_sch_group(app, connection));
}

int32_t ConvExStdSchSchGroup::SetUpWriter(ConvDBEntryStd* writer) {
    if (!writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    writer->SetFixedField("SID_GROUP", ownerId.c_str(), kRowTypeNumber);
    writer->AddKey("SID_GROUP", ownerId.c_str());
    return 0;
}

int32_t ConvExStdSchSchGroup::SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem) {
    if (writer) {
        writer->SetFixedField("SID_GROUP", ownerId.c_str(), kRowTypeNumber);
        writer->AddKey("SID_GROUP", ownerId.c_str());
    }
    return ConvExStdSchSch::SetUpDetailWriter(writer, idItem);
}
