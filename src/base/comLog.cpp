// The debug log: one process-wide path, opened and closed for every line so that
// other processes can append; and the numbered logs that the settings name.
#include "base/comLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "base/comClock.h"
#include "base/comStr.h"
#include "base/comTime.h"

namespace {

constexpr std::size_t kPathMax = 1024;
char g_logPath[kPathMax] = {};
bool g_notesEncoded = false;

struct NumberedLog {
    int number;
    std::string path;
};
std::vector<NumberedLog> g_numbered;

// "YYYY/MM/DD hh:mm:ss" in the fixed local zone, with ".mmm" when millis is set.
void FormatNow(char* out, std::size_t size, bool millis) {
    // One reading of the clock for the whole stamp.
    timespec now{};
    comClockNow(&now);
    char date[16] = {}, time[16] = {};
    comTimeLocalAt(now, date, time);
    if (millis)
        snprintf(out, size, "%.4s/%.2s/%.2s %.2s:%.2s:%.2s.%03d ", date, date + 4, date + 6, time,
                 time + 2, time + 4, static_cast<int>(now.tv_nsec / 1000000));
    else
        snprintf(out, size, "%.4s/%.2s/%.2s %.2s:%.2s:%.2s ", date, date + 4, date + 6, time,
                 time + 2, time + 4);
}

void AppendLine(const char* path, bool millis, const char* format, va_list args) {
    int fd = open(path, O_WRONLY | O_CREAT | O_APPEND, 0666);
    if (fd < 0) return;
    char stamp[64];
    FormatNow(stamp, sizeof stamp, millis);
    std::vector<char> text(8192);
    int n = vsnprintf(text.data(), text.size(), format, args);
    std::size_t len = n < 0 ? 0 : std::min<std::size_t>(static_cast<std::size_t>(n), text.size() - 1);
    if (n >= 0 && static_cast<std::size_t>(n) >= text.size()) {
        // Too long for one line: cut between characters and end the line, so
        // that the next entry starts a line of its own.
        comUtf8CutBytes(text.data(), static_cast<int>(text.size() - 2), true);
        len = std::strlen(text.data());
        text[len++] = '\n';
    }
    std::string line = stamp;
    line.append(text.data(), len);
    const char* p = line.data();
    std::size_t left = line.size();
    while (left > 0) {
        ssize_t w = write(fd, p, left);
        if (w <= 0) break;
        p += w;
        left -= static_cast<std::size_t>(w);
    }
    close(fd);
}

}  // namespace

void comLogSetPath(const char* newPath, char* outOldPath) {
    if (outOldPath) {
        std::memcpy(outOldPath, g_logPath, kPathMax);
    }
    if (!newPath) {
        g_logPath[0] = '\0';
        return;
    }
    snprintf(g_logPath, kPathMax, "%s", newPath);
}

const char* comLogGetPath() { return g_logPath; }

void comDebugLog(const char* format, ...) {
    if (g_logPath[0] == '\0' || !format) return;
    va_list args;
    va_start(args, format);
    AppendLine(g_logPath, true, format, args);
    va_end(args);
}

void comDebugLogV(const char* format, va_list args) {
    if (g_logPath[0] == '\0' || !format) return;
    AppendLine(g_logPath, true, format, args);
}

std::string comTraceEncode(std::string_view text, std::size_t maxChars) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string out;
    out.reserve(std::min(maxChars, text.size() * 2));
    for (unsigned char c : text) {
        if (c == '\r') continue;
        if (c == '\n') {
            if (out.size() + 1 > maxChars) break;
            out.push_back('\n');
            continue;
        }
        if (out.size() + 2 > maxChars) break;
        out.push_back(kDigits[c >> 4]);
        out.push_back(kDigits[c & 0x0f]);
    }
    return out;
}

void comLogSetNotesEncoded(bool on) { g_notesEncoded = on; }

void comDebugNote(const char* format, ...) {
    if (g_logPath[0] == '\0' || !format) return;
    va_list args;
    va_start(args, format);
    if (!g_notesEncoded) {
        AppendLine(g_logPath, true, format, args);
        va_end(args);
        return;
    }
    std::vector<char> text(8192);
    vsnprintf(text.data(), text.size(), format, args);
    va_end(args);
    // As a trace report: the encoding fits the log's line, and the line ends.
    std::string encoded = comTraceEncode(text.data(), text.size() - 2);
    if (encoded.empty() || encoded.back() != '\n') encoded.push_back('\n');
    comDebugLog("%s", encoded.c_str());
}

void comNumberedLogSet(int number, const char* path) {
    for (auto& entry : g_numbered) {
        if (entry.number == number) {
            entry.path = path ? path : "";
            return;
        }
    }
    g_numbered.push_back({number, path ? path : ""});
}

void comNumberedLog(int number, const char* format, ...) {
    if (!format) return;
    for (const auto& entry : g_numbered) {
        if (entry.number != number || entry.path.empty()) continue;
        va_list args;
        va_start(args, format);
        AppendLine(entry.path.c_str(), false, format, args);
        va_end(args);
        return;
    }
}

void comNumberedLogReset() { g_numbered.clear(); }
