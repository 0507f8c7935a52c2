// What a create run leaves behind, read back: the status file, the user log and
// the hex-encoded trace log, each parsed into plain records. Nothing here
// interprets the run; ConvRunAccount does that.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The status file: status, sdate, edate and one dispmsg per function.
struct ConvRunStatus {
    bool present = false;
    std::string status;  // "1" running, "0", "2", "3"
    std::string sdate;   // fourteen digits, local time
    std::string edate;   // empty while running
    std::vector<std::string> messages;  // the dispmsg lines in order
};

// One report of the user log: "YYYY/MM/DD hh:mm:ss.mmm [TAG] text". A text
// that holds line feeds goes on in unstamped lines, which are joined back.
struct ConvLogEntry {
    std::string stamp;    // "YYYY/MM/DD hh:mm:ss.mmm"
    int64_t millis = 0;   // the stamp in milliseconds (for durations only)
    std::string tag;      // "INFO", "WARN", "ERR" (empty for a line of no form)
    std::string text;
};

// One report of the trace log, decoded. A report with a code has the form
// "[source:line] [ret=N] [msg=text] [detail=text]"; a plain one is text only.
// As a text may itself hold "] [detail=" (a key named detail), every way of
// reading the body as message and detail is kept, the whole body as message
// first.
struct ConvTraceEntry {
    std::string stamp;
    bool hasCode = false;
    std::string source;  // "source:line"
    int64_t ret = 0;
    std::vector<std::pair<std::string, std::string>> splits;  // (msg, detail)
    std::string raw;  // a report without a code: the decoded text (empty otherwise)
};

// A row's report as a writer makes it: "<table> [key=value]... <reason>".
struct ConvRowReport {
    std::string table;
    std::vector<std::pair<std::string, std::string>> keys;
    std::string reason;
};

namespace convrun {

// "YYYY/MM/DD hh:mm:ss.mmm" in milliseconds since 1970-01-01 of the same
// (unnamed) zone; nullopt when the text isn't such a stamp.
std::optional<int64_t> ParseStamp(std::string_view stamp);

ConvRunStatus ParseStatus(std::string_view text);
std::vector<ConvLogEntry> ParseUserLog(std::string_view text);
std::vector<ConvTraceEntry> ParseTraceLog(std::string_view text);

// Splits a writer's row report into table, keys and reason; nullopt when the
// text doesn't start with a table name.
std::optional<ConvRowReport> ParseRowReport(std::string_view text);

// Reads a whole file; nullopt when it can't be opened.
std::optional<std::string> ReadWholeFile(const std::string& path);

// True when some process holds a lock on the file (the run's lock on
// "conv/sch.sts.lk"); false when the file is missing or free.
bool IsLockHeld(const std::string& path);

}  // namespace convrun
