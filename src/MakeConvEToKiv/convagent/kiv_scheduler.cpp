#include "MakeConvEToKiv/convagent/kiv_scheduler.h"

#include <strings.h>

#include <string>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"
#include "MakeConvEToKiv/convplant/ShiftTimeOfDay.h"

int32_t kiv_scheduler::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (name && strcasecmp(name, "STIME") == 0) {
        std::string utc;
        if (ShiftTimeOfDay(value, utc) != 0) {
            ReportMessage(kConvValueDropped, CONV_HERE, true,
                          "開始時間[%s]のタイムゾーン変換に失敗しましたが処理を続行しました。", value ? value : "");
            return kConvRowSkipped;
        }
        return ConvDBEntry::AddColumnValue(name, utc.c_str(), type);
    }
    return ConvDBEntry::AddColumnValue(name, value, type);
}
