// convsch-inspect: reads one flat-store file exactly as the migration does and
// prints its records as JSON, one line each, with the reports on stderr.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdCom.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"

namespace {

const char kUsage[] =
    "usage: convsch-inspect [--index | --id-index | --items | --words] FILE\n"
    "  (no option)  a record file\n"
    "  --index      a value-form index (<anything>=<id>) and the records it names\n"
    "  --id-index   a key-form index (<id>=<anything>) and the records it names\n"
    "  --items      an item list (one id per line)\n"
    "  --words      a word list (one text per line)\n";

// An application object with no status file and no logs of its own: its trace
// goes to an anonymous in-memory file, which is decoded for stderr at the end.
class InspectApp : public ConvAppStd {
public:
    InspectApp() : ConvAppStd(0, nullptr, "sch") {
        traceFd_ = memfd_create("convsch-inspect-trace", 0);
        if (traceFd_ >= 0) tracePath_ = "/proc/self/fd/" + std::to_string(traceFd_);
    }
    ~InspectApp() override {
        if (traceFd_ >= 0) close(traceFd_);
    }
    InspectApp(const InspectApp&) = delete;
    InspectApp& operator=(const InspectApp&) = delete;

    // Everything reported so far, as the trace log would hold it, decoded.
    std::string TraceText() const;

private:
    int traceFd_ = -1;
};

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

// A trace line is "YYYY/MM/DD hh:mm:ss.mmm " and hex digits; a report that held
// a line feed goes on in unstamped lines.
std::string DecodeTraceLine(std::string_view line) {
    if (line.size() >= 24 && line[4] == '/' && line[7] == '/' && line[13] == ':') line.remove_prefix(24);
    std::string out;
    for (std::size_t i = 0; i + 1 < line.size(); i += 2) {
        const int hi = HexDigit(line[i]);
        const int lo = HexDigit(line[i + 1]);
        if (hi < 0 || lo < 0) break;
        out += static_cast<char>(hi * 16 + lo);
    }
    return out;
}

std::string InspectApp::TraceText() const {
    std::string raw;
    if (traceFd_ < 0) return raw;
    char buf[4096];
    for (off_t offset = 0;;) {
        const ssize_t n = pread(traceFd_, buf, sizeof buf, offset);
        if (n <= 0) break;
        raw.append(buf, static_cast<std::size_t>(n));
        offset += n;
    }
    std::string text;
    std::size_t start = 0;
    while (start < raw.size()) {
        std::size_t end = raw.find('\n', start);
        if (end == std::string::npos) end = raw.size();
        text += DecodeTraceLine(std::string_view(raw).substr(start, end - start));
        if (end < raw.size()) text += '\n';
        start = end + 1;
    }
    return text;
}

// One report of the trace, "[source:line] [ret=N]  [msg=TEXT] [detail=D]", as
// "TAG [ret=N] TEXT [detail=D]", TAG being the user log's.
std::string FormatReport(const std::string& report) {
    const std::size_t retAt = report.find("] [ret=");
    if (report.empty() || report[0] != '[' || retAt == std::string::npos) return "INFO " + report;
    const long code = std::strtol(report.c_str() + retAt + 7, nullptr, 10);
    const std::size_t bodyAt = report.find(']', retAt + 7);
    std::string body = bodyAt == std::string::npos ? std::string() : report.substr(bodyAt + 1);
    std::string text, detail;
    const std::size_t detailAt = body.rfind(" [detail=");
    if (detailAt != std::string::npos && !body.empty() && body.back() == ']') {
        detail = body.substr(detailAt + 9, body.size() - detailAt - 10);
        body.resize(detailAt);
    }
    const std::size_t msgAt = body.find("[msg=");
    if (msgAt != std::string::npos && !body.empty() && body.back() == ']')
        text = body.substr(msgAt + 5, body.size() - msgAt - 6);
    std::string out = code == 0 ? "INFO" : (code > 0 ? "WARN" : "ERR");
    out += " [ret=" + std::to_string(code) + "]";
    if (!text.empty()) out += " " + text;
    if (!detail.empty()) out += " [detail=" + detail + "]";
    return out;
}

// Splits the decoded trace into reports: a report starts with "[" and a
// following line that doesn't belongs to it.
std::vector<std::string> SplitReports(const std::string& trace) {
    std::vector<std::string> reports;
    std::size_t start = 0;
    while (start < trace.size()) {
        std::size_t end = trace.find('\n', start);
        if (end == std::string::npos) end = trace.size();
        const std::string line = trace.substr(start, end - start);
        if (reports.empty() || (!line.empty() && line[0] == '['))
            reports.push_back(line);
        else
            reports.back() += "\n" + line;
        start = end + 1;
    }
    while (!reports.empty() && reports.back().empty()) reports.pop_back();
    return reports;
}

// Length of a valid UTF-8 sequence at text[i], 0 when the bytes there are not one.
std::size_t Utf8Length(std::string_view text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    std::size_t len;
    unsigned min;
    if (lead < 0x80) return 1;
    if ((lead & 0xE0) == 0xC0) {
        len = 2;
        min = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        len = 3;
        min = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        len = 4;
        min = 0x10000;
    } else {
        return 0;
    }
    if (i + len > text.size()) return 0;
    unsigned code = lead & (0x7F >> len);
    for (std::size_t k = 1; k < len; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) return 0;
        code = (code << 6) | (byte(i + k) & 0x3F);
    }
    if (code < min || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
    return len;
}

// A JSON string; bytes that are not UTF-8 (names are not converted) become U+FFFD.
std::string JsonString(std::string_view text) {
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const std::size_t len = Utf8Length(text, i);
        if (len == 0) {
            out += "\\ufffd";
            ++i;
            continue;
        }
        if (len > 1) {
            out.append(text.substr(i, len));
            i += len;
            continue;
        }
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20 || c == 0x7F) {
                    char esc[8];
                    snprintf(esc, sizeof esc, "\\u%04x", c);
                    out += esc;
                } else {
                    out += static_cast<char>(c);
                }
        }
        ++i;
    }
    return out + "\"";
}

