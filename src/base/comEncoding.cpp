// EUC-JP, Shift_JIS and UTF-8 converters with ISO-2022-JP as the hub, over the program's
// own JIS / UCS-2 tables; no iconv, no locale.
#include "base/comEncoding.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "base/jisUcsTable.h"

namespace {

using Byte = unsigned char;

constexpr Byte kEsc = 0x1B;
constexpr Byte kShiftOut = 0x0E;
constexpr Byte kShiftIn = 0x0F;
constexpr char16_t kFullWidthQuestion = 0xFF1F;
constexpr char16_t kKanaFirst = 0xFF61;
constexpr char16_t kKanaLast = 0xFF9F;

enum class JisMode : Byte { Ascii, Double, Kana };

// ---------------------------------------------------------------------------------------
// Table searches, in the order that decides every result.

char16_t EntryUcs(int index) {
    return static_cast<char16_t>(jisUcsTable[index][2] << 8 | jisUcsTable[index][3]);
}

// JIS to UCS-2: the row of the first byte, scanned for the second byte; when that row
// has no match, the alternative part by both bytes. 0 when neither has the code.
char16_t SearchJis(Byte first, Byte second) {
    const JisUcsRow* alternative = nullptr;
    for (const JisUcsRow& row : jisUcsRows) {
        if (row.row == 0) {
            alternative = &row;
        } else if (row.row == first) {
            for (int i = row.first; i <= row.last; ++i) {
                if (jisUcsTable[i][1] == second) return EntryUcs(i);
            }
        }
    }
    if (alternative != nullptr) {
        for (int i = alternative->first; i <= alternative->last; ++i) {
            if (jisUcsTable[i][0] == first && jisUcsTable[i][1] == second) return EntryUcs(i);
        }
    }
    return 0;
}

// Half-width katakana byte (0x21-0x5F) to UCS-2. The table's ASCII half holds the same
// bytes, so only entries with a katakana value count. 0 when there is none.
char16_t SearchKana(Byte byte) {
    for (int i = 0; i < kanaUcsCount; ++i) {
        const char16_t ucs = static_cast<char16_t>(kanaUcsTable[i][1] << 8 | kanaUcsTable[i][2]);
        if (kanaUcsTable[i][0] == byte && ucs >= kKanaFirst && ucs <= kKanaLast) return ucs;
    }
    return 0;
}

// UCS-2 to JIS: the first entry of the whole table with that value, -1 when none.
int FindJisEntry(char32_t ucs) {
    for (int i = 0; i < jisUcsCount; ++i) {
        if (EntryUcs(i) == ucs) return i;
    }
    return -1;
}

// UCS-2 to the single-byte table: the first entry with that value, -1 when none.
int FindKanaEntry(char32_t ucs) {
    for (int i = 0; i < kanaUcsCount; ++i) {
        if (static_cast<char32_t>(kanaUcsTable[i][1] << 8 | kanaUcsTable[i][2]) == ucs) return i;
    }
    return -1;
}

// UTF-8 of one UCS-2 value, packed for a single store: the bytes in order from the
// lowest, the length in the top byte.
std::uint32_t PackUtf8(char16_t ucs) {
    if (ucs < 0x80) return 1u << 24 | ucs;
    if (ucs < 0x800) return 2u << 24 | (0x80u | (ucs & 0x3F)) << 8 | (0xC0u | ucs >> 6);
    return 3u << 24 | (0x80u | (ucs & 0x3F)) << 16 | (0x80u | (ucs >> 6 & 0x3F)) << 8 | (0xE0u | ucs >> 12);
}

// The UTF-8 that SearchJis and SearchKana lead to, for every code that real text uses,
// computed once from the tables, so that JIS to UTF-8 costs one load a character.
// Codes outside the window go to SearchJis itself.
constexpr Byte kIndexFirstLow = 0x21;
constexpr Byte kIndexFirstHigh = 0x98;  // highest first byte a Shift_JIS lead gives
constexpr Byte kIndexSecondLow = 0x21;
constexpr Byte kIndexSecondHigh = 0x7E;
constexpr int kIndexRows = kIndexFirstHigh - kIndexFirstLow + 1;
constexpr int kIndexColumns = kIndexSecondHigh - kIndexSecondLow + 1;

std::uint32_t DoubleUtf8(Byte first, Byte second) {
    const char16_t ucs = SearchJis(first, second);
    return PackUtf8(ucs != 0 ? ucs : kFullWidthQuestion);
}

std::uint32_t KanaUtf8(Byte byte) {
    const char16_t ucs = SearchKana(byte);
    return ucs != 0 ? PackUtf8(ucs) : PackUtf8(u'?');
}

struct JisIndex {
    std::array<std::uint32_t, kIndexRows * kIndexColumns> jis{};
    std::array<std::uint32_t, 256> kana{};

