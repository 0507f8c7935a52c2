// Template engine: loading, range cutting, placeholder filling, tag case
// folding and the HTML escapes of parameter values.
#include "base/NUTemplateToOutput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <new>
#include <stdexcept>

#include "base/NUNVList.h"
#include "base/comStr.h"

namespace {

constexpr std::size_t kReadChunk = 64 * 1024;

bool StartsWith(std::string_view text, std::size_t at, std::string_view prefix) {
    return text.size() - at >= prefix.size() && text.compare(at, prefix.size(), prefix) == 0;
}

// Offset just behind the line that starts at `at` (its LF included).
std::size_t NextLine(std::string_view text, std::size_t at) {
    const std::size_t lf = text.find('\n', at);
    return lf == std::string_view::npos ? text.size() : lf + 1;
}

// Offset where 1-based line `line` starts; the text's size when it has fewer lines.
std::size_t LineOffset(std::string_view text, int64_t line) {
    std::size_t at = 0;
    for (int64_t n = 1; n < line && at < text.size(); ++n) at = NextLine(text, at);
    return at;
}

// Length of the UTF-8 sequence at `at`, never past the end and at least 1.
std::size_t SequenceLen(std::string_view text, std::size_t at) {
    const int len = comUtf8CharLen(static_cast<unsigned char>(text[at]));
    const std::size_t want = len > 0 ? static_cast<std::size_t>(len) : 1;
    const std::size_t left = text.size() - at;
    return want < left ? want : left;
}

// Value of `name` in `list`, or null when absent or none.
const char* LookUp(const NUNVList* list, const std::string& name) {
    if (list == nullptr) return nullptr;
    const char* value = nullptr;
    if (list->FindExact(name.c_str(), &value) != 1) return nullptr;
    return value;
}

// Stores a range mark; the old one stays when the new one is too long.
int SetMark(std::string& mark, const char* value) {
    const std::size_t len = value != nullptr ? std::strlen(value) : 0;
    if (len >= NUTemplateToOutput::kMarkSize) return kTplBadArgument;
    try {
        mark.assign(value != nullptr ? value : "", len);
    } catch (const std::bad_alloc&) {
        return kTplNoMemory;
    }
    return 0;
}

// The parameter list, or none when memory runs out (AddParam then gives -51).
std::unique_ptr<NUNVList> NewParamList(int capacity) {
    try {
        return std::make_unique<NUNVList>(capacity > 0 ? capacity : NUNVList::kDefaultCapacity);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace

NUTemplateToOutput::NUTemplateToOutput(int capacity) : params(NewParamList(capacity)) {}

NUTemplateToOutput::~NUTemplateToOutput() = default;

int NUTemplateToOutput::EscapeText(std::string_view value, int mode, std::string& out) {
    try {
        out.clear();
        if (mode <= 0) {
            out.assign(value);
            return 0;
        }
        out.reserve(value.size() + value.size() / 4);
        for (std::size_t i = 0; i < value.size();) {
            const char c = value[i];
            if (static_cast<unsigned char>(c) >= 0x80) {
                const std::size_t len = SequenceLen(value, i);
                out.append(value.substr(i, len));
                i += len;
                continue;
            }
            switch (c) {
                case '&': out += "&amp;"; break;
                case '"': out += "&quot;"; break;
                case '<': out += "&lt;"; break;
                case '>': out += "&gt;"; break;
                case '\n':
                    out += mode >= 2 ? "<br>\n" : "\n";
                    break;
                case '\r':
                    if (mode < 2) out += c;
                    break;
                case ' ': {
                    // A run of blanks keeps its width in HTML: every blank but the
                    // last of a run, and a blank that opens a line or follows a TAB.
                    const bool beforeBlank = i + 1 < value.size() && value[i + 1] == ' ';
                    const bool behindBreak = i > 0 && (value[i - 1] == '\t' || value[i - 1] == '\n');
                    out += mode >= 2 && (beforeBlank || behindBreak) ? "&nbsp;" : " ";
                    break;
                }
                default: out += c; break;
            }
            ++i;
        }
    } catch (const std::bad_alloc&) {
        return kTplNoMemory;
    } catch (const std::length_error&) {
        return kTplNoMemory;
    }
    return 0;
}

int NUTemplateToOutput::AddParam(const char* name, const char* value, int mode) {
    if (name == nullptr || *name == '\0') return kTplBadArgument;
    if (!params) return kTplNoMemory;
    const char* stored = value != nullptr ? value : "";
    std::string escaped;
    if (mode > 0) {
        const int rc = EscapeText(stored, mode, escaped);
        if (rc != 0) return rc;
        stored = escaped.c_str();
    }
    // The list keeps value lengths (terminator included) in an int.
    if (std::strlen(stored) >= static_cast<std::size_t>(INT_MAX)) return kTplBadArgument;
    return params->AddText(name, stored) < 0 ? kTplNoMemory : 0;
}

int NUTemplateToOutput::DeleteParam(const char* name) {
    // The list deletes everything for a null name; here a name is required.
    if (name == nullptr || *name == '\0') return kTplBadArgument;
    if (!params) return 0;
    const int rc = params->DeleteByName(name);
    return rc < 0 ? 0 : rc;
}

int NUTemplateToOutput::SetTemplate(const char* newPath, bool toBuffer) {
    loadedText.clear();
    loadedText.shrink_to_fit();
    textLoaded = false;
    givenText = nullptr;
    givenLen = 0;
    path.clear();
    buffered = toBuffer ? 1 : 0;
    noCaseFold = toBuffer ? 1 : 0;
    if (newPath == nullptr) return 0;
    const std::size_t len = std::strlen(newPath);
    if (len >= kPathSize) return kTplBadArgument;
    try {
        path.assign(newPath, len);
    } catch (const std::bad_alloc&) {
        return kTplNoMemory;
    }
    return 0;
}

int NUTemplateToOutput::SetTemplateText(const char* text, bool toBuffer) {
    loadedText.clear();
    loadedText.shrink_to_fit();
    textLoaded = false;
    givenText = text != nullptr ? text : "";
    givenLen = std::strlen(givenText);
    buffered = toBuffer ? 1 : 0;
    noCaseFold = toBuffer ? 1 : 0;
    return 0;
}

void NUTemplateToOutput::SetFirstLine(int line) { firstLine = line; }

void NUTemplateToOutput::SetLastLine(int line) { lastLine = line; }

int NUTemplateToOutput::SetStartMark(const char* mark) { return SetMark(startMark, mark); }

int NUTemplateToOutput::SetEndMark(const char* mark) { return SetMark(endMark, mark); }

void NUTemplateToOutput::SetLangList(const NUNVList* list) { langList = list; }

int NUTemplateToOutput::AddDateParam(const char* name, const char* date) {
    if (name == nullptr || *name == '\0') return kTplBadArgument;
    if (date == nullptr || *date == '\0') return AddParam(name, "", 0);
    if (std::strlen(date) != 8) return kTplBadArgument;
    for (int i = 0; i < 8; ++i)
        if (date[i] < '0' || date[i] > '9') return kTplBadArgument;
    // YYYYMMDD -> YYYY-MM-DD; the digits are already checked, so no number parsing.
    const char formatted[] = {date[0], date[1], date[2], date[3], '-', date[4], date[5],
                              '-',     date[6], date[7], '\0'};
    return AddParam(name, formatted, 0);
}

int NUTemplateToOutput::Print(std::string_view text) {
    return comOutWrite(text.data(), text.size());
}

int NUTemplateToOutput::LoadFile() {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return kTplOpenFailed;
    // Keeps the errno of a failure for the caller's report across close().
    auto fail = [fd](int code) {
        const int saved = errno;
        ::close(fd);
        errno = saved;
        return code;
    };
    struct stat st {};
    if (::fstat(fd, &st) != 0) return fail(kTplReadFailed);
    if (st.st_size > kMaxTemplateBytes) return fail(kTplTooLarge);
    std::string text;
    try {
        text.reserve(static_cast<std::size_t>(st.st_size));
        char chunk[kReadChunk];
        for (;;) {
            const ssize_t got = ::read(fd, chunk, sizeof chunk);
            if (got < 0) {
                if (errno == EINTR) continue;
                return fail(kTplReadFailed);
            }
            if (got == 0) break;
            // The size may differ from fstat's for devices and pipes.
            if (text.size() + static_cast<std::size_t>(got) > static_cast<std::size_t>(kMaxTemplateBytes))
                return fail(kTplTooLarge);
            text.append(chunk, static_cast<std::size_t>(got));
        }
    } catch (const std::bad_alloc&) {
        return fail(kTplNoMemory);
    } catch (const std::length_error&) {
        return fail(kTplNoMemory);
    }
    ::close(fd);
    loadedText = std::move(text);
    textLoaded = true;
    return 0;
}

int NUTemplateToOutput::CutRange(std::string_view all, std::string_view& out) const {
    std::size_t begin = 0;
    if (!startMark.empty()) {
        std::size_t at = 0;
        while (at < all.size() && !StartsWith(all, at, startMark)) at = NextLine(all, at);
        if (at >= all.size()) return kTplStartMarkMissing;
        begin = NextLine(all, at);
    } else {
        begin = LineOffset(all, firstLine > 1 ? firstLine : 1);
    }

    std::size_t end = all.size();
    if (!endMark.empty()) {
        std::size_t at = begin;
        while (at < all.size() && !StartsWith(all, at, endMark)) at = NextLine(all, at);
        if (at >= all.size()) return kTplEndMarkMissing;
        end = at;
    } else if (lastLine > 0) {
        end = LineOffset(all, static_cast<int64_t>(lastLine) + 1);
    }
    out = end > begin ? all.substr(begin, end - begin) : std::string_view{};
    return 0;
}

int NUTemplateToOutput::ReplacePlaceholders(std::string_view in, std::string& out) const {
    constexpr auto npos = std::string_view::npos;
    try {
        out.clear();
        out.reserve(in.size() + 8192);
        std::size_t i = 0;
        while (i < in.size()) {
            const std::size_t open = in.find('$', i);
            if (open == npos) {
                out.append(in.substr(i));
                break;
            }
            out.append(in.substr(i, open - i));

            // The closing "$" must stand on the same line; otherwise the rest
            // of the line is plain text.
            std::size_t close = in.find('$', open + 1);
            const std::size_t scanEnd = close == npos ? in.size() : close;
            const void* lf = std::memchr(in.data() + open + 1, '\n', scanEnd - open - 1);
            if (close == npos || lf != nullptr) {
                const std::size_t lineEnd =
                    lf != nullptr ? static_cast<std::size_t>(static_cast<const char*>(lf) - in.data())
                                  : in.size();
                out.append(in.substr(open, lineEnd - open));
                i = lineEnd;
                continue;
            }

            const std::string_view whole = in.substr(open, close - open + 1);
            const std::string_view name = in.substr(open + 1, close - open - 1);
            i = close + 1;
            // Over-long names and names holding NUL can't be parameters.
            if (name.size() > kNameMax || name.find('\0') != npos) {
                out.append(whole);
                continue;
            }
            if (name.starts_with("LL")) {
                const std::string key(name.substr(2));
                const char* text = LookUp(langList, key);
                out.append(text != nullptr ? std::string_view(text) : std::string_view(key));
                continue;
            }
            // Values are written as they are: a '$' inside one starts nothing.
            const char* value = LookUp(params.get(), std::string(name));
            out.append(value != nullptr ? std::string_view(value) : whole);
        }
    } catch (const std::bad_alloc&) {
        return kTplNoMemory;
    } catch (const std::length_error&) {
        return kTplNoMemory;
    }
    return 0;
}

void NUTemplateToOutput::FoldTagCase(std::string& text) {
    bool inTag = false;
    bool inQuote = false;
    bool inValue = false;  // behind "=", up to the next blank
    for (std::size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (static_cast<unsigned char>(c) >= 0x80) {
            i += SequenceLen(text, i);
            continue;
        }
        if (!inTag) {
            inTag = c == '<';
        } else if (inQuote) {
            inQuote = c != '"';
        } else if (c == '"') {
            inQuote = true;
        } else if (c == '>') {
            inTag = false;
            inValue = false;
        } else if (inValue) {
            inValue = !(c == ' ' || c == '\t' || c == '\n' || c == '\r');
        } else if (c == '=') {
            inValue = true;
        } else if (c >= 'a' && c <= 'z') {
            text[i] = static_cast<char>(c - 'a' + 'A');
        }
        ++i;
    }
}

int NUTemplateToOutput::ExpandTemplate() {
    std::string_view all;
    if (givenText != nullptr) {
        all = std::string_view(givenText, givenLen);
    } else {
        if (!textLoaded) {
            if (path.empty()) return kTplNoPath;
            const int rc = LoadFile();
            if (rc != 0) return rc;
        }
        all = loadedText;
    }

    std::string_view range;
    int rc = CutRange(all, range);
    if (rc != 0) return rc;

    std::string expanded;
    rc = ReplacePlaceholders(range, expanded);
    if (rc != 0) return rc;

    if (noCaseFold == 0) FoldTagCase(expanded);

    // Form filling (values and selected states of "<input ", "<select ",
    // "<option", "<textarea" and "<form " tags from the parameters) would run
    // here for the pages of the web programs. The templates the batch runs
    // hold no form tags, so it is left out.

    if (buffered != 0) return AppendResult(expanded);
    return Print(expanded);
}
