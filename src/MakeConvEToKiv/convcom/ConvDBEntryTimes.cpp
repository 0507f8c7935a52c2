// Creation and update times to UTC, then the plain INSERT.
#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"

int32_t ConvDBEntryTimes::Entry(const char* table, ConvRow& row) {
    if (NormalizeCreateUpdateTimes(row, "cretime", "updtime") != 0) {
        SetTitle(table);
        ReportRowMessage(row, kConvValueDropped, CONV_HERE, true,
                         "作成日時、更新日時のタイムゾーン変換に失敗しましたが処理を続行しました。");
        return kConvRowSkipped;
    }
    return ConvDBEntry::Entry(table, row);
}
