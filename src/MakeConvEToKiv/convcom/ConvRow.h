// The row that passes between readers, conversions and writers: a vector of owned
// items (column name, value or SQL NULL, type), and the free operations on it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// Item types: how a value is written into a statement.
inline constexpr uint32_t kRowTypeText = 0;    // quoted literal
inline constexpr uint32_t kRowTypeNumber = 1;  // raw text, empty means NULL
inline constexpr uint32_t kRowTypeLong = 2;    // bound as a statement parameter
inline constexpr uint32_t kRowTypeList = 9;    // nested list, never written as a column

struct ConvRowItem {
    ConvRowItem() = default;
    ConvRowItem(std::string nameIn, std::optional<std::string> valueIn, uint32_t typeIn)
        : name(std::move(nameIn)), value(std::move(valueIn)), type(typeIn) {}

    // The value as C text, nullptr for SQL NULL.
    const char* Value() const { return value ? value->c_str() : nullptr; }
    bool HasValue() const { return value.has_value(); }

    std::string name;                  // column name; compared without regard to case
    std::optional<std::string> value;  // none for SQL NULL
    uint32_t type = kRowTypeText;
    std::vector<std::string> list;  // the entries of a type 9 item
};

using ConvRow = std::vector<std::unique_ptr<ConvRowItem>>;

// Column lookups compare names without regard to case; the first match wins.
ConvRowItem* FindItem(const ConvRow& row, const char* name);
// The value of the first item of that name; nullptr when there is none or it is NULL.
const char* FindColumn(const ConvRow& row, const char* name);
// Appends an item; a null or empty value becomes SQL NULL. 0, or -1099 without a name.
int32_t AddColumn(const char* name, const char* value, uint32_t type, ConvRow& row);
// Replaces the value of the first item with both that name and that type, or
// appends one. A null or empty value becomes SQL NULL.
int32_t SetColumn(const char* name, const char* value, uint32_t type, ConvRow& row);
// Removes the first item of that name; 1 when there was none.
int32_t RemoveColumn(const char* name, ConvRow& row);
// Appends "sid_corporate" (the run's corporate id, type 1), then copies of the items
// of source as long as they have values; the first item without one ends the copy
// with -1109.
int32_t AddCorporateColumn(const ConvRow& source, ConvRow& row);

// Turns the 14-digit local stamps of two columns into UTC: a column that has a
// value is shifted by itself; when only one has a value, both take its shifted
// value; when neither has, both take the current UTC time. 1 when a shift fails.
int32_t NormalizeCreateUpdateTimes(ConvRow& row, const char* createName, const char* updateName);
