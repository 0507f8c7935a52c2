// Filling a schedule entry from its row, with the range rules of stored
// dates and times, and the shift to UTC.
#include "MakeConvEToKiv/convsch/FillScheduleDates.h"

#include <cstdio>
#include <cstring>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/cxiosch/CiofSchedule.h"
#include "base/comSource.h"

namespace {

constexpr std::size_t kWeekdays = 7;

// The value of a column, or null when it is NULL, empty or missing.
const char* ValueOf(const ConvRow& row, const char* name) {
    const char* value = FindColumn(row, name);
    return value && *value ? value : nullptr;
}

}  // namespace

std::string PadEveryWeekday(const char* value) {
    std::string text = value ? value : "";
    if (text.empty() || text.size() >= kWeekdays) return text;
    for (char c : text)
        if (c < '0' || c > '9') return text;
    return std::string(kWeekdays - text.size(), '0') + text;
}

namespace {

// Steps shared by both fillers: the time rules, the fields, the shift.
int FillFromRow(const ConvRow& row, const char* startDate, const char* endDate, CiofSchedule& schedule,
                bool toUtc) {
    const char* startTime = ValueOf(row, "starttime");
    const char* endTime = ValueOf(row, "endtime");
    const char* repeat = ValueOf(row, "repeat");
    const char* everyWeek = ValueOf(row, "everyweek");
    const std::string everyWeekday = PadEveryWeekday(ValueOf(row, "everyweekday"));

    if (startTime && std::strcmp(startTime, "2400") >= 0) startTime = "2355";
    // A repeat ends within its day: 2430 is half past midnight of that day.
    char wrapped[8] = {};
    if (repeat && endTime && std::strcmp(endTime, "2400") >= 0) {
        std::snprintf(wrapped, sizeof wrapped, "00%.2s", std::strlen(endTime) > 2 ? endTime + 2 : "");
        endTime = wrapped;
    }

    int ret = schedule.startDate.SetStr(startDate);
    if (ret == 0) ret = schedule.endDate.SetStr(endDate);
    if (ret == 0) ret = schedule.startTime.SetStr(startTime);
    if (ret == 0) ret = schedule.endTime.SetStr(endTime);
    if (ret == 0) ret = schedule.repeat.SetStr(repeat);
    if (ret == 0 && everyWeek) ret = schedule.everyWeek.SetStr(everyWeek);
    if (ret == 0) ret = schedule.everyWeekday.SetStr(everyWeekday.c_str());
    if (ret == 0 && toUtc) ret = schedule.ToUtc();
    if (ret != 0) comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
    return ret;
}

}  // namespace

int FillScheduleDates(const ConvRow& row, CiofSchedule& schedule, std::string* outStartDate,
                      std::string* outEndDate, std::string* outStartTime, std::string* outEndTime,
                      std::string* outEveryWeekday, bool toUtc) {
    if (!outStartDate) return CS3_ERR_ARGUMENT;
    const char* endDate = ValueOf(row, "enddate");
    if (!endDate)
        endDate = kScheduleOpenEnd;
    else if (std::strcmp(endDate, "21000101") >= 0)
        endDate = kScheduleLastEnd;
    const int ret = FillFromRow(row, ValueOf(row, "startdate"), endDate, schedule, toUtc);
    if (ret != 0) return ret;
    *outStartDate = schedule.startDate.GetStr();
    if (outEndDate) *outEndDate = schedule.endDate.GetStr();
    if (outStartTime) *outStartTime = schedule.startTime.GetStr();
    if (outEndTime) *outEndTime = schedule.endTime.GetStr();
    if (outEveryWeekday) *outEveryWeekday = schedule.everyWeekday.GetStr();
    return 0;
}

int FillScheduleOnDate(const ConvRow& row, const char* date, CiofSchedule& schedule, bool toUtc) {
    return FillFromRow(row, date, date, schedule, toUtc);
}