std::string RecordJson(const ConvRow& record) {
    std::string out = "[";
    for (std::size_t i = 0; i < record.size(); ++i) {
        const ConvRowItem& item = *record[i];
        if (i > 0) out += ",";
        out += '[';
        out += JsonString(item.name);
        out += ',';
        if (item.type == kRowTypeList) {
            out += "[";
            for (std::size_t k = 0; k < item.list.size(); ++k) {
                if (k > 0) out += ",";
                out += JsonString(item.list[k]);
            }
            out += "]";
        } else {
            out += item.HasValue() ? JsonString(*item.value) : "null";
        }
        out += "]";
    }
    return out + "]";
}

enum class Form { Record, Index, IdIndex, Items, Words };

std::unique_ptr<ConvStdCom> MakeReader(Form form, ConvApp* app, const char* path) {
    switch (form) {
        case Form::Index: return std::make_unique<ConvStdComIndex>(app, path, true);
        case Form::IdIndex: return std::make_unique<ConvStdComIDIndex>(app, path, true);
        case Form::Items: return std::make_unique<ConvStdComItemIndex>(app, path);
        case Form::Words: return std::make_unique<ConvStdComStrIndex>(app, path);
        case Form::Record: break;
    }
    return std::make_unique<ConvStdCom>(app, path);
}

// The file to read and its form; null for arguments that name none.
const char* ParseArguments(int argc, char** argv, Form& form) {
    if (argc == 2 && argv[1][0] != '-' && argv[1][0] != '\0') return argv[1];
    if (argc != 3 || argv[2][0] == '\0') return nullptr;
    static const struct {
        const char* option;
        Form form;
    } kOptions[] = {{"--index", Form::Index},
                    {"--id-index", Form::IdIndex},
                    {"--items", Form::Items},
                    {"--words", Form::Words}};
    for (const auto& option : kOptions) {
        if (std::strcmp(argv[1], option.option) == 0) {
            form = option.form;
            return argv[2];
        }
    }
    return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    Form form = Form::Record;
    const char* file = ParseArguments(argc, argv, form);
    if (!file) {
        fputs(kUsage, stderr);
        return 2;
    }
    // Record directories lie beside an index; give a bare name its directory.
    std::string path = file;
    if (path.find('/') == std::string::npos) path = "./" + path;

    InspectApp app;
    std::unique_ptr<ConvStdCom> reader = MakeReader(form, &app, path.c_str());
    // An index read gives its last id; any negative result is a failure.
    const int ret = reader->Read();

    for (std::size_t i = 0; i < reader->RecordCount(); ++i)
        printf("%s\n", RecordJson(*reader->GetRecord(i)).c_str());
    fflush(stdout);
    for (const std::string& report : SplitReports(app.TraceText()))
        fprintf(stderr, "%s\n", FormatReport(report).c_str());
    return ret < 0 ? 1 : 0;
}
