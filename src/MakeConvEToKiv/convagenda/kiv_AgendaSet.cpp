// Writer of the minutes' common settings (UPDATE of the existing row).
#include "MakeConvEToKiv/convagenda/kiv_AgendaSet.h"

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "base/comTime.h"

kiv_AgendaSet::kiv_AgendaSet(ConvApp* app, CdDBConnection* connection) : ConvDBEntry(app, connection) {
    SetUpdateMode(true);
}

kiv_AgendaSet::~kiv_AgendaSet() = default;

int32_t kiv_AgendaSet::CollectColumns(const char* table, ConvRow& row) {
    int32_t ret = ConvDBEntry::CollectColumns(table, row);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    char now[32] = {};
    comTimeNowStamp(now, false);
    ret = AddColumnValue("updtime", now, kRowTypeText);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}
