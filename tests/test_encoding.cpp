// Tests of the encoding converters: every EUC-JP and Shift_JIS code against glibc's CP932
// decoder, pairs outside the code space, round trips, escape sequences and broken input.
#include <gtest/gtest.h>

#include <iconv.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/comEncoding.h"
#include "base/jisUcsTable.h"

namespace {

using Converter = std::size_t (*)(const char*, char*);

// Runs a converter with the input and the output in heap blocks of exactly the sizes the
// contract allows, so that AddressSanitizer sees any read or write past them.
std::string Conv(Converter convert, const std::string& in) {
    std::unique_ptr<char[]> input(new char[in.size() + 1]);
    std::memcpy(input.get(), in.c_str(), in.size() + 1);
    const std::size_t capacity = 4 * in.size() + 4;
    std::unique_ptr<char[]> output(new char[capacity]);
    const std::size_t length = convert(input.get(), output.get());
    EXPECT_LT(length, capacity);
    EXPECT_EQ(length, std::strlen(output.get()));
    return std::string(output.get(), length);
}

std::string Euc(const std::string& in) {
    std::unique_ptr<char[]> input(new char[in.size() + 1]);
    std::memcpy(input.get(), in.c_str(), in.size() + 1);
    char* out = EucToUtf8(input.get());
    if (out == nullptr) return "(null)";
    std::string result(out);
    std::free(out);
    return result;
}

std::string Utf8(char32_t ucs) {
    std::string out;
    if (ucs < 0x80) {
        out += static_cast<char>(ucs);
    } else if (ucs < 0x800) {
        out += static_cast<char>(0xC0 | ucs >> 6);
        out += static_cast<char>(0x80 | (ucs & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | ucs >> 12);
        out += static_cast<char>(0x80 | (ucs >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (ucs & 0x3F));
    }
    return out;
}

std::string Bytes(std::initializer_list<int> bytes) {
    std::string out;
    for (int byte : bytes) out += static_cast<char>(byte);
    return out;
}

std::string JisDouble(int first, int second) { return "\x1b$B" + Bytes({first, second}) + "\x1b(B"; }

const std::string kQuestion = "\xEF\xBC\x9F";  // U+FF1F

// glibc's iconv over one text; nullopt when it refuses the input.
class Iconv {
public:
    Iconv(const char* to, const char* from) : cd_(iconv_open(to, from)) {}
    ~Iconv() {
        if (ok()) iconv_close(cd_);
    }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    bool ok() const { return cd_ != reinterpret_cast<iconv_t>(-1); }

    std::optional<std::string> operator()(const std::string& in) {
        iconv(cd_, nullptr, nullptr, nullptr, nullptr);
        std::string src = in;
        char out[64];
        char* inPtr = src.data();
        std::size_t inLeft = src.size();
        char* outPtr = out;
        std::size_t outLeft = sizeof out;
        if (iconv(cd_, &inPtr, &inLeft, &outPtr, &outLeft) == static_cast<std::size_t>(-1) || inLeft != 0) {
            return std::nullopt;
        }
        if (iconv(cd_, nullptr, nullptr, &outPtr, &outLeft) == static_cast<std::size_t>(-1)) return std::nullopt;
        return std::string(out, static_cast<std::size_t>(outPtr - out));
    }

private:
    iconv_t cd_;
};

// The JIS to Shift_JIS arithmetic, written out again for the reference.
std::string JisToSjisArithmetic(int first, int second) {
    const int lead = (first + 1) / 2 + (first < 0x5F ? 0x70 : 0xB0);
    const int trail = (first & 1) ? second + (second < 0x60 ? 31 : 32) : second + 126;
    return Bytes({lead, trail});
}

char32_t EntryUcs(int index) { return static_cast<char32_t>(jisUcsTable[index][2] << 8 | jisUcsTable[index][3]); }

// Every double-byte EUC-JP code and every half-width katakana against glibc's CP932
// decoder on the Shift_JIS bytes of the same JIS code.
TEST(EncodingEucToUtf8, EveryCodeMatchesCp932) {
    Iconv cp932("UTF-8", "CP932");
    ASSERT_TRUE(cp932.ok());
    int compared = 0, unmapped = 0, mismatches = 0;
    for (int first = 0xA1; first <= 0xFE; ++first) {
        for (int second = 0xA1; second <= 0xFE; ++second) {
            const std::optional<std::string> reference = cp932(JisToSjisArithmetic(first - 0x80, second - 0x80));
            const std::string expected = reference ? *reference : kQuestion;
            const std::string got = Euc(Bytes({first, second}));
            ++(reference ? compared : unmapped);
            if (got != expected && ++mismatches <= 10) {
                ADD_FAILURE() << std::hex << "EUC " << first << second << ": got " << got << ", expected " << expected;
            }
        }
    }
    for (int kana = 0xA1; kana <= 0xDF; ++kana) {
        const std::optional<std::string> reference = cp932(Bytes({kana}));
        ASSERT_TRUE(reference.has_value());
        EXPECT_EQ(Euc(Bytes({0x8E, kana})), *reference) << std::hex << kana;
    }
    EXPECT_EQ(mismatches, 0);
    // JIS X 0208, the NEC row and the NEC-selected IBM rows; the rest has no character.
    EXPECT_EQ(compared, 6879 + 83 + 374);
    EXPECT_EQ(unmapped, 94 * 94 - compared);
}

// The CP932 comparisons reach JIS rows 0x21-0x98 with second bytes 0x21-0x7E; every
// other pair of bytes that can stand in double-byte mode has no character.
TEST(EncodingJisToUtf8, PairsOutsideTheCodeSpaceHaveNoCharacter) {
    int mismatches = 0;
    for (int first = 0x21; first <= 0xFF; ++first) {
        for (int second = 0x21; second <= 0xFF; ++second) {
            if ((first > 0x98 || second > 0x7E) && Conv(comJisToUtf8, JisDouble(first, second)) != kQuestion &&
                ++mismatches <= 10) {
                ADD_FAILURE() << std::hex << "JIS " << first << " " << second;
            }
        }
    }
    EXPECT_EQ(mismatches, 0);
}

// UTF-8 to JIS to UTF-8 over every value of the table. The standard JIS forms share
// their code with the CP932 form, and come back as that form.
TEST(EncodingRoundTrip, EveryTableValue) {
    const std::map<char32_t, char32_t> sharedForms = {
        {0x301C, 0xFF5E}, {0x2016, 0x2225}, {0x2212, 0xFF0D}, {0x00A2, 0xFFE0}, {0x00A3, 0xFFE1}, {0x00AC, 0xFFE2},
    };
    int mismatches = 0;
    for (int i = 0; i < jisUcsCount; ++i) {
        const char32_t ucs = EntryUcs(i);
        const std::string jis = Conv(comUtf8ToJis, Utf8(ucs));
        ASSERT_EQ(jis.size(), 8u) << i;
        EXPECT_EQ(jis.substr(0, 3), "\x1b$B");
        EXPECT_EQ(jis.substr(5), "\x1b(B");
        const auto shared = sharedForms.find(ucs);
        const std::string expected = Utf8(shared != sharedForms.end() ? shared->second : ucs);
        if (Conv(comJisToUtf8, jis) != expected && ++mismatches <= 10) {
            ADD_FAILURE() << std::hex << "U+" << static_cast<std::uint32_t>(ucs) << " at " << std::dec << i;
        }
    }
    EXPECT_EQ(mismatches, 0);
    // Both forms of the not sign give 0x224C.
    EXPECT_EQ(Conv(comUtf8ToJis, "\xC2\xAC"), JisDouble(0x22, 0x4C));
    EXPECT_EQ(Conv(comUtf8ToJis, "\xEF\xBF\xA2"), JisDouble(0x22, 0x4C));
    // Half-width katakana go through the single-byte table.
    for (char32_t ucs = 0xFF61; ucs <= 0xFF9F; ++ucs) {
        const std::string jis = Conv(comUtf8ToJis, Utf8(ucs));
        EXPECT_EQ(jis, "\x1b(I" + Bytes({static_cast<int>(ucs - 0xFF61 + 0x21)}) + "\x1b(B");
        EXPECT_EQ(Conv(comJisToUtf8, jis), Utf8(ucs));
    }
}

// The Shift_JIS side against glibc: every CP932 double-byte code decodes alike, and every
// table value is written with the code CP932 itself chooses.
TEST(EncodingSjis, MatchesCp932BothWays) {
    Iconv decode("UTF-8", "CP932");
    Iconv encode("CP932", "UTF-8");
    ASSERT_TRUE(decode.ok() && encode.ok());
    int mismatches = 0;
    auto check = [&](const std::string& got, const std::string& expected, const char* what, int code) {
        if (got != expected && ++mismatches <= 10) ADD_FAILURE() << what << " " << std::hex << code;
    };
    for (int lead = 0x81; lead <= 0xFC; ++lead) {
        if (lead >= 0xA0 && lead <= 0xDF) continue;
        for (int trail = 0x40; trail <= 0xFC; ++trail) {
            if (trail == 0x7F) continue;
            const std::string sjis = Bytes({lead, trail});
            const std::optional<std::string> reference = decode(sjis);
            // The user-defined area 0xF0-0xF9 has no character of the table.
            const std::string expected = reference && (lead < 0xF0 || lead > 0xF9) ? *reference : kQuestion;
            check(Conv(comJisToUtf8, Conv(comSjisToJis, sjis)), expected, "decode", lead << 8 | trail);
        }
    }
    int encoded = 0;
    for (int i = 0; i < jisUcsCount; ++i) {
        const std::string utf8 = Utf8(EntryUcs(i));
        const std::optional<std::string> reference = encode(utf8);
        if (!reference) continue;
        ++encoded;
        check(Conv(comJisToSjis, Conv(comUtf8ToJis, utf8)), *reference, "encode", static_cast<int>(EntryUcs(i)));
    }
    EXPECT_EQ(mismatches, 0);
    EXPECT_GT(encoded, jisUcsCount - 20);
}

TEST(EncodingExamples, SingleCharacters) {
    EXPECT_EQ(Euc("\xA4\xA2\xA9\xA1" "a"), "\xE3\x81\x82" + kQuestion + "a");  // unassigned row between

    // A stray 0x80 passes the JIS step as it is and ends as "?".
    EXPECT_EQ(Conv(comEucToJis, "a\x80" "b"), "a\x80" "b");
    EXPECT_EQ(Euc("a\x80" "b"), "a?b");

    // Null gives an empty result.
    char* fromNull = EucToUtf8(nullptr);
    ASSERT_NE(fromNull, nullptr);
    EXPECT_STREQ(fromNull, "");
    std::free(fromNull);
    char out[4] = "xyz";
    EXPECT_EQ(comJisToUtf8(nullptr, out), 0u);
    EXPECT_STREQ(out, "");

    // The conversions on the way out: UTF-8 to EUC-JP and Shift_JIS through JIS.
    const std::string mixed = "\xE4\xBC\x9A\xE8\xAD\xB0 A-1 \xEF\xBD\xB1\xE2\x85\xB0";  // 会議 A-1 ｱⅰ
    const std::string jis = Conv(comUtf8ToJis, mixed);
    EXPECT_EQ(jis, "\x1b$B\x32\x71\x35\x44\x1b(B A-1 \x1b(I\x31\x1b$B\x7C\x71\x1b(B");
    EXPECT_EQ(Conv(comJisToEuc, jis), "\xB2\xF1\xB5\xC4 A-1 \x8E\xB1\xFC\xF1");
    EXPECT_EQ(Conv(comJisToSjis, jis), "\x89\xEF\x8B\x63 A-1 \xB1\xFA\x40");
}

TEST(EncodingExamples, EmptyAndAsciiPassUnchanged) {
    std::string ascii = "\t\r\n";
    for (int c = 0x20; c <= 0x7E; ++c) ascii += static_cast<char>(c);
    for (const std::string& text : {std::string(), ascii}) {
        for (Converter convert : {comEucToJis, comJisToEuc, comJisToSjis, comSjisToJis, comUtf8ToJis, comJisToUtf8}) {
            EXPECT_EQ(Conv(convert, text), text);
        }
        EXPECT_EQ(Euc(text), text);
    }
}

TEST(EncodingJisToUtf8, ReadsEveryEscapeForm) {
    const std::string a = "\xE4\xBA\x9C";  // U+4E9C, JIS 0x3021
    const std::string ka = "\xEF\xBD\xB1";  // U+FF71, katakana 0x31
    const std::pair<std::string, std::string> cases[] = {
        {"\x1b$B\x30\x21\x1b(B", a},
        {"\x1b$@\x30\x21\x1b(J" "x", a + "x"},
        {"\x1b&@\x1b$B\x30\x21\x1b(H" "x", a + "x"},
        {"\x1b$(D\x30\x21\x1b(B" "x", a + "x"},
        {"\x1b(I\x31\x1b(B" "1", ka + "1"},
        {"\x0e\x31\x0f" "1", ka + "1"},
        {"\x1b$B\x30\x21\x0e\x31\x0f\x30\x21\x1b(B", a + ka + a},  // SI returns to double byte
        {"\x1b$B\x30\x21\n\x30\x21\x1b(B", a + "\n" + a},         // controls keep the mode
        {"\x1b(Zab", "?(Zab"},                                    // not ours: ESC is "?"
        {"\xB1" "\x7F\x01", ka + "??"},                          // 8-bit katakana, other bytes
        {"\x1b(I\x60\x1b(B", "?"},                                // beyond the katakana range
        {"\x1b$B\x30\x21", a},                                    // mode left open at the end
    };
    for (const auto& [jis, utf8] : cases) EXPECT_EQ(Conv(comJisToUtf8, jis), utf8) << jis;

    // The other JIS readers take the same sequences; SO and SI only where they count.
    EXPECT_EQ(Conv(comJisToSjis, "\x1b$@\x30\x21\x1b(J" "x\x0e\x31\x0f"), "\x88\x9F" "x\xB1");
    EXPECT_EQ(Conv(comJisToEuc, "\x1b$(D\x30\x21\x1b(I\x31\x1b(B" "x\x0e\x0f"), "\xB0\xA1\x8E\xB1" "x\x0e\x0f");
    EXPECT_EQ(Conv(comJisToEuc, "\x1b$B\x21\x7F\x1b(I\x60"), "???");
}

// Sequences cut off at the very end of the input; the exact-size buffers of Conv let
// AddressSanitizer catch a read beyond them.
TEST(EncodingBrokenInput, CutOffAtTheEnd) {
    const std::string a = "\xE3\x81\x82";  // U+3042
    EXPECT_EQ(Euc("\xA4\xA2\xA4"), a + "\xEF\xBD\xA4");  // a lone lead in 0xA1-0xDF reads as katakana
    EXPECT_EQ(Euc("\xA4\xA2\xF0"), a + "?");
    EXPECT_EQ(Euc("\xA4\xA2\x8E"), a + "?");
    EXPECT_EQ(Euc("\x8E\xE0"), "??");
    EXPECT_EQ(Conv(comEucToJis, "\xA4\xA2\x8E"), "\x1b$B\x24\x22\x1b(B\x8E");

    EXPECT_EQ(Conv(comJisToUtf8, "\x1b$B\x30"), kQuestion);
    EXPECT_EQ(Conv(comJisToUtf8, "\x1b$B\x30\x21\x30"), "\xE4\xBA\x9C" + kQuestion);
    EXPECT_EQ(Conv(comJisToUtf8, "\x1b$B\x30\x1b(Bx"), kQuestion + "x");
    EXPECT_EQ(Conv(comJisToUtf8, "\x1b"), "?");
    EXPECT_EQ(Conv(comJisToUtf8, "\x1b$"), "?$");
    EXPECT_EQ(Conv(comJisToUtf8, "\x1b$("), "?$(");
    EXPECT_EQ(Conv(comJisToEuc, "\x1b$B\x30"), "?");
    EXPECT_EQ(Conv(comJisToSjis, "\x1b$B\x30"), "?");

    EXPECT_EQ(Conv(comUtf8ToJis, "a\xE3\x81"), "a??");
    EXPECT_EQ(Conv(comUtf8ToJis, "\xF0\x9F\x98"), "???");
    EXPECT_EQ(Conv(comUtf8ToJis, "\xF0\x9F\x98\x80" "b"), "?b");  // beyond UCS-2
    EXPECT_EQ(Conv(comUtf8ToJis, "\xE3\x41\x82"), "?A?");          // broken continuation
    EXPECT_EQ(Conv(comUtf8ToJis, "\xFE\xFF" "c"), "c");
    EXPECT_EQ(Conv(comUtf8ToJis, "\xE3\x81\x82\xE3"), "\x1b$B\x24\x22\x1b(B?");

    EXPECT_EQ(Conv(comSjisToJis, "\x82\xA0\x88"), "\x1b$B\x24\x22\x1b(B\x88");
    EXPECT_EQ(Conv(comJisToUtf8, Conv(comSjisToJis, "\x82\xA0\x88")), a + "?");
}

// Random bytes, weighted toward the bytes that steer the converters, through every
// converter in exact-size buffers; EUC-JP to JIS and back gives the input again.
TEST(EncodingBrokenInput, RandomBytesStayInTheBuffer) {
    const std::string alphabet = std::string("\x1b$B(I@&DJH\x0e\x0f\x8e\x80\xa1\xa4\xb1\xdf\xe0\xfe\xff\x21\x30\x7e\x7f\n"
                                             "a\xc2\xe3\xf0\xfc\x81\x82\x9f\xfa\x40");
    std::mt19937 random(12345);
    std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() + 15);
    std::uniform_int_distribution<int> length(0, 40);
    std::uniform_int_distribution<int> anyByte(1, 255);
    for (int round = 0; round < 3000; ++round) {
        std::string in;
        for (int n = length(random); n > 0; --n) {
            const std::size_t k = pick(random);
            in += k < alphabet.size() ? alphabet[k] : static_cast<char>(anyByte(random));
        }
        for (Converter convert : {comEucToJis, comJisToEuc, comJisToSjis, comSjisToJis, comUtf8ToJis, comJisToUtf8}) {
            Conv(convert, in);
        }
        Euc(in);
        if (in.find('\x1b') == std::string::npos) {
            EXPECT_EQ(Conv(comJisToEuc, Conv(comEucToJis, in)), in);
        }
    }
}

}  // namespace

namespace {

// The whole text's conversion, as EucToUtf8 gives it.
std::string Whole(const std::string& euc) {
    std::unique_ptr<char, decltype(&std::free)> text(EucToUtf8(euc.c_str()), &std::free);
    return text ? text.get() : "<no memory>";
}

}  // namespace

// A text fed in parts converts exactly as the whole: after every part, what was
// decided plus what the held-back bytes give equals the conversion of the prefix.
// Escapes, shifts and cut characters are drawn often so that they fall on cuts.
TEST(EucToUtf8StreamTest, PartsConvertExactlyAsTheWhole) {
    const std::string alphabet = "\x1b\x0e\x0f$(&@BDIJH\xa1\xa4\xa2\xb0\xfe\x8e\xdf\x8f\xe0\x80\x21\x7f\n\tA";
    std::mt19937 random(9);
    EucToUtf8Stream stream;
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        const int size = static_cast<int>(random() % 40);
        for (int i = 0; i < size; ++i) text += alphabet[random() % alphabet.size()];
        stream.Reset();
        std::string decided;
        for (std::size_t pos = 0; pos < text.size();) {
            const std::size_t take = std::min<std::size_t>(text.size() - pos, 1 + random() % 5);
            stream.Feed(text.data() + pos, take, decided);
            pos += take;
            std::string now = decided;
            stream.Peek(now);
            ASSERT_EQ(now, Whole(text.substr(0, pos))) << "round " << round << " at " << pos;
        }
    }
}
