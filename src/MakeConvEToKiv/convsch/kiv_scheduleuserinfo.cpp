// TT_SCHEDULE_USERINFO rows with the user's tag and alarm.
#include "MakeConvEToKiv/convsch/kiv_scheduleuserinfo.h"

#include <strings.h>

#include <cstdio>
#include <cstdlib>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"
#include "MakeConvEToKiv/convsch/FillScheduleDates.h"
#include "MakeConvEToKiv/convsch/kiv_schcommon.h"
#include "MakeConvLib/cxiosch/CiofSchedule.h"
#include "MakeConvLib/cxiosch/ZioTagSchUser.h"
#include "base/comTime.h"
#include "database/CdDB.h"

namespace {

// Read for the note and the alarm; no columns of TT_SCHEDULE_USERINFO.
const char* const kReadOnly[] = {"startdate", "enddate", "starttime", "endtime", "repeat", "everyweek",
                                 "everyweekday", "memo", "event", "detail", "place", "other", "outflg",
                                 "openlevel", "rankflg", "reserve", "flag", "visitor", "iconno", "iconname",
                                 "iconfilename", nullptr};
// The fields of the schedule that the note shows, by their row columns.
const char* const kNoteFields[] = {"memo",    "event",   "detail", "place", "other",   "outflg",
                                   "openlevel", "rankflg", "reserve", "flag", "visitor", "iconno", nullptr};

bool HasValue(const ConvRow& row, const char* name) {
    const char* value = FindColumn(row, name);
    return value && *value;
}

const char* Text(const ConvRow& row, const char* name) {
    const char* value = FindColumn(row, name);
    return value ? value : "";
}

}  // namespace

kiv_scheduleuserinfo::kiv_scheduleuserinfo(ConvApp* app, CdDBConnection* connection)
    : ConvDBEntry(app, connection), nowStamp(SchNowStamp()) {}

void kiv_scheduleuserinfo::AppendKeys(std::string& text) const {
    if (currentRow) {
        AppendRowKeys(*currentRow, text);
    } else {
        ConvDBEntry::AppendKeys(text);
    }
}

std::string kiv_scheduleuserinfo::ScheduleLink(const std::string& did, const char* tail) {
    char link[512];
    std::snprintf(link, sizeof link, "%s.{{ext}}?%s=%s#%s=%s&%s=%s%s", "qkiv", "cmd", "schindex", "cmd",
                  "schreferdtl", "sid", did.c_str(), tail);
    return link;
}

int32_t kiv_scheduleuserinfo::Entry(const char* table, ConvRow& row) {
    currentRow = &row;
    const bool hasTag = HasValue(row, "TAG_ID");
    const bool hasAlarm = HasValue(row, "ALARM_ID");
    const int32_t ret = ConvDBEntry::Entry(table, row);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    if (!hasTag && !hasAlarm) return 0;

    // The note shows local times; the alarm's send time is shifted by itself.
    CiofSchedule schedule;
    std::string startDate;
    std::string endDate;
    if (FillScheduleDates(row, schedule, &startDate, &endDate, nullptr, nullptr, nullptr, false) != 0)
        return SchReportDates(*this, row, "開始日時、終了日時の保存に失敗しましたが処理を続行しました。");
    std::string did;
    if (!HasValue(row, "ID")) return SchReportDates(*this, row, kSchIdFailed);
    if (SchMakeId(*this, &row, FindColumn(row, "ID"), did) != 0) return kConvRowSkipped;
    for (const char* const* name = kNoteFields; *name; ++name) {
        // A field that doesn't take its value stays empty on the note.
        if (HasValue(row, *name)) schedule.SetByColumn(*name, FindColumn(row, *name));
    }

    int32_t result = 0;
    if (hasTag && WriteTag(row, schedule, did) != 0) result = kConvRowSkipped;
    if (hasAlarm && WriteAlarm(row, did) != 0) result = kConvRowSkipped;
    return result;
}

