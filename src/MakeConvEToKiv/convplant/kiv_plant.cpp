#include "MakeConvEToKiv/convplant/kiv_plant.h"

#include <strings.h>

#include <string>

#include "MakeConvEToKiv/convplant/ShiftTimeOfDay.h"

int32_t ShiftPlantTime(ConvDBEntry& writer, const char* name, const char* value, std::string& out) {
    out = value ? value : "";
    const char* format = nullptr;
    if (strcasecmp(name, "starttime") == 0)
        format = "開始時刻[%s]のタイムゾーン変換に失敗しましたが処理を続行しました。";
    else if (strcasecmp(name, "endtime") == 0)
        format = "終了時刻[%s]のタイムゾーン変換に失敗しましたが処理を続行しました。";
    else
        return 0;
    if (ShiftTimeOfDay(value, out) == 0) return 0;
    writer.ReportMessage(kConvValueDropped, CONV_HERE, true, format, value ? value : "");
    return kConvRowSkipped;
}

int32_t kiv_pltGroup::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (!name) return ConvDBEntryTimes::AddColumnValue(name, value, type);
    std::string shifted;
    const int32_t ret = ShiftPlantTime(*this, name, value, shifted);
    if (ret != 0) return ret;
    return ConvDBEntryTimes::AddColumnValue(name, shifted.c_str(), type);
}

int32_t kiv_plant::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (!name) return ConvDBEntryTimes::AddColumnValue(name, value, type);
    std::string shifted;
    const int32_t ret = ShiftPlantTime(*this, name, value, shifted);
    if (ret != 0) return ret;
    return ConvDBEntryTimes::AddColumnValue(name, shifted.c_str(), type);
}
