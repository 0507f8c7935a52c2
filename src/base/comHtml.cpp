// HTML escapes, the link scan, the reverse decoding and URL encoding.
#include "base/comHtml.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "base/NUOutput.h"

namespace {

// Longest address taken into one link.
constexpr std::size_t kMaxAddress = 5120;

const char* EntityOf(char c, bool named) {
    switch (c) {
    case '"': return named ? "&quot;" : "&#34;";
    case '&': return named ? "&amp;" : "&#38;";
    case '\'': return named ? "&apos;" : nullptr;
    case '<': return named ? "&lt;" : "&#60;";
    case '>': return named ? "&gt;" : "&#62;";
    default: return nullptr;
    }
}

// Length of the scheme that text starts with at i, 0 when none.
std::size_t SchemeAt(std::string_view text, std::size_t i) {
    for (std::string_view scheme : {"http://", "https://", "mailto:", "ftp://"})
        if (text.substr(i, scheme.size()) == scheme) return scheme.size();
    return 0;
}

bool EndsAddress(unsigned char c) {
    return c == ' ' || c == '\\' || c == '(' || c == ')' || c == '"' || c == '\r' || c == '\n' || c == '\t' ||
           c == '<' || c == '>' || c > 0x7F;
}

// "<", ">", "&" of an address as numeric entities.
void AppendAddress(std::string& out, std::string_view address) {
    for (char c : address) {
        if (c == '<' || c == '>' || c == '&')
            out += EntityOf(c, false);
        else
            out += c;
    }
}

char* ToHeap(const std::string& text) {
    char* block = static_cast<char*>(std::malloc(text.size() + 1));
    if (block) std::memcpy(block, text.c_str(), text.size() + 1);
    return block;
}

}  // namespace

void comHtmlEscapeText(std::string* out, std::string_view text, bool lineBreaks, bool namedEntities) {
    std::string printed;
    std::string& dst = out ? *out : printed;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r') continue;
        if (c == '\n') {
            dst += lineBreaks ? "<br>\n" : "\n";
        } else if (c == ' ' && lineBreaks) {
            // Printed text keeps single blanks between words.
            const bool lineStart = i == 0 || text[i - 1] == '\n';
            const bool beforeBlank = i + 1 < text.size() && text[i + 1] == ' ';
            dst += (out || lineStart || beforeBlank) ? "&nbsp;" : " ";
        } else if (const char* entity = EntityOf(c, namedEntities)) {
            dst += entity;
        } else {
            dst += c;
        }
    }
    if (!out) comOutWrite(printed.data(), printed.size());
}

void comHtmlEscapeLink(std::string* out, std::string_view text, bool lineBreaks, bool keepBreaks) {
    std::string printed;
    std::string& dst = out ? *out : printed;
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t scheme = SchemeAt(text, i);
        if (scheme > 0) {
            std::string address;
            std::size_t j = i;
            while (j < text.size() && address.size() < kMaxAddress) {
                const auto c = static_cast<unsigned char>(text[j]);
                if (!EndsAddress(c)) {
                    address += static_cast<char>(c);
                    ++j;
                    continue;
                }
                if (!keepBreaks || (c != '\r' && c != '\n')) break;
                // A break inside an address: the next line continues it unless
                // it starts a new address or with a byte that ends one.
                std::size_t next = j;
                while (next < text.size() && (text[next] == '\r' || text[next] == '\n')) ++next;
                if (next >= text.size() || SchemeAt(text, next) > 0 ||
                    EndsAddress(static_cast<unsigned char>(text[next])))
                    break;
                j = next;
            }
            if (address.size() > scheme) {
                std::string shown;
                AppendAddress(shown, address);
                if (text.substr(i, 7) == "mailto:")
                    dst += "<a href=\"" + shown + "\">" + shown + "</a>";
                else
                    dst += "<a href=\"" + shown + "\" target=\"new\">" + shown + "</a>";
                i = j;
                continue;
            }
        }
        const char c = text[i];
        if (c == '\r') {
        } else if (c == '\n') {
            dst += lineBreaks ? "<br>\n" : "\n";
        } else if (c == ' ') {
            const bool special = i == 0 || text[i - 1] == '\n' || text[i - 1] == '\t' ||
                                 (i + 1 < text.size() && text[i + 1] == ' ');
            dst += special ? "&nbsp;" : " ";
        } else if (const char* entity = EntityOf(c, false)) {
            dst += entity;
        } else {
            dst += c;
        }
        ++i;
    }
    if (!out) comOutWrite(printed.data(), printed.size());
}

char* comHtmlEscape(const char* text, bool withLinks, bool lineBreaks, bool printOnly, bool namedEntities,
                    bool keepBreaks) {
    if (!text) return nullptr;
    if (printOnly) {
        if (withLinks)
            comHtmlEscapeLink(nullptr, text, lineBreaks, keepBreaks);
        else
            comHtmlEscapeText(nullptr, text, lineBreaks, namedEntities);
        return nullptr;
    }
    try {
        std::string out;
        out.reserve(std::strlen(text) * (withLinks ? 12 : 6) + 1);
        if (withLinks)
            comHtmlEscapeLink(&out, text, lineBreaks, keepBreaks);
        else
            comHtmlEscapeText(&out, text, lineBreaks, namedEntities);
        return ToHeap(out);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::string comHtmlEscapeString(std::string_view text, bool lineBreaks) {
    std::string out;
    comHtmlEscapeText(&out, text, lineBreaks, false);
    return out;
}

std::string comHtmlUnescape(std::string_view text) {
    static constexpr struct {
        std::string_view entity;
        char c;
    } kEntities[] = {{"&#60;", '<'}, {"&lt;", '<'},    {"&#62;", '>'},  {"&gt;", '>'},   {"&#38;", '&'},
                     {"&amp;", '&'}, {"&#34;", '"'},   {"&quot;", '"'}, {"&nbsp;", ' '}, {"&apos;", '\''}};
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        bool decoded = false;
        if (text[i] == '&') {
            for (const auto& e : kEntities) {
                if (text.substr(i, e.entity.size()) == e.entity) {
                    out += e.c;
                    i += e.entity.size();
                    decoded = true;
                    break;
                }
            }
        }
        if (!decoded) out += text[i++];
    }
    return out;
}

int comHtmlUnescape(char* out, const char* text) {
    if (!out || !text) return -99;
    const std::string decoded = comHtmlUnescape(std::string_view(text));
    std::memcpy(out, decoded.c_str(), decoded.size() + 1);
    return static_cast<int>(decoded.size());
}

std::string comUrlEncode(std::string_view text, int mode) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    for (const char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        const bool keep = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
                          c == '_' || c == '.' || c == '~' || (mode == 2 && c == '/');
        if (keep) {
            out += ch;
        } else {
            out += '%';
            out += kHex[c >> 4];
            out += kHex[c & 15];
        }
    }
    return out;
}
