// TT_SCH_REPDATE rows.
#include "MakeConvEToKiv/convsch/kiv_schschrepdate.h"

#include <strings.h>

#include "MakeConvEToKiv/convsch/FillScheduleDates.h"
#include "MakeConvEToKiv/convsch/kiv_schcommon.h"
#include "MakeConvLib/cxiosch/CiofSchedule.h"

namespace {

const char* const kReadOnly[] = {"starttime", "endtime", "repeat", "everyweek", "everyweekday", "event", "detail",
                                 nullptr};

}  // namespace

kiv_schschrepdate::kiv_schschrepdate(ConvApp* app, CdDBConnection* connection)
    : ConvDBEntry(app, connection), nowStamp(SchNowStamp()) {}

void kiv_schschrepdate::AppendKeys(std::string& text) const {
    if (currentRow) {
        AppendRowKeys(*currentRow, text);
    } else {
        ConvDBEntry::AppendKeys(text);
    }
}

int32_t kiv_schschrepdate::CollectColumns(const char* table, ConvRow& row) {
    currentRow = &row;
    repeatDate.clear();
    const char* day = FindColumn(row, "SID_ASSIGN");
    CiofSchedule schedule;
    if (!day || FillScheduleOnDate(row, day, schedule, true) != 0)
        return SchReportDates(*this, row, "繰返し日のタイムゾーン変換に失敗しましたが処理を続行しました。");
    repeatDate = schedule.startDate.GetStr();
    return ConvDBEntry::CollectColumns(table, row);
}

int32_t kiv_schschrepdate::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (strcasecmp(name, "ID") == 0) {
        std::string id;
        const int32_t ret = SchMakeId(*this, currentRow, value, id);
        if (ret != 0) return ret;
        return ConvDBEntry::AddColumnValue(name, id.c_str(), kRowTypeText);
    }
    if (strcasecmp(name, "SID_ASSIGN") == 0) return ConvDBEntry::AddColumnValue(name, repeatDate.c_str(), kRowTypeText);
    if (strcasecmp(name, "cretime") == 0 || strcasecmp(name, "updtime") == 0) {
        std::string stamp;
        const int32_t ret = SchUtcStamp(*this, currentRow, value, stamp);
        if (ret != 0) return ret;
        return ConvDBEntry::AddColumnValue(name, stamp.c_str(), type);
    }
    if (SchIsLogColumn(name) || SchNameIn(name, kReadOnly)) return 0;
    return ConvDBEntry::AddColumnValue(name, value, type);
}

int32_t kiv_schschrepdate::AddNullColumn(const char* name, uint32_t type) {
    if (strcasecmp(name, "cretime") == 0 || strcasecmp(name, "updtime") == 0)
        return ConvDBEntry::AddColumnValue(name, nowStamp.c_str(), kRowTypeText);
    return ConvDBEntry::AddNullColumn(name, type);
}
