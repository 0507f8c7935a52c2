// Writer of the minutes' topics (TT_AGENDA_TOPIC).
#include "MakeConvEToKiv/convagenda/kiv_agendatopic.h"

#include <strings.h>

#include <cstdlib>
#include <memory>
#include <new>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvLib/cxiocom/MergeRichText.h"

namespace {

constexpr int32_t kNoMemory = -1102;

struct FreeDeleter {
    void operator()(char* p) const { std::free(p); }
};

bool IsName(const char* name, const char* wanted) { return name && strcasecmp(name, wanted) == 0; }

}  // namespace

kiv_agendatopic::~kiv_agendatopic() = default;

int32_t kiv_agendatopic::CollectColumns(const char* table, ConvRow& row) {
    try {
        // Copies: the row's values as they came, whatever the columns do.
        const char* memoValue = FindColumn(row, "memo");
        const char* formatValue = FindColumn(row, "format");
        const std::string memo = memoValue ? memoValue : "";
        const std::string format = formatValue ? formatValue : "";

        int32_t ret = ConvDBEntry::CollectColumns(table, row);
        if (ret != 0) return ret;

        char* merged = nullptr;
        ret = MergeRichText(memo.c_str(), format.c_str(), true, &merged);
        const std::unique_ptr<char, FreeDeleter> owned(merged);
        if (ret != 0) {
            ReportMessage(ret, CONV_HERE, true, "%s", "リッチテキスト型変換に失敗しましたが処理を続行しました。");
            return kConvRowSkipped;
        }
        richText = merged ? merged : "";
        // An empty parameter would be sent as NULL; an empty text is a literal.
        return ConvDBEntry::AddColumnValue("memo", richText.c_str(), richText.empty() ? kRowTypeText : kRowTypeLong);
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}

int32_t kiv_agendatopic::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (IsName(name, "memo")) return ConvDBEntry::AddColumnValue("format", value, type);
    if (IsName(name, "format")) return 0;
    const int32_t ret = ConvDBEntry::AddColumnValue(name, value, type);
    if (ret != 0 || !IsName(name, "agnid")) return ret;
    try {
        // Topics come grouped by their minutes: a new id starts a new count.
        const std::string agnid = value ? value : "";
        if (agnid != lastAgnid) {
            seqno = 1;
            lastAgnid = agnid;
        } else {
            ++seqno;
        }
        return ConvDBEntry::AddColumnValue("SEQNO", std::to_string(seqno).c_str(), kRowTypeNumber);
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}
