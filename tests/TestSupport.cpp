// Helpers shared by the tests.
#include "TestSupport.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "base/comClock.h"
#include "MakeConvSToKiv/mainconvsch/ConvMainSchStd.h"
#include "base/comEncoding.h"

namespace testsupport {

TempDir::TempDir() {
    char tmpl[] = "/tmp/convtest.XXXXXX";
    char* made = mkdtemp(tmpl);
    path_ = made ? made : "/tmp";
}

TempDir::~TempDir() {
    std::error_code ec;
    if (path_ != "/tmp") std::filesystem::remove_all(path_, ec);
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

void WriteFile(const std::string& path, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
}

bool Exists(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0;
}

void MakeDirs(const std::string& path) { std::filesystem::create_directories(path); }

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> out;
    std::string line;
    std::istringstream in(text);
    while (std::getline(in, line)) out.push_back(line);
    return out;
}

Args::Args(std::vector<std::string> values) : values_(std::move(values)) {
    for (auto& v : values_) ptrs_.push_back(v.data());
    ptrs_.push_back(nullptr);
}

std::vector<std::string> RunArgs(const std::string& root, const std::string& mode, const std::string& port,
                                 bool withSqlLogDir, const std::string& sqlLogDir) {
    std::vector<std::string> args = {"convsch", root, "0", mode, root + "/store", "127.0.0.1", port, "ent",
                                     "pw", root + "/target", "127.0.0.1", port, "kiv", "pw", "entdb", "kivdb"};
    if (withSqlLogDir) args.push_back(sqlLogDir);
    return args;
}

std::string Euc(const std::string& utf8) {
    std::vector<char> jis(4 * utf8.size() + 4);
    std::size_t n = comUtf8ToJis(utf8.c_str(), jis.data());
    std::vector<char> euc(4 * n + 4);
    comJisToEuc(jis.data(), euc.data());
    return euc.data();
}

std::string ClosedPort() {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = 0;
    bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
    socklen_t len = sizeof addr;
    getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len);
    int port = ntohs(addr.sin_port);
    close(fd);
    return std::to_string(port);
}

std::vector<std::string> LogLines(const std::string& path) {
    std::vector<std::string> out;
    for (const std::string& line : Lines(ReadFile(path))) out.push_back(StripStamp(line));
    return out;
}

std::vector<std::string> StatusValues(const std::string& path, const std::string& name) {
    std::vector<std::string> out;
    for (const std::string& line : Lines(ReadFile(path)))
        if (line.rfind(name + "=", 0) == 0) out.push_back(line.substr(name.size() + 1));
    return out;
}

std::string StatusValue(const std::string& path, const std::string& name) {
    const std::vector<std::string> values = StatusValues(path, name);
    return values.empty() ? "<none>" : values.front();
}

bool IsDigits(const std::string& text, std::size_t count) {
    if (text.size() != count) return false;
    for (char c : text)
        if (c < '0' || c > '9') return false;
    return true;
}

std::string StripStamp(const std::string& line) {
    // "YYYY/MM/DD hh:mm:ss.mmm " is 24 bytes.
    if (line.size() < 24 || line[4] != '/' || line[7] != '/' || line[10] != ' ' || line[13] != ':' ||
        line[19] != '.' || line[23] != ' ')
        return "";
    return line.substr(24);
}

std::string DecodeHex(const std::string& hex) {
    std::string out;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        out += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return out;
}

TraceLog ReadTrace(const std::string& path) {
    TraceLog log;
    auto isHex = [](const std::string& text) {
        if (text.size() % 2 != 0) return false;
        for (char c : text)
            if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'))) return false;
        return true;
    };
    for (const std::string& line : Lines(ReadFile(path))) {
        std::string body = StripStamp(line);
        if (!body.empty() && isHex(body)) {
            log.reports.push_back(DecodeHex(body));
        } else if (!log.reports.empty() && isHex(line)) {
            log.reports.back() += '\n';
            log.reports.back() += DecodeHex(line);
        } else {
            log.wellFormed = false;
        }
    }
    return log;
}

namespace {
void NoSleep(unsigned) {}
}  // namespace

ChildResult RunInChild(int (*fn)(void*), void* arg) {
    ChildResult result;
    int pipefd[2];
    if (pipe(pipefd) != 0) return result;
    std::fflush(stdout);
    pid_t pid = fork();
    if (pid == 0) {
        close(pipefd[0]);
        dup2(pipefd[1], STDOUT_FILENO);
        close(pipefd[1]);
        comSetSleepFunction(NoSleep);
        int code = fn(arg);
        std::fflush(stdout);
        _exit(code & 0xff);
    }
    close(pipefd[1]);
    char buf[4096];
    ssize_t n;
    while ((n = read(pipefd[0], buf, sizeof buf)) > 0) result.out.append(buf, static_cast<std::size_t>(n));
    close(pipefd[0]);
    int wstatus = 0;
    waitpid(pid, &wstatus, 0);
    result.status = WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : -1;
    return result;
}

int RunProgram(void* args) {
    auto* run = static_cast<Args*>(args);
    ConvMainSchStd program;
    return program.Run(run->Argc(), run->Argv());
}

}  // namespace testsupport
