// Starts and stops the private PostgreSQL cluster of the database tests and runs
// SQL in it for test set-up and checks.
#include "PgCluster.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <glob.h>
#include <libpq-fe.h>
#include <netinet/in.h>
#include <pwd.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>

namespace {

struct ConnCloser {
    void operator()(PGconn* c) const { PQfinish(c); }
};
struct ResultFreer {
    void operator()(PGresult* r) const { PQclear(r); }
};
using ConnPtr = std::unique_ptr<PGconn, ConnCloser>;
using ResultPtr = std::unique_ptr<PGresult, ResultFreer>;

void SetError(std::string* error, const std::string& text) {
    if (error) *error = text;
}

// Version number of "/usr/lib/postgresql/<version>/bin/initdb" for sorting.
int VersionOf(const std::string& path) {
    const std::string prefix = "/usr/lib/postgresql/";
    return std::atoi(path.c_str() + prefix.size());
}

int FreePort() {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0) return -1;
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = 0;
    socklen_t len = sizeof addr;
    int port = -1;
    if (bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0 &&
        getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len) == 0)
        port = ntohs(addr.sin_port);
    close(fd);
    return port;
}

std::string QuoteConnValue(const std::string& value) {
    std::string quoted = "'";
    for (char c : value) {
        if (c == '\'' || c == '\\') quoted.push_back('\\');
        quoted.push_back(c);
    }
    return quoted + "'";
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace

PgCluster::~PgCluster() { Stop(); }

bool PgCluster::FindBinaries(std::string* error) {
    glob_t found{};
    std::vector<std::string> candidates;
    if (glob("/usr/lib/postgresql/*/bin/initdb", 0, nullptr, &found) == 0) {
        for (std::size_t i = 0; i < found.gl_pathc; ++i) candidates.emplace_back(found.gl_pathv[i]);
    }
    globfree(&found);
    if (!candidates.empty()) {
        std::sort(candidates.begin(), candidates.end(),
                  [](const std::string& a, const std::string& b) { return VersionOf(a) < VersionOf(b); });
        binDir_ = std::filesystem::path(candidates.back()).parent_path().string();
        return true;
    }
    const char* path = std::getenv("PATH");
    std::string rest = path ? path : "";
    while (!rest.empty()) {
        const std::size_t colon = rest.find(':');
        const std::string entry = rest.substr(0, colon);
        rest = colon == std::string::npos ? "" : rest.substr(colon + 1);
        if (!entry.empty() && access((entry + "/initdb").c_str(), X_OK) == 0 &&
            access((entry + "/pg_ctl").c_str(), X_OK) == 0) {
            binDir_ = entry;
            return true;
        }
    }
    SetError(error, "initdb not found under /usr/lib/postgresql/*/bin nor in PATH");
    return false;
}

int PgCluster::Run(const std::vector<std::string>& args, const std::string& logFile) const {
    std::vector<std::string> full;
    if (asPostgresUser_) full = {"runuser", "-u", "postgres", "--"};
    full.insert(full.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& arg : full) argv.push_back(arg.data());
    argv.push_back(nullptr);

    const pid_t pid = fork();
    if (pid < 0) return -1;
    if (pid == 0) {
        if (!dir_.empty() && chdir(dir_.c_str()) != 0 && chdir("/") != 0) _exit(126);
        const int in = open("/dev/null", O_RDONLY);
        const int out = open(logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        if (in >= 0) dup2(in, 0);
        if (out >= 0) {
            dup2(out, 1);
            dup2(out, 2);
        }
        execvp(argv[0], argv.data());
        _exit(127);
    }
    int wstatus = 0;
    while (waitpid(pid, &wstatus, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : -1;
}

void PgCluster::StartWatchdog() {
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) return;
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        return;
    }
    if (pid == 0) {
        // Out of the test's process group and deaf to its signals, so that it
        // outlives a killed test binary and cleans up after it.
        setsid();
        signal(SIGINT, SIG_IGN);
        signal(SIGHUP, SIG_IGN);
        signal(SIGQUIT, SIG_IGN);
        signal(SIGTERM, SIG_IGN);
        close(fds[1]);
        char byte = 0;
        ssize_t n;
        do {
            n = read(fds[0], &byte, 1);
        } while (n < 0 && errno == EINTR);
        if (n == 1) _exit(0);  // the parent stopped the cluster itself
        Run({binDir_ + "/pg_ctl", "-D", dataDir_, "-m", "immediate", "-w", "stop"}, "/dev/null");
        std::error_code ec;
        std::filesystem::remove_all(dir_, ec);
        _exit(0);
    }
    close(fds[0]);
    watchdogPipe_ = fds[1];
    watchdogPid_ = pid;
}

bool PgCluster::Start(int maxConnections, std::string* error) {
    if (running_) return true;
    if (!FindBinaries(error)) return false;

    char pattern[] = "/tmp/convpg-XXXXXX";
    if (!mkdtemp(pattern)) {
        SetError(error, std::string("mkdtemp failed: ") + std::strerror(errno));
        return false;
    }
    dir_ = pattern;
    dataDir_ = dir_ + "/data";
    asPostgresUser_ = geteuid() == 0;
    StartWatchdog();

    uid_t uid = geteuid();
    gid_t gid = getegid();
    if (asPostgresUser_) {
        const passwd* pw = getpwnam("postgres");
        if (!pw) {
            SetError(error, "running as root, but there is no user \"postgres\"");
            Stop();
            return false;
        }
        uid = pw->pw_uid;
        gid = pw->pw_gid;
    }
    const std::string pwFile = dir_ + "/pwfile";
    {
        std::ofstream out(pwFile);
        out << password_ << "\n";
    }
    if (chown(dir_.c_str(), uid, gid) != 0 || chown(pwFile.c_str(), uid, gid) != 0 ||
        chmod(pwFile.c_str(), 0600) != 0) {
        SetError(error, std::string("chown of the cluster directory failed: ") + std::strerror(errno));
        Stop();
        return false;
    }

    const std::string initLog = dir_ + "/initdb.log";
    if (Run({binDir_ + "/initdb", "-D", dataDir_, "-U", user_, "--pwfile=" + pwFile, "-E", "UTF8",
             "--locale=C", "--auth-local=trust", "--auth-host=scram-sha-256", "-N"},
            initLog) != 0) {
        SetError(error, "initdb failed:\n" + ReadFile(initLog));
        Stop();
        return false;
    }
    {
        std::ofstream conf(dataDir_ + "/postgresql.conf", std::ios::app);
        conf << "\nlisten_addresses = '" << host_ << "'\n"
             << "unix_socket_directories = '" << dir_ << "'\n"
             << "max_connections = " << maxConnections << "\n"
             << "fsync = off\nsynchronous_commit = off\nfull_page_writes = off\n"
             << "lc_messages = 'C'\n";
    }

    const std::string serverLog = dir_ + "/server.log";
    for (int attempt = 0; attempt < 5 && !running_; ++attempt) {
        port_ = FreePort();
        if (port_ <= 0) continue;
        {
            std::ofstream conf(dataDir_ + "/postgresql.conf", std::ios::app);
            conf << "port = " << port_ << "\n";
        }
        running_ = Run({binDir_ + "/pg_ctl", "-D", dataDir_, "-l", serverLog, "-w", "-t", "60",
                        "start"},
                       dir_ + "/pg_ctl.log") == 0;
    }
    if (!running_) {
        SetError(error, "pg_ctl start failed:\n" + ReadFile(dir_ + "/pg_ctl.log") + ReadFile(serverLog));
        Stop();
        return false;
    }
    return true;
}

void PgCluster::Stop() {
    if (!dir_.empty()) {
        if (running_)
            Run({binDir_ + "/pg_ctl", "-D", dataDir_, "-m", "fast", "-w", "-t", "60", "stop"},
                "/dev/null");
        std::error_code ec;
        std::filesystem::remove_all(dir_, ec);
        dir_.clear();
    }
    running_ = false;
    if (watchdogPipe_ >= 0) {
        const char byte = 'q';
        if (write(watchdogPipe_, &byte, 1) != 1) {
            // The watchdog then sees the pipe close and finds nothing left to do.
        }
        close(watchdogPipe_);
        watchdogPipe_ = -1;
        int wstatus = 0;
        waitpid(watchdogPid_, &wstatus, 0);
        watchdogPid_ = -1;
    }
}

std::string PgCluster::ConnInfo(const std::string& dbname) const {
    return "host=" + host_ + " port=" + std::to_string(port_) + " user=" + QuoteConnValue(user_) +
           " password=" + QuoteConnValue(password_) + " dbname=" + QuoteConnValue(dbname);
}

bool PgCluster::Query(const std::string& dbname, const std::string& sql, Rows* rows,
                      std::string* error) {
    ConnPtr conn(PQconnectdb(ConnInfo(dbname).c_str()));
    if (!conn || PQstatus(conn.get()) != CONNECTION_OK) {
        SetError(error, conn ? PQerrorMessage(conn.get()) : "out of memory");
        return false;
    }
    PQsetNoticeProcessor(conn.get(), [](void*, const char*) {}, nullptr);  // keep output quiet
    ResultPtr res(PQexec(conn.get(), sql.c_str()));
    const ExecStatusType st = PQresultStatus(res.get());
    if (st != PGRES_COMMAND_OK && st != PGRES_TUPLES_OK) {
        SetError(error, PQerrorMessage(conn.get()));
        return false;
    }
    if (rows) {
        rows->clear();
        for (int r = 0; r < PQntuples(res.get()); ++r) {
            std::vector<std::optional<std::string>> row;
            for (int c = 0; c < PQnfields(res.get()); ++c) {
                if (PQgetisnull(res.get(), r, c))
                    row.emplace_back(std::nullopt);
                else
                    row.emplace_back(PQgetvalue(res.get(), r, c));
            }
            rows->push_back(std::move(row));
        }
    }
    return true;
}

bool PgCluster::Exec(const std::string& dbname, const std::string& sql, std::string* error) {
    return Query(dbname, sql, nullptr, error);
}

std::optional<std::string> PgCluster::QueryValue(const std::string& dbname,
                                                 const std::string& sql) {
    Rows rows;
    if (!Query(dbname, sql, &rows) || rows.empty() || rows[0].empty()) return std::nullopt;
    return rows[0][0];
}

bool PgCluster::QuoteName(const std::string& name, std::string* quoted, std::string* error) const {
    ConnPtr conn(PQconnectdb(ConnInfo("postgres").c_str()));
    if (!conn || PQstatus(conn.get()) != CONNECTION_OK) {
        SetError(error, conn ? PQerrorMessage(conn.get()) : "out of memory");
        return false;
    }
    char* text = PQescapeIdentifier(conn.get(), name.c_str(), name.size());
    if (!text) {
        SetError(error, PQerrorMessage(conn.get()));
        return false;
    }
    *quoted = text;
    PQfreemem(text);
    return true;
}

bool PgCluster::DropDatabase(const std::string& name, std::string* error) {
    std::string quoted;
    if (!QuoteName(name, &quoted, error)) return false;
    return Exec("postgres", "DROP DATABASE IF EXISTS " + quoted + " WITH (FORCE)", error);
}

bool PgCluster::CreateDatabase(const std::string& name, std::string* error) {
    if (!DropDatabase(name, error)) return false;
    std::string quoted;
    if (!QuoteName(name, &quoted, error)) return false;
    return Exec("postgres",
                "CREATE DATABASE " + quoted + " TEMPLATE template0 ENCODING 'UTF8' LC_COLLATE 'C' LC_CTYPE 'C'",
                error);
}

PgCluster& TestCluster() {
    static PgCluster cluster;
    return cluster;
}
