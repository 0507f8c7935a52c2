// Shared column rules of the schedule writers.
#include "MakeConvEToKiv/convsch/kiv_schcommon.h"

#include <strings.h>

#include <cctype>

#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"
#include "base/comTime.h"
#include "database/CdDB.h"

namespace {

int32_t Report(ConvDB& writer, const ConvRow* row, int32_t code, const char* message) {
    if (row) {
        writer.ReportRowMessage(*row, code, CONV_HERE, true, "%s", message);
    } else {
        writer.ReportMessage(code, CONV_HERE, true, "%s", message);
    }
    return kConvRowSkipped;
}

}  // namespace

int32_t SchMakeId(ConvDB& writer, const ConvRow* row, const char* value, std::string& out) {
    char id[16] = {};
    const int ret = MakeBase36Id(value, id);
    if (ret != 0) return Report(writer, row, ret, kSchIdFailed);
    out = id;
    return 0;
}

int32_t SchUtcStamp(ConvDB& writer, const ConvRow* row, const char* value, std::string& out) {
    char stamp[32] = {};
    if (LocalStampToUtc(value, stamp) != 0) return Report(writer, row, kConvValueDropped, kSchStampFailed);
    out = stamp;
    return 0;
}

int32_t SchReportDates(ConvDB& writer, const ConvRow& row, const char* message) {
    return Report(writer, &row, kConvValueDropped, message);
}

bool SchIsLogColumn(const char* name) { return name && strncasecmp(name, "LOG_", 4) == 0; }

bool SchNameIn(const char* name, const char* const* list) {
    if (!name) return false;
    // The first letters, folded, settle most entries without a call.
    const int first = std::tolower(static_cast<unsigned char>(*name));
    for (; *list; ++list) {
        if (std::tolower(static_cast<unsigned char>(**list)) == first && strcasecmp(name, *list) == 0) return true;
    }
    return false;
}

std::string SchNowStamp() {
    char stamp[16] = {};
    comTimeNowStamp(stamp, false);
    return stamp;
}
