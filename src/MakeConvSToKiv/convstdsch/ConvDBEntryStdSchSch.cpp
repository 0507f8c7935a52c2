// Schedule entry rows: the key map shared by all owners, the memo cut, the
// start date check and the flag for linked minutes.
#include "MakeConvSToKiv/convstdsch/ConvDBEntryStdSchSch.h"

#include <cstring>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "base/comTime.h"

namespace {

// Record key and column of every key carried over, in the order of a record.
constexpr const char* kScheduleKeys[][2] = {
    {"ID", "ID"},
    {"startdate", "startdate"},
    {"enddate", "enddate"},
    {"starttime", "starttime"},
    {"endtime", "endtime"},
    {"eventflg", "eventflg"},
    {"event", "event"},
    {"detail", "detail"},
    {"memo", "memo"},
    {"place", "place"},
    {"other", "other"},
    {"rankflg", "rankflg"},
    {"reserve", "reserve"},
    {"level", "openlevel"},
    {"flag", "flag"},
    {"daycolor", "daycolor"},
    {"outflg", "outflg"},
    {"iconno", "iconno"},
    {"srctype", "srctype"},
    {"srcsid", "srcsid"},
    {"srctarget", "srctarget"},
    {"entry", "entry"},
    {"creuser", "creuser"},
    {"cretime", "cretime"},
    {"entrytime", "entrytime"},
    {"repeat", "repeat"},
    {"repeatlimit", "repeatlimit"},
    {"intervalkind", "intervalkind"},
    {"interval", "interval"},
    {"approvreq", "approvreq"},
    {"aprvmailnotice", "aprvmailnotice"},
    {"agnids", "agenda"},
    {"everyweek", "everyweek"},
    {"everyweekday", "everyweekday"},
    {"everymonth", "everymonth"},
};

constexpr const char* kNumberKeys[] = {"ID",        "iconno",   "alarmtime", "alarmcnt",     "srcsid",
                                       "srctarget", "entry",    "creuser",   "interval",     "everyweek",
                                       "everyweekday", "everymonth"};

// The fields that name an entry in every message about it, besides the owner.
constexpr const char* kLogKeys[] = {"ID", "startdate", "starttime", "event", "detail"};

bool AllDigits(const char* text, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        if (text[i] < '0' || text[i] > '9') return false;
    return true;
}

}  // namespace

ConvDBEntryStdSchSch::ConvDBEntryStdSchSch(ConvAppStd* appIn, CdDBConnection* connectionIn,
                                           const char* ownerColumnIn)
    : ConvDBEntryStd(appIn, connectionIn), ownerColumn(ownerColumnIn ? ownerColumnIn : "") {
    for (const auto& pair : kScheduleKeys) MapKey(pair[0], pair[1]);
    for (const char* key : kLogKeys) AddKey(key, "");
    if (!ownerColumn.empty()) AddKey(ownerColumn.c_str(), "");
}

ConvDBEntryStdSchSch::~ConvDBEntryStdSchSch() = default;

bool ConvDBEntryStdSchSch::IsNumberField(const char* name) {
    if (!name) return false;
    for (const char* key : kNumberKeys)
        if (std::strcmp(key, name) == 0) return true;
    return false;
}

bool ConvDBEntryStdSchSch::IsValidDate(const char* text) {
    if (!text || std::strlen(text) < 8 || !AllDigits(text, 8)) return false;
    return comDateCheck(text) == 0;
}

void ConvDBEntryStdSchSch::AddOwnerToRecord() {
    if (!record) return;
    for (const auto& item : fixedFields)
        if (item && !FindItem(*record, item->name.c_str()))
            AddColumn(item->name.c_str(), item->Value(), item->type, *record);
}

int32_t ConvDBEntryStdSchSch::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (name && std::strcmp(name, "memo") == 0) {
        std::string cut;
        const int32_t ret = CutToLength(name, value, kMemoMax, cut);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        return ConvDBEntryStd::AddColumnValue(name, cut.c_str(), type);
    }
    if (name && std::strcmp(name, "startdate") == 0 && !IsValidDate(value)) {
        AddOwnerToRecord();
        if (record)
            ReportRowMessage(*record, kConvRowSkipped, CONV_HERE, true, "開始日付[%s]が不正ですが処理を続行しました。",
                             value ? value : "");
        else
            ReportMessage(kConvRowSkipped, CONV_HERE, true, "開始日付[%s]が不正ですが処理を続行しました。",
                          value ? value : "");
        return kConvRowSkipped;
    }
    return ConvDBEntryStd::AddColumnValue(name, value, type);
}

int32_t ConvDBEntryStdSchSch::CollectColumns(const char* table, ConvRow& row) {
    record = &row;
    const int32_t ret = CollectRecord(table, row);
    record = nullptr;
    return ret;
}

int32_t ConvDBEntryStdSchSch::CollectRecord(const char* table, ConvRow& row) {
    // Keys show this record's values only, not those of the record before.
    for (auto& key : keys) key.second.clear();
    int32_t ret = ConvDBEntryStd::CollectColumns(table, row);
    if (ret != 0) return ret;
    for (const auto& item : row) {
        if (!item || item->type != kRowTypeList || item->name != "agnids") continue;
        if (!item->list.empty()) ret = AddColumnValue("agnids", "1", kRowTypeText);
        break;
    }
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

ttpr_schedule::ttpr_schedule(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStdSchSch(appIn, connectionIn, "SID_USER") {
    MapKey("alarm", "alarm");
    MapKey("alarmtime", "alarmtime");
    MapKey("alarmcnt", "alarmcnt");
    MapKey("approvsts", "approvsts");
}

tt_sch_group::tt_sch_group(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStdSchSch(appIn, connectionIn, "SID_GROUP") {}

ttpr_sch_group::ttpr_sch_group(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStdSchSch(appIn, connectionIn, "SID_PRGROUP") {
    AddKey("SID_USER", "");
}
