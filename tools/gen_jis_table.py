#!/usr/bin/env python3
"""Writes the JIS / UCS-2 tables of the encoding converters.

Output: src/base/jisUcsTable.h and src/base/jisUcsTable.cpp. Run it from
anywhere; `--check` only compares the files with what it would write and exits
with 1 when they differ.

What the tables hold, and why in this order:

jisUcsTable, four bytes an entry (JIS first, JIS second, UCS-2 high, UCS-2 low),
closed by an all-zero entry. Two parts:

  main part   JIS X 0208 rows 0x21-0x28 and 0x30-0x74 plus the NEC special row
              0x2D, in row order. Each JIS code is turned into Shift_JIS by the
              same arithmetic the converter uses and decoded with Python's cp932
              codec, so the values are the CP932 ones (0x2141 is U+FF5E, 0x224C
              is U+FFE2). Only codes the codec decodes are listed. The NEC row
              repeats a few symbols of rows 0x21/0x22 (U+2252, U+2235, ...);
              being later in the table, a UCS-2 to JIS lookup keeps the JIS X
              0208 code for them, as CP932 does.

  alternative part, searched from the JIS side only when a row has no match:
    1. the standard JIS forms of the codes whose CP932 value differs from the
       JIS X 0208 mapping (Python's euc_jp codec): U+301C, U+2016, U+2212,
       U+00A2, U+00A3 and U+00AC. Their JIS codes are found first in the main
       part, so from JIS they still give the CP932 value; from UCS-2 both forms
       give the same JIS code.
    2. rows 0x79-0x7C, the NEC-selected IBM extensions (CP932 lead bytes
       0xED/0xEE by the arithmetic).
    3. rows 0x93-0x97, the IBM extensions (lead bytes 0xFA-0xFC by the
       arithmetic). They come after step 2, so a UCS-2 lookup of a character
       present in both gives the row 0x79-0x7C code; the Shift_JIS writer maps
       those rows onto the IBM codes, as CP932 encodes them.

jisUcsRows, one entry a row of the main part: row byte, first and last index
(inclusive). A last entry with row byte 0 covers the alternative part, its last
index being that of the closing zero entry.

kanaUcsTable, three bytes an entry (byte, UCS-2 high, UCS-2 low), closed by a
zero byte: ASCII 0x20-0x7E to itself, then JIS X 0201 katakana 0x21-0x5F to
U+FF61-U+FF9F.
"""

import argparse
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADER = ROOT / "src" / "base" / "jisUcsTable.h"
SOURCE = ROOT / "src" / "base" / "jisUcsTable.cpp"

MAIN_ROWS = list(range(0x21, 0x29)) + [0x2D] + list(range(0x30, 0x75))
NEC_SELECTED_ROWS = range(0x79, 0x7D)
IBM_ROWS = range(0x93, 0x98)


def jis_to_sjis(first, second):
    """The JIS to Shift_JIS arithmetic of the converter."""
    lead = (first + 1) // 2 + (0x70 if first < 0x5F else 0xB0)
    if first & 1:
        trail = second + (31 if second < 0x60 else 32)
    else:
        trail = second + 126
    return bytes([lead, trail])


def decode_one(data, codec):
    """The single UCS-2 character data decodes to, or None."""
    try:
        text = data.decode(codec)
    except UnicodeDecodeError:
        return None
    if len(text) != 1 or ord(text) > 0xFFFF:
        return None
    return ord(text)


def cp932_row(first):
    entries = []
    for second in range(0x21, 0x7F):
        ucs = decode_one(jis_to_sjis(first, second), "cp932")
        if ucs is not None:
            entries.append((first, second, ucs))
    return entries


