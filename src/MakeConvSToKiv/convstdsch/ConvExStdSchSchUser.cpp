// Users' schedules and personal schedule access rights.
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchUser.h"

#include <new>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStdAcc.h"
#include "MakeConvSToKiv/convstdcom/ConvStdCom.h"
#include "MakeConvSToKiv/convstdsch/ConvDBEntryStdSchSch.h"
#include "database/CdDBConnection.h"

namespace {

// The module number of the schedule in the access tables.
constexpr int32_t kScheduleModule = 1;

}  // namespace

ConvExStdSchSchUser::ConvExStdSchSchUser(ConvAppStd* appIn)
    : ConvExStdSchSch(appIn, "schedule", "TTPR_SCHEDULE", "data/user/index") {
    attachTable = "TTPR_ATTACH_SCHEDULE";
    dateTable = "TTPR_SCH_REPDATE";
    ownerColumn = "SID_USER";
}

std::unique_ptr<ConvDBEntryStd> ConvExStdSchSchUser::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) ttpr_schedule(app, connection));
}

int32_t ConvExStdSchSchUser::SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem) {
    if (writer) {
        writer->SetFixedField("SID_USER", ownerId.c_str(), kRowTypeNumber);
        writer->AddKey("SID_USER", ownerId.c_str());
    }
    return ConvExStdSchSch::SetUpDetailWriter(writer, idItem);
}

int32_t ConvExStdSchSchUser::Prepare() {
    int32_t ret = connection->SetTransactional(false);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    const std::string path = rootPath + "data/user/" + ownerId + "/schacc";
    ConvStdCom rights(app, path.c_str());
    ret = rights.Read();
    if (ret == -2) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, path.c_str(), nullptr);
        return kDbNoMemory;
    }
    if (ret < 0) {
        // The reader reported the file; without its rights the user's schedule
        // isn't converted either, and the next user follows.
        app->ReportError(kConvRowSkipped, CONV_HERE, false, path.c_str(), nullptr);
        NoteLeftOut();
        return 0;
    }
    if (ConvRow* record = rights.GetRecord(0)) {
        ConvDBEntryStdAccSch writer(app, connection, ownerId.c_str(), kScheduleModule);
        ret = writer.Entry("TMPR_ACCESS", *record);
        if (ret == kConvRowSkipped) {
            // A right that was refused is reported; the others and the entries stay.
            NoteLeftOut();
        } else if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    ret = connection->SetTransactional(transactional);
    if (ret == 0) ret = CommitOwner(connection, 0, true);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 1;
}