    std::uint32_t Double(Byte first, Byte second) const {
        const unsigned row = static_cast<unsigned>(first - kIndexFirstLow);
        const unsigned column = static_cast<unsigned>(second - kIndexSecondLow);
        if (row < kIndexRows && column < kIndexColumns) return jis[row * kIndexColumns + column];
        return DoubleUtf8(first, second);
    }
};

JisIndex BuildJisIndex() {
    JisIndex index;
    for (int row = 0; row < kIndexRows; ++row) {
        for (int column = 0; column < kIndexColumns; ++column) {
            index.jis[row * kIndexColumns + column] =
                DoubleUtf8(static_cast<Byte>(kIndexFirstLow + row), static_cast<Byte>(kIndexSecondLow + column));
        }
    }
    for (int byte = 0; byte < 256; ++byte) index.kana[byte] = KanaUtf8(static_cast<Byte>(byte));
    return index;
}

const JisIndex& Index() {
    static const JisIndex index = BuildJisIndex();
    return index;
}

// ---------------------------------------------------------------------------------------
// Writing JIS.

class JisWriter {
public:
    explicit JisWriter(char* out, JisMode mode = JisMode::Ascii)
        : start_(reinterpret_cast<Byte*>(out)), out_(start_), mode_(mode) {}

    void Single(Byte byte) {
        Switch(JisMode::Ascii);
        *out_++ = byte;
    }
    void Double(Byte first, Byte second) {
        Switch(JisMode::Double);
        out_[0] = first;
        out_[1] = second;
        out_ += 2;
    }
    void Kana(Byte byte) {
        Switch(JisMode::Kana);
        *out_++ = byte;
    }
    // Leaves the mode and terminates; returns the length written.
    std::size_t Finish() {
        Switch(JisMode::Ascii);
        *out_ = 0;
        return static_cast<std::size_t>(out_ - start_);
    }
    // Bytes written so far; the mode stays as it is, for more text to follow.
    std::size_t Written() const { return static_cast<std::size_t>(out_ - start_); }
    JisMode Mode() const { return mode_; }

private:
    void Switch(JisMode mode) {
        if (mode == mode_) return;
        const char* sequence = mode == JisMode::Double ? "\x1b$B" : mode == JisMode::Kana ? "\x1b(I" : "\x1b(B";
        std::memcpy(out_, sequence, 3);
        out_ += 3;
        mode_ = mode;
    }

    Byte* start_;
    Byte* out_;
    JisMode mode_;
};

// ---------------------------------------------------------------------------------------
// Reading JIS: the escape sequences and shifts are taken here, and the sink sees
// Single (ASCII mode, or a control byte in any mode), Double (a pair in double-byte
// mode), Kana (a byte in katakana mode) and Lone (a first byte whose pair is cut off).

struct Escape {
    std::string_view sequence;
    JisMode mode;
};

constexpr Escape kEscapes[] = {
    {"\x1b$B", JisMode::Double}, {"\x1b$@", JisMode::Double}, {"\x1b&@", JisMode::Double},
    {"\x1b$(D", JisMode::Double}, {"\x1b(I", JisMode::Kana},  {"\x1b(B", JisMode::Ascii},
    {"\x1b(J", JisMode::Ascii},  {"\x1b(H", JisMode::Ascii},
};

// Length of the escape sequence at p (which is ESC), 0 when it isn't one of ours.
std::size_t ReadEscape(const Byte* p, const Byte* end, JisMode& mode) {
    const std::size_t left = static_cast<std::size_t>(end - p);
    for (const Escape& escape : kEscapes) {
        const std::size_t size = escape.sequence.size();
        if (left >= size && std::memcmp(p, escape.sequence.data(), size) == 0) {
            mode = escape.mode;
            return size;
        }
    }
    return 0;
}

// True when the bytes from p to end begin one of our escape sequences without
// completing it: more input decides what they are.
bool IsEscapePrefix(const Byte* p, const Byte* end) {
    const std::size_t left = static_cast<std::size_t>(end - p);
    for (const Escape& escape : kEscapes) {
        if (left < escape.sequence.size() && std::memcmp(p, escape.sequence.data(), left) == 0) return true;
    }
    return false;
}

// The JIS reader with its state, so that a text may arrive in parts. With final
// unset it stops before bytes whose meaning depends on what follows (a cut escape
// sequence, the first byte of a pair) and returns where it stopped.
class JisReader {
public:
    explicit JisReader(bool takeShifts) : takeShifts_(takeShifts) {}

