// TT_SCHEDULE_OTHERTO rows.
#include "MakeConvEToKiv/convsch/kiv_scheduleotherto.h"

#include <cstring>
#include <strings.h>

#include "MakeConvEToKiv/convsch/FillScheduleDates.h"
#include "MakeConvEToKiv/convsch/kiv_schcommon.h"
#include "MakeConvLib/cxiosch/CiofSchedule.h"

namespace {

// Read for the dates and the messages only.
const char* const kReadOnly[] = {"starttime", "endtime", "repeat", "event", "detail", nullptr};

}  // namespace

kiv_scheduleotherto::kiv_scheduleotherto(ConvApp* app, CdDBConnection* connection)
    : ConvDBEntry(app, connection), nowStamp(SchNowStamp()) {}

void kiv_scheduleotherto::AppendKeys(std::string& text) const {
    if (currentRow) {
        AppendRowKeys(*currentRow, text);
    } else {
        ConvDBEntry::AppendKeys(text);
    }
}

int32_t kiv_scheduleotherto::CollectColumns(const char* table, ConvRow& row) {
    currentRow = &row;
    CiofSchedule schedule;
    if (FillScheduleDates(row, schedule, &startDate, &endDate, nullptr, nullptr, nullptr, true) != 0)
        return SchReportDates(*this, row, kSchDatesFailed);
    return ConvDBEntry::CollectColumns(table, row);
}

int32_t kiv_scheduleotherto::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (strcasecmp(name, "ID") == 0) {
        std::string id;
        const int32_t ret = SchMakeId(*this, currentRow, value, id);
        if (ret != 0) return ret;
        return ConvDBEntry::AddColumnValue(name, id.c_str(), kRowTypeText);
    }
    // The kind is a code such as "1", and the target keeps it as text.
    if (std::strcmp(name, "otherto_type") == 0) return ConvDBEntry::AddColumnValue(name, value, kRowTypeText);
    if (strcasecmp(name, "startdate") == 0)
        return ConvDBEntry::AddColumnValue(name, startDate.empty() ? value : startDate.c_str(), type);
    if (strcasecmp(name, "enddate") == 0)
        return ConvDBEntry::AddColumnValue(name, endDate.empty() ? value : endDate.c_str(), type);
    if (strcasecmp(name, "cretime") == 0 || strcasecmp(name, "updtime") == 0) {
        std::string stamp;
        const int32_t ret = SchUtcStamp(*this, currentRow, value, stamp);
        if (ret != 0) return ret;
        return ConvDBEntry::AddColumnValue(name, stamp.c_str(), type);
    }
    if (SchIsLogColumn(name) || SchNameIn(name, kReadOnly)) return 0;
    return ConvDBEntry::AddColumnValue(name, value, type);
}

int32_t kiv_scheduleotherto::AddNullColumn(const char* name, uint32_t type) {
    if (strcasecmp(name, "cretime") == 0 || strcasecmp(name, "updtime") == 0)
        return ConvDBEntry::AddColumnValue(name, nowStamp.c_str(), kRowTypeText);
    if (strcasecmp(name, "enddate") == 0 && !endDate.empty())
        return ConvDBEntry::AddColumnValue(name, endDate.c_str(), kRowTypeText);
    return ConvDBEntry::AddNullColumn(name, type);
}
