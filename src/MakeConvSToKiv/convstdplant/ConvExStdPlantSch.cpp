#include "MakeConvSToKiv/convstdplant/ConvExStdPlantSch.h"

#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "database/CdDBConnection.h"

tt_sch_plant::tt_sch_plant(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStdSchSch(appIn, connectionIn, "SID_PLANT") {}

ConvExStdPlantSch::ConvExStdPlantSch(ConvAppStd* appIn)
    : ConvExStdSchSch(appIn, "schedule", "TT_PLT_SCHEDULE", "data/setubi/plant/index") {
    attachTable = "TT_ATTACH_PLT_SCHEDULE";
    dateTable = "TT_PLT_SCH_REPDATE";
    ownerColumn = "SID_PLANT";
    // Every id of the index is an owner, even one whose own record is missing
    // or was left out: its reservations are data of their own.
    walkRecords = false;
}

// The id list is all this conversion needs of the index: the facilities' own
// records were read (and reported) by the facility step.
int32_t ConvExStdPlantSch::OpenSource() { return OpenOwnIndex(false); }

std::unique_ptr<ConvDBEntryStd> ConvExStdPlantSch::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) tt_sch_plant(app, connection));
}

int32_t ConvExStdPlantSch::SetUpWriter(ConvDBEntryStd* writer) {
    if (!writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    writer->SetFixedField("SID_PLANT", ownerId.c_str(), kRowTypeNumber);
    writer->AddKey("SID_PLANT", ownerId.c_str());
    return 0;
}

int32_t ConvExStdPlantSch::SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem) {
    if (writer) {
        writer->SetFixedField("SID_PLANT", ownerId.c_str(), kRowTypeNumber);
        writer->AddKey("SID_PLANT", ownerId.c_str());
    }
    return ConvExStdSchSch::SetUpDetailWriter(writer, idItem);
}
