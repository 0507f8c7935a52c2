// Writer of the minutes (TT_AGENDA).
#include "MakeConvEToKiv/convagenda/kiv_agenda.h"

#include <strings.h>

#include <new>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convsch/FillScheduleDates.h"
#include "MakeConvLib/cxiosch/CiofSchedule.h"
#include "base/comTime.h"
#include "database/CdDB.h"

namespace {

constexpr int32_t kRowConvertFailed = -8000001;
constexpr int32_t kNoMemory = -1102;

// Columns that CollectColumns writes in their converted form, or that only
// serve the conversion.
constexpr const char* kHeldBack[] = {"startdate",  "starttime", "endtime",    "repeat",
                                     "entrydate",  "entrytime", "updatedate", "updatetime"};

bool IsHeldBack(const char* name) {
    for (const char* held : kHeldBack)
        if (strcasecmp(name, held) == 0) return true;
    return false;
}

bool HasText(const char* text) { return text && *text; }

}  // namespace

int32_t ShiftPair(const char* date, const char* time, std::string& outDate, std::string& outTime) {
    const bool hasDate = HasText(date);
    const bool hasTime = HasText(time);
    if (!hasDate && !hasTime) return 0;
    const std::string stamp = std::string(hasDate ? date : "20000101") + (hasTime ? std::string(time) + "00" : "000000");
    char utc[32] = {};
    if (LocalStampToUtc(stamp.c_str(), utc) != 0) return 1;
    const std::string shifted = utc;
    if (hasDate) outDate = shifted.substr(0, 8);
    if (hasTime) outTime = shifted.substr(8, 4);
    return 0;
}

kiv_agenda::~kiv_agenda() = default;

int32_t kiv_agenda::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (!name) return ConvDBEntry::AddColumnValue(name, value, type);
    if (IsHeldBack(name)) return 0;
    if (strcasecmp(name, "sid") == 0 && HasText(value)) {
        char id[kCdDBBase36Size] = {};
        const int ret = MakeBase36Id(value, id);
        if (ret != 0) {
            ReportMessage(ret, CONV_HERE, true, "スケジュールＩＤ[%s]の作成に失敗しましたが処理を続行しました。", value);
            return kConvRowSkipped;
        }
        return ConvDBEntry::AddColumnValue(name, id, kRowTypeText);
    }
    return ConvDBEntry::AddColumnValue(name, value, type);
}

int32_t kiv_agenda::AddShiftedPair(const ConvRow& row, bool isEntry) {
    const char* dateName = isEntry ? "entrydate" : "updatedate";
    const char* timeName = isEntry ? "entrytime" : "updatetime";
    const char* date = FindColumn(row, dateName);
    const char* time = FindColumn(row, timeName);
    if (!HasText(date) && !HasText(time)) return 0;
    try {
        std::string utcDate;
        std::string utcTime;
        if (ShiftPair(date, time, utcDate, utcTime) != 0) {
            const std::string shown = std::string(HasText(date) ? date : "") + (HasText(date) && HasText(time) ? " " : "") +
                                      (HasText(time) ? time : "");
            ReportMessage(kRowConvertFailed, CONV_HERE, true,
                          isEntry ? "作成日[%s]のタイムゾーン変換に失敗しましたが処理を続行しました。"
                                  : "更新日[%s]のタイムゾーン変換に失敗しましたが処理を続行しました。",
                          shown.c_str());
            return kConvRowSkipped;
        }
        int32_t ret = 0;
        if (HasText(date)) ret = ConvDBEntry::AddColumnValue(dateName, utcDate.c_str(), kRowTypeText);
        if (ret == 0 && HasText(time)) ret = ConvDBEntry::AddColumnValue(timeName, utcTime.c_str(), kRowTypeText);
        return ret;
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}

int32_t kiv_agenda::CollectColumns(const char* table, ConvRow& row) {
    int32_t ret = ConvDBEntry::CollectColumns(table, row);
    if (ret != 0) return ret;
    const char* startDate = FindColumn(row, "startdate");
    if (HasText(startDate)) {
        std::string selected;
        if (ShiftSelectedDate(row, selected) != 0) {
            ReportMessage(kRowConvertFailed, CONV_HERE, true,
                          "スケジュール選択日[%s]のタイムゾーン変換に失敗しましたが処理を続行しました。", startDate);
            return kConvRowSkipped;
        }
        ret = ConvDBEntry::AddColumnValue("schseldate", selected.c_str(), kRowTypeText);
        if (ret != 0) return ret;
    }
    ret = AddShiftedPair(row, true);
    if (ret != 0) return ret;
    return AddShiftedPair(row, false);
}

int32_t kiv_agenda::ShiftSelectedDate(const ConvRow& row, std::string& outDate) {
    try {
        // The selected day is a one-day entry of the schedule's times and kind.
        CiofSchedule schedule;
        const int ret = FillScheduleOnDate(row, FindColumn(row, "startdate"), schedule, true);
        if (ret == 0) outDate = schedule.startDate.GetStr();
        return ret;
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}