    template <class Sink>
    const Byte* Read(const Byte* p, const Byte* end, bool final, Sink& sink) {
        while (p < end) {
            const Byte byte = *p;
            if (byte == kEsc) {
                JisMode next = mode_;
                if (const std::size_t size = ReadEscape(p, end, next)) {
                    mode_ = next;
                    shifted_ = false;
                    p += size;
                } else if (!final && IsEscapePrefix(p, end)) {
                    return p;
                } else {
                    sink.Single(byte);
                    ++p;
                }
            } else if (takeShifts_ && (byte == kShiftOut || byte == kShiftIn)) {
                if (byte == kShiftOut && !shifted_) {
                    beforeShift_ = mode_;
                    mode_ = JisMode::Kana;
                    shifted_ = true;
                } else if (byte == kShiftIn && shifted_) {
                    mode_ = beforeShift_;
                    shifted_ = false;
                }
                ++p;
            } else if (byte < 0x21 || mode_ == JisMode::Ascii) {
                sink.Single(byte);
                ++p;
            } else if (mode_ == JisMode::Kana) {
                sink.Kana(byte);
                ++p;
            } else if (end - p >= 2 && p[1] >= 0x21) {
                // A run of pairs, the bulk of Japanese text, without the checks above.
                do {
                    sink.Double(p[0], p[1]);
                    p += 2;
                } while (end - p >= 2 && p[0] >= 0x21 && p[1] >= 0x21);
            } else if (!final && end - p < 2) {
                return p;
            } else {
                sink.Lone(byte);
                ++p;
            }
        }
        return p;
    }

private:
    bool takeShifts_;
    JisMode mode_ = JisMode::Ascii;
    JisMode beforeShift_ = JisMode::Ascii;
    bool shifted_ = false;
};

template <class Sink>
void ReadJis(const Byte* p, const Byte* end, bool takeShifts, Sink& sink) {
    JisReader reader(takeShifts);
    reader.Read(p, end, true, sink);
}

class Utf8Sink {
public:
    Utf8Sink(char* out, const JisIndex& index) : start_(reinterpret_cast<Byte*>(out)), out_(start_), index_(index) {}

    void Single(Byte byte) {
        if (byte >= 0xA1 && byte <= 0xDF) {
            Kana(static_cast<Byte>(byte - 0x80));
        } else if ((byte >= 0x20 && byte <= 0x7E) || byte == '\t' || byte == '\n' || byte == '\r') {
            *out_++ = byte;
        } else {
            *out_++ = '?';
        }
    }
    void Double(Byte first, Byte second) { Put(index_.Double(first, second)); }
    void Kana(Byte byte) { Put(index_.kana[byte]); }
    void Lone(Byte) { Put(PackUtf8(kFullWidthQuestion)); }

    std::size_t Finish() {
        *out_ = 0;
        return static_cast<std::size_t>(out_ - start_);
    }

private:
    // Stores all four bytes and moves by the length: at most three bytes come out of
    // each input byte, so the spare byte stays inside the 4n + 4 buffer.
    void Put(std::uint32_t packed) {
        if constexpr (std::endian::native == std::endian::little) {
            std::memcpy(out_, &packed, 4);
        } else {
            out_[0] = static_cast<Byte>(packed);
            out_[1] = static_cast<Byte>(packed >> 8);
            out_[2] = static_cast<Byte>(packed >> 16);
        }
        out_ += packed >> 24;
    }

    Byte* start_;
    Byte* out_;
    const JisIndex& index_;
};

// Writes EUC-JP and Shift_JIS: single bytes are copied, the rest is the subclass's.
class ByteSink {
public:
    explicit ByteSink(char* out) : start_(reinterpret_cast<Byte*>(out)), out_(start_) {}

    void Single(Byte byte) { *out_++ = byte; }
    void Lone(Byte) { *out_++ = '?'; }
    std::size_t Finish() {
        *out_ = 0;
        return static_cast<std::size_t>(out_ - start_);
    }

protected:
    void Put(Byte a) { *out_++ = a; }
    void Put(Byte a, Byte b) {
        out_[0] = a;
        out_[1] = b;
        out_ += 2;
    }

private:
    Byte* start_;
    Byte* out_;
};

bool IsJisByte(Byte byte) { return byte >= 0x21 && byte <= 0x7E; }
bool IsKanaByte(Byte byte) { return byte >= 0x21 && byte <= 0x5F; }

class EucSink : public ByteSink {
public:
    using ByteSink::ByteSink;

