// The open and the finished minutes' indexes.
#include "MakeConvSToKiv/convstdagenda/kiv_std_agendaindex.h"

#include <cstdio>

#include "base/comSource.h"

kiv_std_agendaindex::kiv_std_agendaindex(ConvApp* appIn, const char* indexPathIn, bool loadAllIn)
    : ConvStdComIDIndex(appIn, indexPathIn, loadAllIn) {
    SetHashedDirectory(true);
}

int kiv_std_agendaindex::MakeRecordPath(int id) {
    char buf[kPathMax + 1];
    const int n = std::snprintf(buf, sizeof buf, "%s/%d/%d/info", directory.c_str(), id / kGroupUnit + 1, id);
    if (n < 0 || static_cast<std::size_t>(n) > kPathMax) return -1;
    path = buf;
    return 0;
}

int kiv_std_agendaindexend::ReadIndex() {
    const int ret = kiv_std_agendaindex::ReadIndex();
    if (ret == -16) return ret;  // no list: no finished minutes
    if (ret != 0) {
        ReportFileError(ret, CONV_HERE, 0, "ファイルの読み込みに失敗しました。");
        return ret;
    }
    return static_cast<int>(Ids().size());
}
