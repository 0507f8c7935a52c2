// The index master's writer: the row's module and sub-code as an UPDATE condition.
#include "MakeConvEToKiv/convcom/kiv_index.h"

#include <strings.h>

#include <cstdio>

namespace {

// The condition text holds at most this many characters.
constexpr std::size_t kWhereMax = 127;

void AppendWhere(std::string& where, const char* format, const char* name, const char* value) {
    char piece[kWhereMax + 1];
    std::snprintf(piece, sizeof piece, format, name, value);
    where.append(piece);
    if (where.size() > kWhereMax) where.resize(kWhereMax);
}

}  // namespace

int32_t kiv_index::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (name && value) {
        if (strcasecmp(name, "SID_MODULE") == 0)
            AppendWhere(whereText, "%s=%s AND ", "SID_MODULE", value);
        else if (strcasecmp(name, "SUBCODE") == 0)
            AppendWhere(whereText, "%s='%s'", "SUBCODE", value);
    }
    return ConvDBEntry::AddColumnValue(name, value, type);
}