    void Double(Byte first, Byte second) {
        if (IsJisByte(first) && IsJisByte(second)) {
            Put(static_cast<Byte>(first + 0x80), static_cast<Byte>(second + 0x80));
        } else {
            Put('?', '?');
        }
    }
    void Kana(Byte byte) {
        if (IsKanaByte(byte)) {
            Put(0x8E, static_cast<Byte>(byte + 0x80));
        } else {
            Put('?');
        }
    }
};

// Rows 0x79-0x7C hold the NEC-selected copies of IBM extension characters; Shift_JIS
// gets the IBM codes for them. Ranges in positions counted from 0x7921 (94 a row) and
// from 0xFA40 (188 a lead byte). 0x7C7B and the unassigned codes keep the arithmetic.
struct IbmRange {
    int jisFirst;
    int jisLast;
    int ibmFirst;
};

constexpr IbmRange kIbmRanges[] = {
    {0, 359, 28},    // kanji 0x7921-0x7C6E to 0xFA5C-0xFC4B
    {362, 371, 0},   // small Roman numerals 0x7C71-0x7C7A to 0xFA40-0xFA49
    {373, 375, 21},  // U+FFE4, U+FF07, U+FF02 0x7C7C-0x7C7E to 0xFA55-0xFA57
};

class SjisSink : public ByteSink {
public:
    using ByteSink::ByteSink;

