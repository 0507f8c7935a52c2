// TT_SCHEDULE rows: id, dates and stamps of the target.
#include "MakeConvEToKiv/convsch/kiv_schedule.h"

#include <strings.h>

#include "MakeConvEToKiv/convsch/FillScheduleDates.h"
#include "MakeConvEToKiv/convsch/kiv_schcommon.h"
#include "MakeConvLib/cxiosch/CiofSchedule.h"

kiv_schedule::kiv_schedule(ConvApp* app, CdDBConnection* connection)
    : ConvDBEntry(app, connection), nowStamp(SchNowStamp()) {}

void kiv_schedule::AppendKeys(std::string& text) const {
    if (currentRow) {
        AppendRowKeys(*currentRow, text);
    } else {
        ConvDBEntry::AppendKeys(text);
    }
}

int32_t kiv_schedule::CollectColumns(const char* table, ConvRow& row) {
    currentRow = &row;
    CiofSchedule schedule;
    if (FillScheduleDates(row, schedule, &startDate, &endDate, &startTime, &endTime, &everyWeekday, true) != 0)
        return SchReportDates(*this, row, kSchDatesFailed);
    return ConvDBEntry::CollectColumns(table, row);
}

int32_t kiv_schedule::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (strcasecmp(name, "ID") == 0) {
        std::string id;
        const int32_t ret = SchMakeId(*this, currentRow, value, id);
        if (ret != 0) return ret;
        return ConvDBEntry::AddColumnValue(name, id.c_str(), kRowTypeText);
    }
    const std::string* replacement = nullptr;
    if (strcasecmp(name, "startdate") == 0) replacement = &startDate;
    else if (strcasecmp(name, "enddate") == 0) replacement = &endDate;
    else if (strcasecmp(name, "starttime") == 0) replacement = &startTime;
    else if (strcasecmp(name, "endtime") == 0) replacement = &endTime;
    else if (strcasecmp(name, "everyweekday") == 0) replacement = &everyWeekday;
    if (replacement) {
        return ConvDBEntry::AddColumnValue(name, replacement->empty() ? value : replacement->c_str(), type);
    }
    if (strcasecmp(name, "cretime") == 0 || strcasecmp(name, "updtime") == 0) {
        std::string stamp;
        const int32_t ret = SchUtcStamp(*this, currentRow, value, stamp);
        if (ret != 0) return ret;
        return ConvDBEntry::AddColumnValue(name, stamp.c_str(), type);
    }
    if (strcasecmp(name, "visitor") == 0) {
        // Empty counts as missing, which is "0".
        const bool off = value[0] == '\0' || (value[0] == '0' && value[1] == '\0');
        return ConvDBEntry::AddColumnValue(name, off ? "0" : "1", kRowTypeText);
    }
    if (SchIsLogColumn(name)) return 0;
    return ConvDBEntry::AddColumnValue(name, value, type);
}

int32_t kiv_schedule::AddNullColumn(const char* name, uint32_t type) {
    if (strcasecmp(name, "cretime") == 0 || strcasecmp(name, "updtime") == 0)
        return ConvDBEntry::AddColumnValue(name, nowStamp.c_str(), kRowTypeText);
    // A schedule without an end runs to the open end, shifted like any other.
    if (strcasecmp(name, "enddate") == 0 && !endDate.empty())
        return ConvDBEntry::AddColumnValue(name, endDate.c_str(), kRowTypeText);
    if (strcasecmp(name, "visitor") == 0) return ConvDBEntry::AddColumnValue(name, "0", kRowTypeText);
    return ConvDBEntry::AddNullColumn(name, type);
}
