// The two lists of minutes: data/agenda/index (open) and indexend (finished),
// key-form indexes whose record directories lie in groups of 30,000 ids,
// whatever directory unit the settings give.
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"

class kiv_std_agendaindex : public ConvStdComIDIndex {
public:
    // The store's fixed group size of the minutes' directories.
    static constexpr int kGroupUnit = 30000;

    kiv_std_agendaindex(ConvApp* app, const char* indexPath, bool loadAll);
    // "<dir>/<id / 30000 + 1>/<id>/info".
    int MakeRecordPath(int id) override;
};

// The finished minutes: the list has no `_lastid` of its own; the number of
// its entries stands in its place, and a `_lastid` above 0 is a broken file.
class kiv_std_agendaindexend : public kiv_std_agendaindex {
public:
    using kiv_std_agendaindex::kiv_std_agendaindex;
    int ReadIndex() override;
};
