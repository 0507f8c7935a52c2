#include "MakeConvSToKiv/convstdagent/ConvExStdAgentPrAgent.h"

#include <cstdlib>
#include <new>

#include "MakeConvSToKiv/convstdagent/ConvDBEntryStdAgentGen.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"
#include "database/CdDBConnection.h"

namespace {

// Pads a send time to HHMM by its length; false for a length other than 1 to 4.
bool PadTime(const std::string& entry, std::string& padded) {
    if (entry.empty() || entry.size() > 4) return false;
    padded = std::string(4 - entry.size(), '0') + entry;
    return true;
}

// HHMM of digits, the hour at most 24 (2400 is the end of the day), the
// minutes under 60.
bool IsSendTime(const std::string& padded) {
    for (char c : padded)
        if (c < '0' || c > '9') return false;
    const int hour = (padded[0] - '0') * 10 + (padded[1] - '0');
    const int minute = (padded[2] - '0') * 10 + (padded[3] - '0');
    return hour <= 24 && minute < 60;
}

}  // namespace

ConvExStdAgentPrAgent::ConvExStdAgentPrAgent(ConvAppStd* appIn)
    : ConvExStdStackIndex(appIn, true, "agent/schedule", "TMPR_AGENT", "data/user/index") {}

std::unique_ptr<ConvDBEntryStd> ConvExStdAgentPrAgent::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) tmpr_agent(app, connection));
}

int32_t ConvExStdAgentPrAgent::ConvertRecord(ConvDBEntryStd* writer, ConvRow& record) {
    const int32_t ret = InsertSendTimes(record);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        if (ret == kConvRowSkipped) NoteLeftOut();
        return ret;
    }
    return ConvExStdStackIndex::ConvertRecord(writer, record);
}

int32_t ConvExStdAgentPrAgent::InsertSendTimes(ConvRow& record) {
    ConvDBEntryStd writer(app, connection);
    std::string joined;
    const std::vector<std::string>* list = nullptr;
    for (const auto& item : record) {
        if (item && item->type == kRowTypeList && item->name == "sendtimes") {
            list = &item->list;
            break;
        }
    }
    int32_t ret = SetUpSchedulerWriter(&writer);
    if (ret == 0) ret = InsertSendTimeList(&writer, list, joined);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    // Set, not appended: a record walked again keeps one SENDTIMES. An empty
    // list leaves the item without a value, which adds no column.
    ret = SetColumn("SENDTIMES", joined.c_str(), kRowTypeText, record);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvExStdAgentPrAgent::SetUpSchedulerWriter(ConvDBEntryStd* writer) {
    if (!writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    writer->SetFixedField("ID", ownerId.c_str(), kRowTypeNumber);
    writer->MapKey("sid_scheduler", "sid_scheduler");
    writer->MapKey("stime", "stime");
    writer->AddKey("ID", "");
    writer->AddKey("stime", "");
    return 0;
}

int32_t ConvExStdAgentPrAgent::InsertSendTimeList(ConvDBEntryStd* writer, const std::vector<std::string>* list,
                                                  std::string& joined) {
    if (!list) return 0;
    for (const std::string& entry : *list) {
        std::string padded;
        if (!PadTime(entry, padded) || !IsSendTime(padded)) continue;
        if (joined.size() < kJoinedMax) {
            if (!joined.empty()) joined += ',';
            joined += std::to_string(std::atoi(padded.c_str()));
        }
        ConvRow row;
        AddColumn("sid_scheduler", "1", kRowTypeNumber, row);
        AddColumn("stime", padded.c_str(), kRowTypeText, row);
        const int32_t ret = writer->Entry("TM_SCHEDULER", row);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}