    void Double(Byte first, Byte second) {
        if (first < 0x21 || first > 0x98 || !IsJisByte(second)) {  // lead bytes 0x81-0xFC
            Put('?', '?');
            return;
        }
        if (first >= 0x79 && first <= 0x7C) {
            const int position = (first - 0x79) * 94 + (second - 0x21);
            for (const IbmRange& range : kIbmRanges) {
                if (position >= range.jisFirst && position <= range.jisLast) {
                    const int ibm = range.ibmFirst + position - range.jisFirst;
                    const int trail = ibm % 188;
                    Put(static_cast<Byte>(0xFA + ibm / 188), static_cast<Byte>(trail < 63 ? 0x40 + trail : 0x80 + trail - 63));
                    return;
                }
            }
        }
        const Byte lead = static_cast<Byte>((first + 1) / 2 + (first < 0x5F ? 0x70 : 0xB0));
        Byte trail;
        if (first & 1) {
            trail = static_cast<Byte>(second + (second < 0x60 ? 31 : 32));
        } else {
            trail = static_cast<Byte>(second + 126);
        }
        Put(lead, trail);
    }
    void Kana(Byte byte) { Put(IsKanaByte(byte) ? static_cast<Byte>(byte + 0x80) : Byte{'?'}); }
};

// ---------------------------------------------------------------------------------------
// The converters over byte ranges.

// Writes the EUC-JP bytes as JIS; with final unset it stops before a last byte
// that may begin a two-byte character and returns where it stopped.
const Byte* WriteEucAsJis(const Byte* p, const Byte* end, bool final, JisWriter& writer) {
    while (p < end) {
        const Byte byte = *p;
        if (!final && end - p == 1 && (byte == 0x8E || (byte >= 0xA1 && byte <= 0xFE))) return p;
        if (byte >= 0xA1 && byte <= 0xFE && end - p >= 2 && p[1] >= 0xA1 && p[1] <= 0xFE) {
            writer.Double(static_cast<Byte>(byte - 0x80), static_cast<Byte>(p[1] - 0x80));
            p += 2;
        } else if (byte == 0x8E && end - p >= 2 && p[1] >= 0xA1 && p[1] <= 0xDF) {
            writer.Kana(static_cast<Byte>(p[1] - 0x80));
            p += 2;
        } else {
            writer.Single(byte);
            ++p;
        }
    }
    return p;
}

std::size_t EucToJis(const Byte* p, const Byte* end, char* out) {
    JisWriter writer(out);
    while (p < end) {
        const Byte byte = *p;
        if (byte >= 0xA1 && byte <= 0xFE && end - p >= 2 && p[1] >= 0xA1 && p[1] <= 0xFE) {
            writer.Double(static_cast<Byte>(byte - 0x80), static_cast<Byte>(p[1] - 0x80));
            p += 2;
        } else if (byte == 0x8E && end - p >= 2 && p[1] >= 0xA1 && p[1] <= 0xDF) {
            writer.Kana(static_cast<Byte>(p[1] - 0x80));
            p += 2;
        } else {
            writer.Single(byte);
            ++p;
        }
    }
    return writer.Finish();
}

std::size_t SjisToJis(const Byte* p, const Byte* end, char* out) {
    JisWriter writer(out);
    while (p < end) {
        const Byte byte = *p;
        const bool lead = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
        const Byte trail = end - p >= 2 ? p[1] : Byte{0};
        if (lead && trail >= 0x40 && trail <= 0xFC && trail != 0x7F) {
            const int half = byte < 0xA0 ? byte - 0x70 : byte - 0xB0;  // (first + 1) / 2
            if (trail >= 0x9F) {
                writer.Double(static_cast<Byte>(half * 2), static_cast<Byte>(trail - 126));
            } else {
                writer.Double(static_cast<Byte>(half * 2 - 1), static_cast<Byte>(trail - (trail >= 0x80 ? 32 : 31)));
            }
            p += 2;
        } else if (byte >= 0xA1 && byte <= 0xDF) {
            writer.Kana(static_cast<Byte>(byte - 0x80));
            ++p;
        } else {
            writer.Single(byte);
            ++p;
        }
    }
    return writer.Finish();
}

std::size_t Utf8ToJis(const Byte* p, const Byte* end, char* out) {
    JisWriter writer(out);
    while (p < end) {
        const Byte byte = *p;
        if (byte < 0x80) {
            writer.Single(byte);
            ++p;
            continue;
        }
        if (byte >= 0xFE) {
            ++p;
            continue;
        }
        const int size = byte >= 0xFC ? 6 : byte >= 0xF8 ? 5 : byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 0;
        bool whole = size != 0 && end - p >= size;
        char32_t ucs = size != 0 ? static_cast<char32_t>(byte & (0x7F >> size)) : 0;
        for (int i = 1; whole && i < size; ++i) {
            whole = (p[i] & 0xC0) == 0x80;
            ucs = ucs << 6 | (p[i] & 0x3F);
        }
        if (!whole) {
            writer.Single('?');
            ++p;
            continue;
        }
        p += size;
        if (ucs <= 0xFFFF) {
            if (const int entry = FindJisEntry(ucs); entry >= 0) {
                writer.Double(jisUcsTable[entry][0], jisUcsTable[entry][1]);
                continue;
            }
            if (const int entry = FindKanaEntry(ucs); entry >= 0) {
                if (ucs >= kKanaFirst && ucs <= kKanaLast) {
                    writer.Kana(kanaUcsTable[entry][0]);
                } else {
                    writer.Single(kanaUcsTable[entry][0]);
                }
                continue;
            }
        }
        writer.Single('?');
    }
    return writer.Finish();
}

std::size_t JisToUtf8(const Byte* p, const Byte* end, char* out) {
    Utf8Sink sink(out, Index());
    ReadJis(p, end, true, sink);
    return sink.Finish();
}

// The input as a byte range; null counts as empty.
struct Input {
    const Byte* begin;
    const Byte* end;
};

Input Bytes(const char* in) {
    const char* text = in != nullptr ? in : "";
    const Byte* begin = reinterpret_cast<const Byte*>(text);
    return {begin, begin + std::strlen(text)};
}

}  // namespace

std::size_t comEucToJis(const char* in, char* out) {
    if (out == nullptr) return 0;
    const Input input = Bytes(in);
    return EucToJis(input.begin, input.end, out);
}

std::size_t comJisToEuc(const char* in, char* out) {
    if (out == nullptr) return 0;
    const Input input = Bytes(in);
    EucSink sink(out);
    ReadJis(input.begin, input.end, false, sink);
    return sink.Finish();
}

std::size_t comJisToSjis(const char* in, char* out) {
    if (out == nullptr) return 0;
    const Input input = Bytes(in);
    SjisSink sink(out);
    ReadJis(input.begin, input.end, true, sink);
    return sink.Finish();
}

std::size_t comSjisToJis(const char* in, char* out) {
    if (out == nullptr) return 0;
    const Input input = Bytes(in);
    return SjisToJis(input.begin, input.end, out);
}

std::size_t comUtf8ToJis(const char* in, char* out) {
    if (out == nullptr) return 0;
    const Input input = Bytes(in);
    return Utf8ToJis(input.begin, input.end, out);
}