int32_t kiv_scheduleuserinfo::WriteTag(const ConvRow& row, CiofSchedule& schedule, const std::string& did) {
    ZioTagSchUser tag;
    const std::string link = ScheduleLink(did, "");
    if (tag.BuildBody(&schedule, link.c_str(), Text(row, "iconfilename"), Text(row, "iconname"),
                      nowStamp.c_str()) != 0) {
        return SchReportDates(*this, row, "付箋の編集に失敗しましたが処理を続行しました。");
    }
    const char* tagId = FindColumn(row, "TAG_ID");
    const int seed = std::atoi(tagId);
    const std::string x = std::to_string(tag.TagLeft(seed));
    const std::string y = std::to_string(tag.TagTop(seed));
    const std::string width = std::to_string(tag.width.IsEmpty() ? CXioTag::kDefaultWidth : tag.width.GetInt());
    const std::string height =
        std::to_string(tag.height.IsEmpty() ? CXioTag::kDefaultHeight : tag.height.GetInt());

    ConvRow note;
    AddColumn("SID_CORPORATE", FindColumn(row, "SID_CORPORATE"), kRowTypeNumber, note);
    AddColumn("SID_USER", FindColumn(row, "SID_ASSIGN"), kRowTypeNumber, note);
    AddColumn("ID", tagId, kRowTypeNumber, note);
    AddColumn("SID_MODULE", FindColumn(row, "TAG_SID_MODULE"), kRowTypeNumber, note);
    AddColumn("DID", did.c_str(), kRowTypeText, note);
    AddColumn("CRETIME", nowStamp.c_str(), kRowTypeText, note);
    AddColumn("UPDTIME", nowStamp.c_str(), kRowTypeText, note);
    AddColumn("body", tag.body.GetStr(), kRowTypeText, note);
    AddColumn("url", link.c_str(), kRowTypeText, note);
    AddColumn("X", x.c_str(), kRowTypeNumber, note);
    AddColumn("Y", y.c_str(), kRowTypeNumber, note);
    AddColumn("width", width.c_str(), kRowTypeNumber, note);
    AddColumn("height", height.c_str(), kRowTypeNumber, note);
    AddColumn("title", tag.title.GetStr(), kRowTypeText, note);
    if (HasValue(row, "TAG_tagcolor")) AddColumn("tagcolor", FindColumn(row, "TAG_tagcolor"), kRowTypeNumber, note);

    ConvDBEntry writer(app, connection);
    if (writer.Entry("TTPR_TAG", note) != 0)
        return SchReportDates(*this, row, "付箋登録に失敗しましたが処理を続行しました。");
    return 0;
}

int32_t kiv_scheduleuserinfo::WriteAlarm(const ConvRow& row, const std::string& did) {
    static const char* const kFailed = "アラーム登録に失敗しましたが処理を続行しました。";
    if (!HasValue(row, "ALARM_SENDTIME")) return 0;
    char sendTime[32] = {};
    if (LocalStampToUtc(FindColumn(row, "ALARM_SENDTIME"), sendTime) != 0)
        return SchReportDates(*this, row, kFailed);
    const std::string link = ScheduleLink(did, "&seldate=");

    ConvRow alarm;
    AddColumn("SID_CORPORATE", FindColumn(row, "SID_CORPORATE"), kRowTypeNumber, alarm);
    AddColumn("SID_USER", FindColumn(row, "SID_ASSIGN"), kRowTypeNumber, alarm);
    AddColumn("ID", FindColumn(row, "ALARM_ID"), kRowTypeNumber, alarm);
    AddColumn("SID_MENU", FindColumn(row, "ALARM_SID_MENU"), kRowTypeNumber, alarm);
    AddColumn("DID", did.c_str(), kRowTypeText, alarm);
    AddColumn("SENDTIME", sendTime, kRowTypeText, alarm);
    AddColumn("OBJID", link.c_str(), kRowTypeText, alarm);
    AddColumn("CRETIME", nowStamp.c_str(), kRowTypeText, alarm);
    AddColumn("UPDTIME", nowStamp.c_str(), kRowTypeText, alarm);
    if (HasValue(row, "ALARM_STATUS")) AddColumn("STATUS", FindColumn(row, "ALARM_STATUS"), kRowTypeNumber, alarm);
    if (HasValue(row, "ALARM_NAME")) AddColumn("NAME", FindColumn(row, "ALARM_NAME"), kRowTypeText, alarm);
    if (HasValue(row, "ALARM_MEMO")) AddColumn("MEMO", FindColumn(row, "ALARM_MEMO"), kRowTypeLong, alarm);

    ConvDBEntry writer(app, connection);
    if (writer.Entry("TTPR_ALARM", alarm) != 0) return SchReportDates(*this, row, kFailed);
    return 0;
}

int32_t kiv_scheduleuserinfo::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (strcasecmp(name, "ID") == 0) {
        std::string id;
        const int32_t ret = SchMakeId(*this, currentRow, value, id);
        if (ret != 0) return ret;
        return ConvDBEntry::AddColumnValue(name, id.c_str(), kRowTypeText);
    }
    if (strcasecmp(name, "cretime") == 0 || strcasecmp(name, "updtime") == 0) {
        std::string stamp;
        const int32_t ret = SchUtcStamp(*this, currentRow, value, stamp);
        if (ret != 0) return ret;
        return ConvDBEntry::AddColumnValue(name, stamp.c_str(), type);
    }
    if (SchIsLogColumn(name) || strncasecmp(name, "TAG_", 4) == 0 || strncasecmp(name, "ALARM_", 6) == 0 ||
        SchNameIn(name, kReadOnly))
        return 0;
    return ConvDBEntry::AddColumnValue(name, value, type);
}

int32_t kiv_scheduleuserinfo::AddNullColumn(const char* name, uint32_t type) {
    if (strcasecmp(name, "cretime") == 0 || strcasecmp(name, "updtime") == 0)
        return ConvDBEntry::AddColumnValue(name, nowStamp.c_str(), kRowTypeText);
    return ConvDBEntry::AddNullColumn(name, type);
}
