// Free operations on a row: lookup, adding, replacing and removing columns, the
// corporate column, and the shift of creation and update stamps to UTC.
#include "MakeConvEToKiv/convcom/ConvRow.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "base/comTime.h"
#include "database/CdDBConnection.h"

namespace {

std::optional<std::string> ValueOrNull(const char* value) {
    if (!value || !*value) return std::nullopt;
    return std::string(value);
}

bool SameName(const std::string& a, const char* b) { return strcasecmp(a.c_str(), b) == 0; }

// SameName for a b of known length: folding case keeps the length, so the
// length decides most comparisons without a call.
bool SameName(const std::string& a, const char* b, std::size_t bLength) {
    return a.size() == bLength && strncasecmp(a.data(), b, bLength) == 0;
}

// Sets the first column of that name, or appends it as a quoted text.
void PutStamp(ConvRow& row, const char* name, const char* stamp) {
    if (ConvRowItem* item = FindItem(row, name))
        item->value = ValueOrNull(stamp);
    else
        AddColumn(name, stamp, kRowTypeText, row);
}

}  // namespace

ConvRowItem* FindItem(const ConvRow& row, const char* name) {
    if (!name) return nullptr;
    const std::size_t length = std::strlen(name);
    for (const auto& item : row)
        if (item && SameName(item->name, name, length)) return item.get();
    return nullptr;
}

const char* FindColumn(const ConvRow& row, const char* name) {
    const ConvRowItem* item = FindItem(row, name);
    return item ? item->Value() : nullptr;
}

int32_t AddColumn(const char* name, const char* value, uint32_t type, ConvRow& row) {
    if (!name) return kDbBadArgument;
    row.push_back(std::make_unique<ConvRowItem>(name, ValueOrNull(value), type));
    return 0;
}

int32_t SetColumn(const char* name, const char* value, uint32_t type, ConvRow& row) {
    if (!name) return kDbBadArgument;
    for (auto& item : row) {
        if (item && item->type == type && SameName(item->name, name)) {
            item->value = ValueOrNull(value);
            return 0;
        }
    }
    return AddColumn(name, value, type, row);
}

int32_t RemoveColumn(const char* name, ConvRow& row) {
    if (!name) return 1;
    auto it =
        std::find_if(row.begin(), row.end(), [name](const auto& item) { return item && SameName(item->name, name); });
    if (it == row.end()) return 1;
    row.erase(it);
    return 0;
}

int32_t AddCorporateColumn(const ConvRow& source, ConvRow& row) {
    const std::string corporate = std::to_string(GetCorporateId());
    AddColumn("sid_corporate", corporate.c_str(), kRowTypeNumber, row);
    for (const auto& item : source) {
        if (!item) continue;
        if (!item->HasValue() && item->type != kRowTypeList) return -1109;
        row.push_back(std::make_unique<ConvRowItem>(*item));
    }
    return 0;
}

int32_t NormalizeCreateUpdateTimes(ConvRow& row, const char* createName, const char* updateName) {
    const char* created = FindColumn(row, createName);
    const char* updated = FindColumn(row, updateName);
    // Copies: the row's values change below.
    const std::string createdText = created ? created : "";
    const std::string updatedText = updated ? updated : "";

    char first[16] = {};
    char second[16] = {};
    if (createdText.empty() && updatedText.empty()) {
        comTimeNowStamp(first, false);
        PutStamp(row, createName, first);
        PutStamp(row, updateName, first);
        return 0;
    }
    if (updatedText.empty() || createdText.empty()) {
        const std::string& only = createdText.empty() ? updatedText : createdText;
        if (LocalStampToUtc(only.c_str(), first) != 0) return 1;
        PutStamp(row, createName, first);
        PutStamp(row, updateName, first);
        return 0;
    }
    if (LocalStampToUtc(createdText.c_str(), first) != 0) return 1;
    if (LocalStampToUtc(updatedText.c_str(), second) != 0) return 1;
    PutStamp(row, createName, first);
    PutStamp(row, updateName, second);
    return 0;
}