std::size_t comJisToUtf8(const char* in, char* out) {
    if (out == nullptr) return 0;
    const Input input = Bytes(in);
    return JisToUtf8(input.begin, input.end, out);
}

char* EucToUtf8(const char* text) {
    const Input input = Bytes(text);
    const std::size_t size = static_cast<std::size_t>(input.end - input.begin);
    // Both work buffers follow the 4n + 4 rule; the JIS text is at most 4n + 3 long, so
    // the second buffer needs up to 16n + 16 bytes.
    if (size > std::numeric_limits<std::size_t>::max() / 16 - 1) return nullptr;

    char* jis = static_cast<char*>(std::malloc(4 * size + 4));
    if (jis == nullptr) return nullptr;
    const std::size_t jisSize = EucToJis(input.begin, input.end, jis);

    char* utf8 = static_cast<char*>(std::malloc(4 * jisSize + 4));
    if (utf8 == nullptr) {
        std::free(jis);
        return nullptr;
    }
    const Byte* jisBytes = reinterpret_cast<const Byte*>(jis);
    const std::size_t utf8Size = JisToUtf8(jisBytes, jisBytes + jisSize, utf8);
    std::free(jis);

    // Hand back no more than the text needs; keep the large block if shrinking fails.
    if (char* fitted = static_cast<char*>(std::realloc(utf8, utf8Size + 1))) utf8 = fitted;
    return utf8;
}

struct EucToUtf8Stream::State {
    JisMode writerMode = JisMode::Ascii;
    JisReader reader{true};
    std::string rawTail;  // EUC-JP bytes not yet written as JIS
    std::string jisTail;  // JIS bytes not yet read
};

EucToUtf8Stream::EucToUtf8Stream() : state_(std::make_unique<State>()) {}

EucToUtf8Stream::~EucToUtf8Stream() = default;

void EucToUtf8Stream::Reset() { *state_ = State{}; }

namespace {

// JIS of tail and raw behind jisTail in a buffer, by the 4n + 4 rule of the writer.
std::string JisOf(const std::string& jisTail, const Byte* raw, const Byte* end, JisMode& mode, bool final,
                  const Byte** stop) {
    std::string jis(jisTail.size() + 4 * static_cast<std::size_t>(end - raw) + 8, '\0');
    std::memcpy(jis.data(), jisTail.data(), jisTail.size());
    JisWriter writer(jis.data() + jisTail.size(), mode);
    *stop = WriteEucAsJis(raw, end, final, writer);
    const std::size_t written = final ? writer.Finish() : writer.Written();
    mode = writer.Mode();
    jis.resize(jisTail.size() + written);
    return jis;
}

}  // namespace

void EucToUtf8Stream::Feed(const char* part, std::size_t length, std::string& out) {
    State& st = *state_;
    std::string raw = st.rawTail;
    raw.append(part ? part : "", part ? length : 0);
    const Byte* begin = reinterpret_cast<const Byte*>(raw.data());
    const Byte* stop = nullptr;
    const std::string jis = JisOf(st.jisTail, begin, begin + raw.size(), st.writerMode, false, &stop);
    st.rawTail.assign(reinterpret_cast<const char*>(stop), raw.size() - static_cast<std::size_t>(stop - begin));

    const std::size_t start = out.size();
    out.resize(start + 4 * jis.size() + 4);
    Utf8Sink sink(out.data() + start, Index());
    const Byte* jisBegin = reinterpret_cast<const Byte*>(jis.data());
    const Byte* jisStop = st.reader.Read(jisBegin, jisBegin + jis.size(), false, sink);
    out.resize(start + sink.Finish());
    st.jisTail.assign(reinterpret_cast<const char*>(jisStop), jis.size() - static_cast<std::size_t>(jisStop - jisBegin));
}

void EucToUtf8Stream::Peek(std::string& out) const {
    State st = *state_;
    const Byte* begin = reinterpret_cast<const Byte*>(st.rawTail.data());
    const Byte* stop = nullptr;
    const std::string jis = JisOf(st.jisTail, begin, begin + st.rawTail.size(), st.writerMode, true, &stop);
    const std::size_t start = out.size();
    out.resize(start + 4 * jis.size() + 4);
    Utf8Sink sink(out.data() + start, Index());
    const Byte* jisBegin = reinterpret_cast<const Byte*>(jis.data());
    st.reader.Read(jisBegin, jisBegin + jis.size(), true, sink);
    out.resize(start + sink.Finish());
}