def build():
    main, rows = [], []
    for first in MAIN_ROWS:
        entries = cp932_row(first)
        rows.append((first, len(main), len(main) + len(entries) - 1))
        main.extend(entries)

    alt = []
    for first, second, ucs in main:
        if first == 0x2D:
            continue
        standard = decode_one(bytes([first | 0x80, second | 0x80]), "euc_jp")
        if standard is not None and standard != ucs:
            alt.append((first, second, standard))
    for first in NEC_SELECTED_ROWS:
        alt.extend(cp932_row(first))
    for first in IBM_ROWS:
        alt.extend(cp932_row(first))

    table = main + alt
    rows.append((0, len(main), len(table)))

    kana = [(b, b) for b in range(0x20, 0x7F)]
    kana += [(b, 0xFF61 + b - 0x21) for b in range(0x21, 0x60)]
    return table, len(main), rows, kana


def flush_full(out, line, per_line):
    """Moves the collected entries to out as one line once there are per_line of them."""
    if len(line) >= per_line:
        out.append("    " + " ".join(line))
        line.clear()


def render(table, alt_first, rows, kana):
    header = f"""\
// The JIS / UCS-2 tables of the encoding converters.
// Written by tools/gen_jis_table.py; edit the generator, not this file.
#pragma once

#include <cstdint>

struct JisUcsRow {{
    std::int32_t row;    // JIS first byte, 0 for the alternative part
    std::int32_t first;  // first index in jisUcsTable
    std::int32_t last;   // last index, inclusive
}};

inline constexpr int jisUcsCount = {len(table)};     // entries before the closing zero entry
inline constexpr int jisUcsAltFirst = {alt_first};  // first entry of the alternative part
inline constexpr int jisUcsRowCount = {len(rows)};
inline constexpr int kanaUcsCount = {len(kana)};    // entries before the closing zero entry

// JIS first byte, JIS second byte, UCS-2 high byte, UCS-2 low byte.
extern const unsigned char jisUcsTable[jisUcsCount + 1][4];
extern const JisUcsRow jisUcsRows[jisUcsRowCount];
// Single byte, UCS-2 high byte, UCS-2 low byte.
extern const unsigned char kanaUcsTable[kanaUcsCount + 1][3];
"""

    out = [
        "// The JIS / UCS-2 tables of the encoding converters: data only.",
        "// Written by tools/gen_jis_table.py; edit the generator, not this file.",
        '#include "base/jisUcsTable.h"',
        "",
        "// clang-format off",
        "const unsigned char jisUcsTable[jisUcsCount + 1][4] = {",
    ]
    starts = {first: (row, f"row 0x{row:02X}") for row, first, _ in rows[:-1]}
    starts[alt_first] = (0, "alternative part")
    line = []
    for index, (first, second, ucs) in enumerate(table):
        if index in starts:
            flush_full(out, line, 1)
            out.append(f"    // {starts[index][1]}, index {index}")
        line.append(f"{{0x{first:02X},0x{second:02X},0x{ucs >> 8:02X},0x{ucs & 0xFF:02X}}},")
        flush_full(out, line, 4)
    flush_full(out, line, 1)
    out.append("    {0x00,0x00,0x00,0x00},")
    out.append("};")
    out.append("")
    out.append("const JisUcsRow jisUcsRows[jisUcsRowCount] = {")
    for row, first, last in rows:
        out.append(f"    {{0x{row:02X}, {first}, {last}}},")
    out.append("};")
    out.append("")
    out.append("const unsigned char kanaUcsTable[kanaUcsCount + 1][3] = {")
    line = []
    for byte, ucs in kana:
        line.append(f"{{0x{byte:02X},0x{ucs >> 8:02X},0x{ucs & 0xFF:02X}}},")
        flush_full(out, line, 6)
    flush_full(out, line, 1)
    out.append("    {0x00,0x00,0x00},")
    out.append("};")
    out.append("// clang-format on")
    return header, "\n".join(out) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true",
                        help="compare the files with the generated text instead of writing them")
    args = parser.parse_args()

    header, source = render(*build())
    if args.check:
        stale = [str(p) for p, text in ((HEADER, header), (SOURCE, source))
                 if not p.exists() or p.read_text(encoding="ascii") != text]
        for path in stale:
            print(f"out of date: {path}", file=sys.stderr)
        return 1 if stale else 0
    HEADER.write_text(header, encoding="ascii")
    SOURCE.write_text(source, encoding="ascii")
    return 0


if __name__ == "__main__":
    sys.exit(main())
