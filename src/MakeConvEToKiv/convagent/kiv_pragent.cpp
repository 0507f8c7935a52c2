#include "MakeConvEToKiv/convagent/kiv_pragent.h"

#include <strings.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convplant/ShiftTimeOfDay.h"
#include "base/comTime.h"

namespace {

// A whole integer text, blanks around it allowed; false for anything else.
bool ParseNumber(const std::string& text, long& number) {
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    number = std::strtol(begin, &end, 10);
    if (end == begin || errno == ERANGE) return false;
    while (*end == ' ' || *end == '\t') ++end;
    return *end == '\0';
}

bool IsBlank(const std::string& text) { return text.find_first_not_of(" \t") == std::string::npos; }

}  // namespace

int32_t ShiftDateAndTime(const char* date, const char* time, std::string& outDate, std::string& outTime) {
    if (!time || !*time) {
        outDate = date ? date : "";
        return 0;
    }
    std::string stamp = date ? date : "";
    stamp += time;
    stamp += "00";
    char utc[16] = {};
    if (LocalStampToUtc(stamp.c_str(), utc) != 0) return 1;
    outDate.assign(utc, 8);
    outTime.assign(utc + 8, 4);
    return 0;
}

int32_t kiv_pragent::CollectColumns(const char* table, ConvRow& row) {
    sendTimes.clear();
    sendLastDate.clear();
    sendLastTime.clear();

    if (const char* list = FindColumn(row, "SENDTIMES"); list && *list) {
        // Items are taken up to the limit; empty ones (a trailing comma) add nothing.
        const std::string text = list;
        std::size_t start = 0;
        for (int taken = 0; taken < kMaxSendTimes && start <= text.size(); ++taken) {
            std::size_t comma = text.find(',', start);
            if (comma == std::string::npos) comma = text.size();
            const std::string item = text.substr(start, comma - start);
            start = comma + 1;
            if (IsBlank(item)) continue;
            long number = 0;
            std::string shifted;
            char padded[32] = {};
            if (ParseNumber(item, number) && number >= 0) std::snprintf(padded, sizeof padded, "%04ld", number);
            if (!padded[0] || ShiftTimeOfDay(padded, shifted) != 0) {
                ReportRowMessage(row, kConvValueDropped, CONV_HERE, true,
                                 "通知時間[%s]のタイムゾーン変換に失敗しましたが処理を続行しました。", item.c_str());
                return kConvRowSkipped;
            }
            if (!sendTimes.empty()) sendTimes += ',';
            sendTimes += std::to_string(std::atoi(shifted.c_str()));
        }
    }

    const char* lastDate = FindColumn(row, "SENDLASTDATE");
    const char* lastTime = FindColumn(row, "SENDLASTTIME");
    if (lastDate && *lastDate && lastTime && *lastTime &&
        ShiftDateAndTime(lastDate, lastTime, sendLastDate, sendLastTime) != 0) {
        ReportRowMessage(row, kConvValueDropped, CONV_HERE, true,
                         "送信最終日時[%s %s]のタイムゾーン変換に失敗しましたが処理を続行しました。", lastDate,
                         lastTime);
        return kConvRowSkipped;
    }
    return ConvDBEntryTimes::CollectColumns(table, row);
}

int32_t kiv_pragent::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (name) {
        const std::string* replacement = nullptr;
        if (strcasecmp(name, "SENDTIMES") == 0)
            replacement = &sendTimes;
        else if (strcasecmp(name, "SENDLASTDATE") == 0)
            replacement = &sendLastDate;
        else if (strcasecmp(name, "SENDLASTTIME") == 0)
            replacement = &sendLastTime;
        if (replacement && !replacement->empty()) return ConvDBEntryTimes::AddColumnValue(name, replacement->c_str(), type);
    }
    return ConvDBEntryTimes::AddColumnValue(name, value, type);
}
