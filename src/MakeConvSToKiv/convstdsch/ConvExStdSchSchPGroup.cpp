// Personal groups' schedules, user by user.
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchPGroup.h"

#include <new>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "MakeConvSToKiv/convstdsch/ConvDBEntryStdSchSch.h"
#include "database/CdDBConnection.h"

namespace {

std::string GroupIndexPath(const char* userId) {
    return std::string("data/user/") + (userId ? userId : "") + "/group/index";
}

}  // namespace

ConvExStdSchSchPGroupOfUser::ConvExStdSchSchPGroupOfUser(ConvAppStd* appIn, const char* user)
    : ConvExStdSchSch(appIn, "schedule", "TTPR_SCH_GROUP", GroupIndexPath(user).c_str()),
      userId(user ? user : "") {
    attachTable = "TTPR_ATTACH_SCH_GROUP";
    dateTable = "TTPR_SCH_GROUP_REPDATE";
    ownerColumn = "SID_PRGROUP";
    walkRecords = true;
}

int32_t ConvExStdSchSchPGroupOfUser::OpenSource() { return OpenOwnIndex(true); }

std::unique_ptr<ConvDBEntryStd> ConvExStdSchSchPGroupOfUser::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) ttpr_sch_group(app, connection));
}

void ConvExStdSchSchPGroupOfUser::AddOwners(ConvDBEntryStd* writer) {
    writer->SetFixedField("SID_PRGROUP", ownerId.c_str(), kRowTypeNumber);
    writer->SetFixedField("SID_USER", userId.c_str(), kRowTypeNumber);
    writer->AddKey("SID_PRGROUP", ownerId.c_str());
    writer->AddKey("SID_USER", userId.c_str());
}

int32_t ConvExStdSchSchPGroupOfUser::SetUpWriter(ConvDBEntryStd* writer) {
    if (!writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    AddOwners(writer);
    return 0;
}

int32_t ConvExStdSchSchPGroupOfUser::SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem) {
    if (writer) AddOwners(writer);
    return ConvExStdSchSch::SetUpDetailWriter(writer, idItem);
}

ConvExStdSchSchPGroup::ConvExStdSchSchPGroup(ConvAppStd* appIn)
    : ConvExStdStackIndex(appIn, false, "schedule", "TTPR_SCH_GROUP", "data/user/index") {}

int32_t ConvExStdSchSchPGroup::Convert() {
    if (!ownerIndex) {
        app->ReportError(kDbNotConnected, CONV_HERE, false, ownerIndexPath.c_str(), nullptr);
        return kDbNotConnected;
    }
    for (const int32_t id : ownerIndex->Ids()) {
        const std::string user = std::to_string(id);
        ConvExStdSchSchPGroupOfUser groups(app, user.c_str());
        int32_t ret = groups.OpenSource();
        if (ret < 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        ret = groups.Convert();
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}
