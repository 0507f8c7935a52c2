// The merge of a memo into its HTML frame, line by line.
#include "MakeConvLib/cxiocom/MergeRichText.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "base/NUOutput.h"
#include "base/comHtml.h"

namespace {

constexpr int kErrMemory = -10;
constexpr int kErrArgument = -99;
constexpr char kVT = '\v';
constexpr std::string_view kMarker = "$text$";

// One line from text with the VT escapes undone; the bytes consumed.
std::size_t RawLine(std::string_view text, std::string& line) {
    std::size_t i = 0;
    while (i < text.size() && text[i] != '\n') {
        if (text[i] == kVT) {
            if (++i >= text.size()) break;
        }
        line += text[i++];
    }
    return i;
}

bool IsBlankLine(std::string_view line) {
    for (char c : line)
        if (!RichTextIsSpace(c)) return false;
    return true;
}

char* ToHeap(const std::string& text) {
    char* block = static_cast<char*>(std::malloc(text.size() + 1));
    if (block) std::memcpy(block, text.c_str(), text.size() + 1);
    return block;
}

// Memo lines placed into the markers of the frame, escaped; lines beyond the
// markers follow the frame, markers beyond the lines stay as they are.
void MergeIntoFormat(std::string_view memo, std::string_view format, bool byLines, std::string& result) {
    std::size_t pos = 0;
    std::size_t fcur = 0;
    bool finished = false;
    for (;;) {
        bool marked = false;
        if (!finished) {
            const std::size_t at = format.find(kMarker, fcur);
            if (at != std::string_view::npos) {
                result.append(format.substr(fcur, at - fcur));
                fcur = at + kMarker.size();
                marked = true;
            } else {
                result.append(format.substr(fcur));
                fcur = format.size();
                finished = true;
            }
        }
        std::string raw;
        std::size_t consumed = 0;
        if (byLines) {
            consumed = RawLine(memo.substr(pos), raw);
        } else {
            raw.assign(memo);
            consumed = memo.size() - pos;
        }
        if (IsBlankLine(raw)) {
            if (marked) result += "&nbsp;";
        } else {
            comHtmlEscapeText(&result, raw, true, false);
        }
        pos += consumed;
        if (pos >= memo.size() || pos + 1 >= memo.size() || !byLines) {
            if (!finished) result.append(format.substr(fcur));
            return;
        }
        ++pos;  // the LF that ends the line
    }
}

}  // namespace

bool RichTextIsSpace(char c) { return c == '\t' || c == '\n' || c == '\r' || c == ' '; }

int TakeTextLine(const char* text, char** out, bool escape) {
    if (!text || !out) return kErrArgument;
    *out = nullptr;
    try {
        std::string line;
        const std::size_t consumed = RawLine(text, line);
        if (escape) {
            std::string escaped;
            comHtmlEscapeText(&escaped, line, true, false);
            line.swap(escaped);
        }
        *out = ToHeap(line);
        if (!*out) return kErrMemory;
        return static_cast<int>(consumed);
    } catch (const std::bad_alloc&) {
        return kErrMemory;
    }
}

int MergeRichText(const char* memo, const char* format, bool byLines, char** out) {
    if (out) *out = nullptr;
    std::string_view memoText = memo ? memo : "";
    std::string_view frame = format ? format : "";
    while (frame.substr(0, 4) == "<BR>") frame.remove_prefix(4);
    if (frame.empty() && memoText.empty()) return 0;
    try {
        std::string result;
        if (frame.empty()) {
            // A plain memo keeps its text as it is.
            result = "<div>";
            for (char c : memoText) {
                if (c == '\r') continue;
                if (c == '\n')
                    result += "<br />";
                else
                    result += c;
            }
            result += "</div>";
        } else {
            MergeIntoFormat(memoText, frame, byLines, result);
        }
        if (!out) {
            comOutWrite(result.data(), result.size());
            return 0;
        }
        *out = ToHeap(result);
        return *out ? 0 : kErrMemory;
    } catch (const std::bad_alloc&) {
        return kErrMemory;
    }
}
