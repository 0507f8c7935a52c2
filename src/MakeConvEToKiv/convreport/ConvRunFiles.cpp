// Readers of the status file, the user log and the trace log of a run.
#include "MakeConvEToKiv/convreport/ConvRunFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <memory>

namespace convrun {
namespace {

constexpr std::size_t kStampLength = 23;  // "YYYY/MM/DD hh:mm:ss.mmm"

bool Digits(std::string_view text, std::size_t from, std::size_t count, int64_t& out) {
    if (from + count > text.size()) return false;
    int64_t value = 0;
    for (std::size_t i = from; i < from + count; ++i) {
        if (text[i] < '0' || text[i] > '9') return false;
        value = value * 10 + (text[i] - '0');
    }
    out = value;
    return true;
}

// Days since 1970-01-01 of a proleptic Gregorian date.
int64_t DaysFromCivil(int64_t y, int64_t m, int64_t d) {
    y -= m <= 2;
    const int64_t era = (y >= 0 ? y : y - 399) / 400;
    const int64_t yoe = y - era * 400;
    const int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

// Splits text into lines without their line feeds (and a carriage return
// before one); a last line without a line feed counts too.
std::vector<std::string_view> Lines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

// The stamp at the start of a log line, with its blank; nullopt if none.
std::optional<int64_t> LineStamp(std::string_view line) {
    if (line.size() < kStampLength + 1 || line[kStampLength] != ' ') return std::nullopt;
    return ParseStamp(line.substr(0, kStampLength));
}

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Decodes pairs of hex digits; nullopt at the first character that isn't one.
std::optional<std::string> DecodeHex(std::string_view hex) {
    if (hex.size() % 2 != 0) return std::nullopt;
    std::string out;
    out.reserve(hex.size() / 2);
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        const int high = HexValue(hex[i]);
        const int low = HexValue(hex[i + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        out.push_back(static_cast<char>(high * 16 + low));
    }
    return out;
}

void SplitTraceReport(ConvTraceEntry& entry) {
    std::string_view text = entry.raw;
    // "[source:line] [ret=N] <body>" where body is " [msg=...]" and/or " [detail=...]".
    if (text.empty() || text.front() != '[') return;
    const std::size_t sourceEnd = text.find("] [ret=");
    if (sourceEnd == std::string_view::npos) return;
    std::size_t pos = sourceEnd + 7;
    const bool negative = pos < text.size() && text[pos] == '-';
    if (negative) ++pos;
    int64_t value = 0;
    std::size_t digits = 0;
    while (pos < text.size() && text[pos] >= '0' && text[pos] <= '9' && digits < 18) {
        value = value * 10 + (text[pos] - '0');
        ++pos;
        ++digits;
    }
    if (digits == 0 || pos >= text.size() || text[pos] != ']') return;
    entry.hasCode = true;
    entry.source = std::string(text.substr(1, sourceEnd - 1));
    entry.ret = negative ? -value : value;
    // After "] " the body: " [msg=<text>]", " [msg=<text>] [detail=<text>]",
    // " [detail=<text>]" or nothing.
    if (pos + 1 >= text.size() || text[pos + 1] != ' ') return;
    std::string_view body = text.substr(pos + 2);
    if (body.size() < 2 || body.back() != ']') return;
    if (body.compare(0, 9, " [detail=") == 0) {
        entry.splits.emplace_back("", std::string(body.substr(9, body.size() - 10)));
        return;
    }
    if (body.compare(0, 6, " [msg=") != 0) return;
    const std::string_view inner = body.substr(6, body.size() - 7);
    entry.splits.emplace_back(std::string(inner), "");
    constexpr std::string_view kDetail = "] [detail=";
    // A few splits at most: a report names a key "detail" once, and a text
    // full of them mustn't cost a copy per occurrence.
    constexpr std::size_t kMaxSplits = 8;
    for (std::size_t at = inner.find(kDetail); at != std::string_view::npos && entry.splits.size() < kMaxSplits;
         at = inner.find(kDetail, at + 1))
        entry.splits.emplace_back(std::string(inner.substr(0, at)), std::string(inner.substr(at + kDetail.size())));
}

}  // namespace

std::optional<int64_t> ParseStamp(std::string_view stamp) {
    if (stamp.size() != kStampLength || stamp[4] != '/' || stamp[7] != '/' || stamp[10] != ' ' || stamp[13] != ':' ||
        stamp[16] != ':' || stamp[19] != '.')
        return std::nullopt;
    int64_t y, mo, d, h, mi, s, ms;
    if (!Digits(stamp, 0, 4, y) || !Digits(stamp, 5, 2, mo) || !Digits(stamp, 8, 2, d) || !Digits(stamp, 11, 2, h) ||
        !Digits(stamp, 14, 2, mi) || !Digits(stamp, 17, 2, s) || !Digits(stamp, 20, 3, ms))
        return std::nullopt;
    if (mo < 1 || mo > 12 || d < 1 || d > 31 || h > 23 || mi > 59 || s > 60) return std::nullopt;
    return ((DaysFromCivil(y, mo, d) * 24 + h) * 60 + mi) * 60000 + s * 1000 + ms;
}

ConvRunStatus ParseStatus(std::string_view text) {
    ConvRunStatus status;
    status.present = true;
    for (std::string_view line : Lines(text)) {
        const std::size_t eq = line.find('=');
        if (eq == std::string_view::npos) continue;
        const std::string_view name = line.substr(0, eq);
        std::string value(line.substr(eq + 1));
        if (name == "status")
            status.status = std::move(value);
        else if (name == "sdate")
            status.sdate = std::move(value);
        else if (name == "edate")
            status.edate = std::move(value);
        else if (name == "dispmsg")
            status.messages.push_back(std::move(value));
    }
    return status;
}

std::vector<ConvLogEntry> ParseUserLog(std::string_view text) {
    std::vector<ConvLogEntry> entries;
    for (std::string_view line : Lines(text)) {
        const std::optional<int64_t> millis = LineStamp(line);
        if (!millis) {
            // The rest of a text with a line feed, or a line of no form.
            if (!entries.empty()) {
                entries.back().text += '\n';
                entries.back().text += line;
            } else if (!line.empty()) {
                entries.push_back(ConvLogEntry{"", 0, "", std::string(line)});
            }
            continue;
        }
        ConvLogEntry entry;
        entry.stamp = std::string(line.substr(0, kStampLength));
        entry.millis = *millis;
        std::string_view rest = line.substr(kStampLength + 1);
        if (!rest.empty() && rest.front() == '[') {
            const std::size_t close = rest.find("] ");
            if (close != std::string_view::npos) {
                entry.tag = std::string(rest.substr(1, close - 1));
                rest = rest.substr(close + 2);
            }
        }
        entry.text = std::string(rest);
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::vector<ConvTraceEntry> ParseTraceLog(std::string_view text) {
    std::vector<ConvTraceEntry> entries;
    for (std::string_view line : Lines(text)) {
        std::string_view hex = line;
        const bool stamped = LineStamp(line).has_value();
        if (stamped) hex = line.substr(kStampLength + 1);
        std::optional<std::string> decoded = DecodeHex(hex);
        if (!decoded) decoded = std::string(hex);  // not hex: kept as it stands
        if (stamped || entries.empty()) {
            ConvTraceEntry entry;
            if (stamped) entry.stamp = std::string(line.substr(0, kStampLength));
            entry.raw = std::move(*decoded);
            entries.push_back(std::move(entry));
        } else {
            entries.back().raw += '\n';
            entries.back().raw += *decoded;
        }
    }
    for (ConvTraceEntry& entry : entries) {
        SplitTraceReport(entry);
        if (entry.hasCode) std::string().swap(entry.raw);  // its parts are in splits
    }
    return entries;
}

std::optional<ConvRowReport> ParseRowReport(std::string_view text) {
    // The table: a name of letters, digits and underscores.
    std::size_t pos = 0;
    while (pos < text.size() && (std::isalnum(static_cast<unsigned char>(text[pos])) || text[pos] == '_')) ++pos;
    if (pos == 0 || pos >= text.size() || text[pos] != ' ') return std::nullopt;
    ConvRowReport report;
    report.table = std::string(text.substr(0, pos));
    // Each key is " [name=value]"; a value ends at the first "]" that a blank
    // or the end of the text follows.
    while (text.compare(pos, 2, " [") == 0) {
        const std::size_t eq = text.find('=', pos + 2);
        if (eq == std::string_view::npos) break;
        std::size_t close = text.find(']', eq);
        while (close != std::string_view::npos && close + 1 < text.size() && text[close + 1] != ' ')
            close = text.find(']', close + 1);
        if (close == std::string_view::npos) break;
        const std::string_view name = text.substr(pos + 2, eq - pos - 2);
        if (name.empty() || name.find(' ') != std::string_view::npos) break;
        report.keys.emplace_back(std::string(name), std::string(text.substr(eq + 1, close - eq - 1)));
        pos = close + 1;
    }
    if (pos < text.size() && text[pos] == ' ') ++pos;
    report.reason = std::string(text.substr(pos));
    return report;
}

std::optional<std::string> ReadWholeFile(const std::string& path) {
    struct Closer {
        void operator()(FILE* f) const { std::fclose(f); }
    };
    std::unique_ptr<FILE, Closer> file(std::fopen(path.c_str(), "rb"));
    if (!file) return std::nullopt;
    std::string out;
    char buffer[65536];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) out.append(buffer, n);
    if (std::ferror(file.get())) return std::nullopt;
    return out;
}

bool IsLockHeld(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct flock probe{};
    probe.l_type = F_WRLCK;
    probe.l_whence = SEEK_SET;
    probe.l_start = 0;
    probe.l_len = 0;
    const bool held = fcntl(fd, F_GETLK, &probe) == 0 && probe.l_type != F_UNLCK;
    close(fd);
    return held;
}

}  // namespace convrun
