// The JIS / UCS-2 tables of the encoding converters.
// Written by tools/gen_jis_table.py; edit the generator, not this file.
#pragma once

#include <cstdint>

struct JisUcsRow {
    std::int32_t row;    // JIS first byte, 0 for the alternative part
    std::int32_t first;  // first index in jisUcsTable
    std::int32_t last;   // last index, inclusive
};

inline constexpr int jisUcsCount = 7730;     // entries before the closing zero entry
inline constexpr int jisUcsAltFirst = 6962;  // first entry of the alternative part
inline constexpr int jisUcsRowCount = 79;
inline constexpr int kanaUcsCount = 158;    // entries before the closing zero entry

// JIS first byte, JIS second byte, UCS-2 high byte, UCS-2 low byte.
extern const unsigned char jisUcsTable[jisUcsCount + 1][4];
extern const JisUcsRow jisUcsRows[jisUcsRowCount];
// Single byte, UCS-2 high byte, UCS-2 low byte.
extern const unsigned char kanaUcsTable[kanaUcsCount + 1][3];
