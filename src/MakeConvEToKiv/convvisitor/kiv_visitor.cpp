// Writer of the visitors (TT_VISITOR).
#include "MakeConvEToKiv/convvisitor/kiv_visitor.h"

#include <strings.h>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "database/CdDB.h"

namespace {
constexpr int32_t kRowConvertFailed = -8000001;
}

kiv_visitor::~kiv_visitor() = default;

void kiv_visitor::AppendKeys(std::string& text) const {
    if (currentRow) AppendRowKeys(*currentRow, text);
    else ConvDBEntry::AppendKeys(text);
}

int32_t kiv_visitor::Entry(const char* table, ConvRow& row) {
    currentRow = &row;
    if (NormalizeCreateUpdateTimes(row, "cretime", "updtime") != 0) {
        ReportRowMessage(row, kRowConvertFailed, CONV_HERE, true, "%s",
                         "作成日時、更新日時のタイムゾーン変換に失敗しましたが処理を続行しました。");
        currentRow = nullptr;
        return kConvRowSkipped;
    }
    const int32_t ret = ConvDBEntry::Entry(table, row);
    currentRow = nullptr;
    return ret;
}

int32_t kiv_visitor::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (name && strcasecmp(name, "ID") == 0) return 0;
    if (name && strcasecmp(name, "SID_SCHEDULE") == 0) {
        // An empty link is no link: the visitor stands without a schedule.
        if (!value || !*value) return 0;
        char id[kCdDBBase36Size] = {};
        const int ret = MakeBase36Id(value, id);
        if (ret != 0) {
            ReportMessage(ret, CONV_HERE, true, "スケジュールＩＤ[%s]の作成に失敗しましたが処理を続行しました。",
                          value ? value : "");
            return kConvRowSkipped;
        }
        return ConvDBEntry::AddColumnValue(name, id, kRowTypeText);
    }
    return ConvDBEntry::AddColumnValue(name, value, type);
}
