// Shared helpers of the tests: temporary directories, file reading, argument
// vectors and the decoding of trace-log lines.
#pragma once

#include <string>
#include <vector>

namespace testsupport {

// A directory under /tmp removed with its contents at the end of the scope.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& content);
bool Exists(const std::string& path);
void MakeDirs(const std::string& path);
std::vector<std::string> Lines(const std::string& text);

// Owns the strings of an argv array.
class Args {
public:
    explicit Args(std::vector<std::string> values);
    int Argc() const { return static_cast<int>(ptrs_.size()) - 1; }
    char** Argv() { return ptrs_.data(); }

private:
    std::vector<std::string> values_;
    std::vector<char*> ptrs_;
};

// The sixteen start arguments of a run on root, in the given mode, with both
// databases at host:port (a port nobody listens on makes the start fail).
std::vector<std::string> RunArgs(const std::string& root, const std::string& mode, const std::string& port,
                                 bool withSqlLogDir = false, const std::string& sqlLogDir = "");

// The EUC-JP bytes of a UTF-8 text, as the flat store keeps it.
std::string Euc(const std::string& utf8);

// A TCP port on 127.0.0.1 that nobody listens on.
std::string ClosedPort();

// Strips the "YYYY/MM/DD hh:mm:ss.mmm " stamp of a log line; empty when the stamp is missing.
std::string StripStamp(const std::string& line);
// The lines of a log file with their stamps stripped.
std::vector<std::string> LogLines(const std::string& path);
// The values of every "name=" line of a status file, in order.
std::vector<std::string> StatusValues(const std::string& path, const std::string& name);
// The first of them, or "<none>".
std::string StatusValue(const std::string& path, const std::string& name);
// True when text is exactly count decimal digits (a stamp such as 20040101120000).
bool IsDigits(const std::string& text, std::size_t count);
// Decodes hexadecimal text.
std::string DecodeHex(const std::string& hex);
// Reads a trace log: each report is a stamped line of hex digits, continued by
// unstamped hex lines where the report held a line feed. Gives the decoded
// reports (a continuation joined with "\n"); wellFormed is false when any line
// is neither.
struct TraceLog {
    bool wellFormed = true;
    std::vector<std::string> reports;
};
TraceLog ReadTrace(const std::string& path);

// Runs fn in a forked child whose sleeps return at once; returns its exit status
// and what it wrote to standard output.
struct ChildResult {
    int status = -1;
    std::string out;
};
ChildResult RunInChild(int (*fn)(void*), void* arg);
// The whole program over an Args, for RunInChild.
int RunProgram(void* args);

}  // namespace testsupport
