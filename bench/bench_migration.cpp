// Whole migrations over generated stores, stage by stage, against the floor the
// design sets: every statement committed by itself, the status file rewritten
// after every row.
//
// Each case generates a store (tools/make_store.py) and runs the real convsch
// binary in create mode over it, against a throwaway cluster, watching the
// process: wall and CPU time of each stage (split where the user log opens
// stage B's first step), peak memory, rows written, status-file rewrites.
// A second run with the SQL logs on gives the statements (writing those logs
// would weigh on the measured run). Then, on the same server, the floor: psql
// replays in auto-commit the very statements each stage sent, into fresh
// databases, plus as many status-file rewrites as the stage made; and the
// lockstep floor: the same statements and rewrites taking turns, as the run
// must take them (a rename's writeback costs more while the server writes).
//
// Sizes: CONVBENCH_SIZES=10000,100000,1000000 (schedule entries; default 10000).
// Keep the work files with CONVBENCH_KEEP=1; leave the lockstep floor out with
// CONVBENCH_NO_LOCKSTEP=1 (its columns then read 0).
#include <benchmark/benchmark.h>
#include <libpq-fe.h>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "PgCluster.h"

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

// Stage A's lines say "…移行の前準備を開始します。"; the first line of stage B is
// the first to say "…移行を開始します。".
constexpr const char* kStageBStart = "移行を開始します。";

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }

double CpuSeconds(const rusage& ru) {
    return static_cast<double>(ru.ru_utime.tv_sec + ru.ru_stime.tv_sec) +
           static_cast<double>(ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
}

std::string ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A child process, started with the extra environment, its output to a file.
pid_t Spawn(const std::vector<std::string>& args, const std::string& outFile,
            const std::vector<std::string>& env = {}) {
    const pid_t pid = fork();
    if (pid != 0) return pid;
    for (const std::string& e : env) putenv(const_cast<char*>(e.c_str()));
    const int fd = open(outFile.empty() ? "/dev/null" : outFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd >= 0) {
        dup2(fd, 1);
        dup2(fd, 2);
        close(fd);
    }
    std::vector<char*> argv;
    for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(127);
}

struct Finished {
    int status = -1;
    double wall = 0;
    rusage usage{};
};

Finished Run(const std::vector<std::string>& args, const std::string& outFile = "",
             const std::vector<std::string>& env = {}) {
    Finished f;
    const auto start = Clock::now();
    const pid_t pid = Spawn(args, outFile, env);
    if (pid > 0) wait4(pid, &f.status, 0, &f.usage);
    f.wall = Seconds(Clock::now() - start);
    return f;
}

// CPU time of a running process in seconds, from the scheduler's account (ns).
double ProcessCpu(pid_t pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/schedstat");
    unsigned long long ns = 0;
    in >> ns;
    return static_cast<double>(ns) / 1e9;
}

// Peak resident size of a running process in kB.
long ProcessPeakKb(pid_t pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(in, line))
        if (line.rfind("VmHWM:", 0) == 0) return std::atol(line.c_str() + 6);
    return 0;
}

// The cluster all cases share, started on first use.
PgCluster* Cluster() {
    static std::unique_ptr<PgCluster> cluster = [] {
        auto c = std::make_unique<PgCluster>();
        std::string error;
        if (!c->Start(20, &error)) {
            std::fprintf(stderr, "cannot start the cluster: %s\n", error.c_str());
            c.reset();
        }
        return c;
    }();
    return cluster.get();
}

std::vector<std::string> PsqlEnv() { return {"PGPASSWORD=" + Cluster()->Password()}; }

std::vector<std::string> Psql(const std::string& db) {
    return {"psql", "-X", "-q", "-h", Cluster()->Host(), "-p", Cluster()->PortText(), "-U", Cluster()->User(), "-d", db};
}

bool FreshDatabase(const std::string& db, const char* schemaFile) {
    std::string error;
    if (!Cluster()->CreateDatabase(db, &error) ||
        !Cluster()->Exec(db, ReadAll(fs::path(CONV_SOURCE_DIR) / schemaFile), &error)) {
        std::fprintf(stderr, "%s: %s\n", db.c_str(), error.c_str());
        return false;
    }
    return true;
}

// Rows in every table of the database, in one statement.
long long RowsIn(const std::string& db) {
    const auto value = Cluster()->QueryValue(
        db,
        "SELECT coalesce(sum((xpath('/row/n/text()', query_to_xml(format('SELECT count(*) AS n FROM %I', "
        "table_name), false, true, '')))[1]::text::bigint), 0) FROM information_schema.tables "
        "WHERE table_schema = 'public' AND table_type = 'BASE TABLE'");
    return value ? std::atoll(value->c_str()) : -1;
}

// Today's date in Japan time, which switches the SQL logs on.
std::string TodayInJapan() {
    const std::time_t now = std::time(nullptr) + 9 * 3600;
    std::tm tm{};
    gmtime_r(&now, &tm);
    char text[16];
    std::strftime(text, sizeof text, "%Y%m%d", &tm);
    return text;
}

// "YYYY/MM/DD hh:mm:ss.mmm " at the start of a log line.
bool IsStamp(const std::string& line) {
    if (line.size() < 24) return false;
    static const char kShape[] = "dddd/dd/dd dd:dd:dd.ddd ";
    for (std::size_t i = 0; i < 24; ++i) {
        const bool digit = line[i] >= '0' && line[i] <= '9';
        if (kShape[i] == 'd' ? !digit : line[i] != kShape[i]) return false;
    }
    return true;
}

// The statement with each unbound parameter ($n outside a literal) given as an
// empty text: the SQL logs hold the statements, not their bound long texts.
std::string WithoutParameters(const std::string& sql) {
    std::string out;
    out.reserve(sql.size());
    bool quoted = false;
    for (std::size_t i = 0; i < sql.size(); ++i) {
        const char c = sql[i];
        if (c == '\'') quoted = !quoted;
        if (!quoted && c == '$' && i + 1 < sql.size() && sql[i + 1] >= '1' && sql[i + 1] <= '9') {
            while (i + 1 < sql.size() && sql[i + 1] >= '0' && sql[i + 1] <= '9') ++i;
            out += "''";
            continue;
        }
        out += c;
    }
    return out;
}

struct StageStatements {
    long long statements = 0;  // sent to the server, SELECTs and settings included
    long long rowStatements = 0;  // INSERT, UPDATE, DELETE
    long long transactions = 0;  // BEGIN sent by the run (the design sends none)
};

// Splits one SQL log into replay scripts for stage A (entries stamped before
// the boundary) and stage B, counting what each stage sent.
void SplitSqlLog(const fs::path& log, const std::string& boundary, std::ofstream& outA, std::ofstream& outB,
                 StageStatements& a, StageStatements& b) {
    std::ifstream in(log, std::ios::binary);
    std::string line, entry, stamp;
    auto flush = [&] {
        if (entry.empty()) return;
        const bool stageA = stamp < boundary;
        StageStatements& count = stageA ? a : b;
        std::ofstream& out = stageA ? outA : outB;
        std::string sql;
        // "<millis> \"<sql>\"" for a statement; settings stand bare.
        std::size_t p = 0;
        while (p < entry.size() && std::isdigit(static_cast<unsigned char>(entry[p]))) ++p;
        if (p > 0 && entry.compare(p, 2, " \"") == 0 && entry.size() >= p + 4 &&
            entry.compare(entry.size() - 2, 2, "\"\n") == 0) {
            sql = entry.substr(p + 2, entry.size() - p - 4);
            if (sql.rfind("DB open", 0) == 0 || sql == "DB close") sql.clear();  // connection notes
        } else if (entry.rfind("SET ", 0) == 0 || entry.rfind("RESET ", 0) == 0) {
            sql = entry.substr(0, entry.size() - 1);
        } else if (entry.rfind("TranBegin", 0) == 0) {
            ++count.transactions;
        }
        entry.clear();
        if (sql.empty()) return;
        ++count.statements;
        const std::string head = sql.substr(0, 7);
        if (strncasecmp(head.c_str(), "INSERT ", 7) == 0 || strncasecmp(head.c_str(), "UPDATE ", 7) == 0 ||
            strncasecmp(head.c_str(), "DELETE ", 7) == 0)
            ++count.rowStatements;
        out << WithoutParameters(sql) << ";\n";
    };
    while (std::getline(in, line)) {
        if (IsStamp(line)) {
            flush();
            stamp = line.substr(0, 23);
            entry = line.substr(24) + "\n";
        } else if (line.rfind("param=[", 0) == 0) {
            continue;  // a locking select's key: no statement of its own
        } else {
            entry += line + "\n";
        }
    }
    flush();
}

struct StageFigures {
    long long rewrites = 0;  // of the status file, seen by inotify
    double wall = 0;
    double cpu = 0;
    long peakKb = 0;
    long long rows = 0;
    StageStatements sent;
    double floorWall = 0;
    double psqlCpu = 0;
    double rewriteWall = 0;
    double rewriteCpu = 0;
    long long replayErrors = 0;
    // The same statements and rewrites interleaved as the run must do them: each
    // statement through PQexecParams, then the rewrites due by then.
    double lockstepWall = 0;
    double lockstepCpu = 0;
    long long lockstepErrors = 0;
};

struct CaseResult {
    bool ok = false;
    std::string error;
    StageFigures a, b;
    long long warnings = 0;
    std::string status;
};

// count rewrites of the status file, as the run makes them: the whole text to
// "<file>.bk", then renamed over the file. Gives how many were made.
long long StatusRewrite(const std::string& path, const std::string& backup, const std::string& text,
                        long long count) {
    long long made = 0;
    for (; made < count; ++made) {
        FILE* out = std::fopen(backup.c_str(), "w");
        if (!out) break;
        // Unbuffered as the run writes it: one write, no buffer, no stat.
        std::setvbuf(out, nullptr, _IONBF, 0);
        std::fputs(text.c_str(), out);
        std::fclose(out);
        std::rename(backup.c_str(), path.c_str());
    }
    return made;
}

// The stage's rewrites one after another. Adds the wall and CPU time taken.
void StatusRewrites(const fs::path& dir, const std::string& text, StageFigures& f) {
    const std::string path = (dir / "floor.sts").string(), backup = path + ".bk";
    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    const auto start = Clock::now();
    StatusRewrite(path, backup, text, f.rewrites);
    f.rewriteWall = Seconds(Clock::now() - start);
    getrusage(RUSAGE_SELF, &after);
    f.rewriteCpu = CpuSeconds(after) - CpuSeconds(before);
    f.floorWall += f.rewriteWall;
}

// Replays one stage's scripts with psql in auto-commit; psql's wall and CPU add up.
void Replay(const std::vector<std::pair<fs::path, std::string>>& scripts, const fs::path& dir, StageFigures& f) {
    for (const auto& [script, db] : scripts) {
        if (fs::file_size(script) == 0) continue;
        std::vector<std::string> args = Psql(db);
        args.insert(args.end(), {"-o", "/dev/null", "-f", script.string()});
        const fs::path errors = dir / (script.filename().string() + ".err");
        const Finished run = Run(args, errors.string(), PsqlEnv());
        f.floorWall += run.wall;
        f.psqlCpu += CpuSeconds(run.usage);
        std::ifstream in(errors);
        std::string line;
        while (std::getline(in, line))
            if (line.find("ERROR:") != std::string::npos) ++f.replayErrors;
    }
}

double ThreadCpu() {
    rusage ru{};
    getrusage(RUSAGE_THREAD, &ru);
    return CpuSeconds(ru);
}

// The floor the design itself sets, which psql cannot show: every statement
// committed by itself (sent as the program sends it, PQexecParams without
// parameters) and the status file rewritten after every row, in turn, so that
// each rename's writeback meets the server's writes as it does in the run.
// The stage's rewrites are spread evenly over its statements. Scripts are
// read a statement at a time: at 1,000,000 entries they hold gigabytes.
void Lockstep(const std::vector<std::pair<fs::path, std::string>>& scripts, const fs::path& dir,
              const std::string& statusText, StageFigures& f) {
    const long long total = std::max(1LL, f.sent.statements);
    const std::string path = (dir / "lockstep.sts").string(), backup = path + ".bk";
    std::map<std::string, PGconn*> conns;
    long long sent = 0, rewritten = 0;
    const double cpuStart = ThreadCpu();
    const auto start = Clock::now();
    for (const auto& [script, db] : scripts) {
        PGconn*& conn = conns[db];
        if (!conn) {
            const std::string info = "host=" + Cluster()->Host() + " port=" + Cluster()->PortText() +
                                     " user=" + Cluster()->User() + " password=" + Cluster()->Password() +
                                     " dbname=" + db;
            conn = PQconnectdb(info.c_str());
            if (PQstatus(conn) != CONNECTION_OK) {
                ++f.lockstepErrors;
                continue;
            }
            PQclear(PQexec(conn, "SET client_encoding TO UTF8"));
        }
        std::ifstream in(script, std::ios::binary);
        std::string line, sql;
        bool quoted = false;
        while (std::getline(in, line)) {
            for (const char c : line)
                if (c == '\'') quoted = !quoted;
            sql += line;
            if (quoted || line.empty() || line.back() != ';') {
                sql += '\n';
                continue;
            }
            sql.pop_back();
            PGresult* res = PQexecParams(conn, sql.c_str(), 0, nullptr, nullptr, nullptr, nullptr, 0);
            if (PQresultStatus(res) == PGRES_FATAL_ERROR) ++f.lockstepErrors;
            PQclear(res);
            sql.clear();
            ++sent;
            rewritten += StatusRewrite(path, backup, statusText, sent * f.rewrites / total - rewritten);
        }
    }
    rewritten += StatusRewrite(path, backup, statusText, f.rewrites - rewritten);  // none lost to a short script
    f.lockstepWall = Seconds(Clock::now() - start);
    f.lockstepCpu = ThreadCpu() - cpuStart;
    for (auto& [db, conn] : conns) PQfinish(conn);
}

// One create run of convsch over the store into fresh databases ent and kiv,
// under root (made here) with a copy of the target installation. With sqlLogs
// set, the run writes its SQL logs there.
struct RunSetup {
    fs::path store, root, target, sqlLogs;
    std::string ent, kiv;
};

bool PrepareRun(const RunSetup& s, std::string& error) {
    fs::create_directories(s.root / "conv/log");
    fs::create_directories(s.root / "sql");
    if (!s.sqlLogs.empty()) fs::create_directories(s.sqlLogs);
    fs::copy(fs::path(CONV_SOURCE_DIR) / "sql/sch", s.root / "sql/sch", fs::copy_options::recursive);
    fs::copy(fs::path(CONV_SOURCE_DIR) / "examples/target", s.target, fs::copy_options::recursive);
    if (!FreshDatabase(s.ent, "schema/ent.sql") || !FreshDatabase(s.kiv, "schema/kiv.sql")) {
        error = "schema";
        return false;
    }
    return true;
}

std::vector<std::string> RunArgs(const RunSetup& s) {
    const PgCluster& pg = *Cluster();
    std::vector<std::string> args = {
        CONVSCH_EXE, s.root.string(), "1", "create", s.store.string(), pg.Host(), pg.PortText(), pg.User(),
        pg.Password(), s.target.string(), pg.Host(), pg.PortText(), pg.User(), pg.Password(), s.ent, s.kiv};
    if (!s.sqlLogs.empty()) args.push_back(s.sqlLogs.string());
    return args;
}

// The stamp of the user log's first stage-B line, empty when there is none.
std::string StageBStamp(const fs::path& userLog) {
    std::ifstream in(userLog, std::ios::binary);
    std::string line;
    while (std::getline(in, line))
        if (IsStamp(line) && line.find(kStageBStart) != std::string::npos) return line.substr(0, 23);
    return "";
}

// The measured run, without SQL logs: watched every few milliseconds for the
// start of stage B (to split wall and CPU time) and for status rewrites.
bool WatchedRun(const RunSetup& s, CaseResult& r) {
    // Every rewrite of the status file ends in a rename onto it. The moves from
    // ".bk" are watched too: inotify merges an event with an equal one queued
    // just before it, and alternating events are never equal.
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (watch < 0 || inotify_add_watch(watch, (s.root / "conv").c_str(), IN_MOVED_FROM | IN_MOVED_TO) < 0) {
        r.error = "inotify";
        return false;
    }
    bool overflow = false;
    auto countRewrites = [&](StageFigures& f) {
        alignas(inotify_event) char buffer[64 * 1024];
        for (ssize_t n; (n = read(watch, buffer, sizeof buffer)) > 0;) {
            for (char* p = buffer; p < buffer + n;) {
                const auto* event = reinterpret_cast<const inotify_event*>(p);
                if (event->mask & IN_Q_OVERFLOW) overflow = true;
                if ((event->mask & IN_MOVED_TO) && event->len > 0 && std::strcmp(event->name, "sch.sts") == 0)
                    ++f.rewrites;
                p += sizeof(inotify_event) + event->len;
            }
        }
    };
    const fs::path userLog = s.root / "conv/log/sch.log";
    const long long kivBefore = RowsIn(s.kiv);
    sync();  // the freshly written store's pages reach the disk before, not during, the run
    const auto start = Clock::now();
    const pid_t pid = Spawn(RunArgs(s), (s.root / "convsch.out").string());
    std::optional<Clock::time_point> stageB;
    std::size_t logRead = 0;
    std::string logTail;
    int status = 0;
    rusage usage{};
    for (;;) {
        const pid_t done = wait4(pid, &status, WNOHANG, &usage);
        if (!stageB) {
            std::ifstream in(userLog, std::ios::binary);
            in.seekg(static_cast<std::streamoff>(logRead));
            std::string chunk((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            logRead += chunk.size();
            logTail += chunk;
            std::size_t lineStart = 0;
            for (std::size_t nl; (nl = logTail.find('\n', lineStart)) != std::string::npos; lineStart = nl + 1) {
                if (!stageB && logTail.substr(lineStart, nl - lineStart).find(kStageBStart) != std::string::npos) {
                    stageB = Clock::now();
                    r.a.cpu = ProcessCpu(pid);
                    r.a.peakKb = ProcessPeakKb(pid);
                }
            }
            logTail.erase(0, lineStart);
        }
        countRewrites(stageB ? r.b : r.a);
        if (done == pid) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    const auto end = Clock::now();
    close(watch);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || !stageB) {
        r.error = "convsch ended with " + std::to_string(status) + (stageB ? "" : ", stage B not seen");
        return false;
    }
    if (overflow) {
        r.error = "inotify queue overflow: rewrites not counted";
        return false;
    }
    r.a.wall = Seconds(*stageB - start);
    r.b.wall = Seconds(end - *stageB);
    r.b.cpu = CpuSeconds(usage) - r.a.cpu;
    r.b.peakKb = usage.ru_maxrss;
    r.a.rows = RowsIn(s.ent);
    r.b.rows = RowsIn(s.kiv) - kivBefore;
    std::ifstream in(userLog);
    std::string line;
    while (std::getline(in, line))
        if (line.find("[WARN]") != std::string::npos || line.find("[ERR]") != std::string::npos) ++r.warnings;
    const std::string sts = ReadAll(s.root / "conv/sch.sts");
    const std::size_t at = sts.find("status=");
    r.status = at == std::string::npos ? "?" : sts.substr(at + 7, 1);
    return true;
}

CaseResult Migrate(const std::string& name, const std::vector<std::string>& storeArgs) {
    CaseResult r;
    if (!Cluster()) {
        r.error = "no cluster";
        return r;
    }
    char pattern[] = "/tmp/convbench-run-XXXXXX";
    if (!mkdtemp(pattern)) {
        r.error = "mkdtemp";
        return r;
    }
    const fs::path work = pattern;
    chmod(work.c_str(), 0755);
    const fs::path store = work / "store";
    std::vector<std::string> gen = {"python3", std::string(CONV_SOURCE_DIR) + "/tools/make_store.py", store.string()};
    gen.insert(gen.end(), storeArgs.begin(), storeArgs.end());
    if (Run(gen, (work / "make_store.log").string()).status != 0) {
        r.error = "make_store.py failed: " + ReadAll(work / "make_store.log");
        return r;
    }

    // The measured run, then the same run again with its SQL logs on: writing
    // them costs the run an open, write and close per statement, which the
    // design's figures leave out.
    const RunSetup measured{store, work / "root", work / "target", "", "bench_ent", "bench_kiv"};
    const RunSetup logged{store, work / "root-logged", work / "target-logged",
                          work / ("sql-" + TodayInJapan()), "bench_logged_ent", "bench_logged_kiv"};
    if (!PrepareRun(measured, r.error) || !WatchedRun(measured, r) || !PrepareRun(logged, r.error)) return r;
    if (Run(RunArgs(logged), (work / "convsch-logged.out").string()).status != 0) {
        r.error = "the run with SQL logs failed";
        return r;
    }
    const std::string boundary = StageBStamp(logged.root / "conv/log/sch.log");
    if (boundary.empty()) {
        r.error = "no stage B in the logged run";
        return r;
    }

    // The floor: the same statements into fresh databases, stage by stage.
    std::vector<std::pair<fs::path, std::string>> scriptsA, scriptsB;
    std::vector<fs::path> logs;
    for (const auto& e : fs::directory_iterator(logged.sqlLogs))
        if (e.path().extension() == ".log") logs.push_back(e.path());
    std::sort(logs.begin(), logs.end());
    for (const fs::path& log : logs) {
        const std::string file = log.filename().string();
        const std::string db = file.rfind("kivDB_", 0) == 0 ? "bench_floor_kiv" : "bench_floor_ent";
        const fs::path a = work / ("replayA-" + file + ".sql"), b = work / ("replayB-" + file + ".sql");
        std::ofstream outA(a), outB(b);
        SplitSqlLog(log, boundary, outA, outB, r.a.sent, r.b.sent);
        scriptsA.emplace_back(a, db);
        scriptsB.emplace_back(b, db);
    }
    if (!FreshDatabase("bench_floor_ent", "schema/ent.sql") || !FreshDatabase("bench_floor_kiv", "schema/kiv.sql") ||
        !FreshDatabase("bench_lockstep_ent", "schema/ent.sql") ||
        !FreshDatabase("bench_lockstep_kiv", "schema/kiv.sql")) {
        r.error = "floor schema";
        return r;
    }
    const std::string sts = ReadAll(measured.root / "conv/sch.sts");
    sync();
    Replay(scriptsA, work, r.a);
    StatusRewrites(work, sts, r.a);
    Replay(scriptsB, work, r.b);
    StatusRewrites(work, sts, r.b);
    auto lockstepDb = [](std::vector<std::pair<fs::path, std::string>> scripts) {
        for (auto& entry : scripts) entry.second.replace(0, 11, "bench_lockstep");
        return scripts;
    };
    // The lockstep floor takes about as long as the run; CONVBENCH_NO_LOCKSTEP=1
    // leaves it out where the session can't spare that.
    if (!std::getenv("CONVBENCH_NO_LOCKSTEP")) {
        sync();
        Lockstep(lockstepDb(scriptsA), work, sts, r.a);
        Lockstep(lockstepDb(scriptsB), work, sts, r.b);
    }

    if (std::getenv("CONVBENCH_KEEP"))
        std::fprintf(stderr, "%s: work files kept in %s\n", name.c_str(), work.c_str());
    else
        fs::remove_all(work);
    r.ok = true;
    return r;
}

void Print(const std::string& name, const CaseResult& r) {
    std::fprintf(stderr, "\n%s: status=%s, %lld WARN/ERR lines\n", name.c_str(), r.status.c_str(), r.warnings);
    std::fprintf(stderr, "  stage    rows   wall s   rows/s  cpu us/row  peak MB  stmts  floor s  run/floor"
                         "  psql cpu us/stmt  rewrites  rewrites s  cpu us/rewrite  lockstep s  run/lockstep"
                         "  lockstep cpu us/row  replay errors  BEGINs\n");
    for (const auto& [label, f] : {std::pair{"A", &r.a}, std::pair{"B", &r.b}}) {
        const double rows = static_cast<double>(f->rows);
        std::fprintf(stderr,
                     "  %-5s %7lld %8.2f %8.0f %11.1f %8.1f %6lld %8.2f %10.2f %17.1f %9lld %11.2f %15.1f %11.2f %13.2f"
                     " %20.1f %14lld %7lld\n",
                     label, f->rows, f->wall, rows / f->wall, f->cpu * 1e6 / rows,
                     static_cast<double>(f->peakKb) / 1024.0, f->sent.statements, f->floorWall,
                     f->wall / f->floorWall, f->psqlCpu * 1e6 / static_cast<double>(f->sent.statements),
                     f->rewrites, f->rewriteWall,
                     f->rewrites ? f->rewriteCpu * 1e6 / static_cast<double>(f->rewrites) : 0.0, f->lockstepWall,
                     f->lockstepWall > 0 ? f->wall / f->lockstepWall : 0.0, f->lockstepCpu * 1e6 / rows,
                     f->replayErrors + f->lockstepErrors,
                     f->sent.transactions);
    }
}

void Report(benchmark::State& state, const std::string& name, const CaseResult& r) {
    if (!r.ok) {
        state.SkipWithError(r.error.c_str());
        return;
    }
    Print(name, r);
    state.SetIterationTime(r.a.wall + r.b.wall);
    for (const auto& [label, f] : {std::pair{"A", &r.a}, std::pair{"B", &r.b}}) {
        const std::string s = label;
        state.counters[s + "_rows/s"] = static_cast<double>(f->rows) / f->wall;
        state.counters[s + "_cpu_us/row"] = f->cpu * 1e6 / static_cast<double>(f->rows);
        state.counters[s + "_peak_MB"] = static_cast<double>(f->peakKb) / 1024.0;
        state.counters[s + "_run/floor"] = f->wall / f->floorWall;
        if (f->lockstepWall > 0) state.counters[s + "_run/lockstep"] = f->wall / f->lockstepWall;
    }
    state.counters["warnings"] = static_cast<double>(r.warnings);
}

// The whole store at a size: schedule entries spread 100 to a user, with groups,
// facilities and minutes in proportion.
void BM_Migration(benchmark::State& state) {
    const long long rows = state.range(0);
    const std::string users = std::to_string(std::max(10LL, rows / 100));
    CaseResult r;
    for (auto _ : state)
        r = Migrate("migration", {"--users", users, "--schedules", std::to_string(rows), "--groups",
                                  std::to_string(std::max(5LL, rows / 2000)), "--facilities",
                                  std::to_string(std::max(5LL, rows / 2000)), "--minutes",
                                  std::to_string(std::max(20LL, rows / 500))});
    Report(state, "migration/" + std::to_string(rows), r);
}

// Schedules only, by owner shape: 1 owner with N entries against N/k owners with k.
std::map<long long, double> g_oneOwnerWall[2];

void BM_ScheduleOwners(benchmark::State& state) {
    const long long owners = state.range(0), perOwner = state.range(1);
    CaseResult r;
    for (auto _ : state)
        r = Migrate("schedules", {"--users", "100", "--owners", std::to_string(owners), "--schedules-per-owner",
                                  std::to_string(perOwner), "--group-schedules", "0", "--pgroup-every", "0",
                                  "--reservations", "0", "--minutes", "0"});
    const std::string name = "schedules/" + std::to_string(owners) + "x" + std::to_string(perOwner);
    Report(state, name, r);
    if (!r.ok || owners != 1) return;
    g_oneOwnerWall[0][perOwner] = r.a.wall;
    g_oneOwnerWall[1][perOwner] = r.b.wall;
    const auto half = g_oneOwnerWall[0].find(perOwner / 2);
    if (perOwner % 2 == 0 && half != g_oneOwnerWall[0].end())
        std::fprintf(stderr, "  one owner, %lld against %lld entries: stage A %.2fx the time, stage B %.2fx\n",
                     perOwner, perOwner / 2, r.a.wall / half->second, r.b.wall / g_oneOwnerWall[1][perOwner / 2]);
}

[[maybe_unused]] const bool registered = [] {
    const char* sizes = std::getenv("CONVBENCH_SIZES");
    std::stringstream list(sizes && *sizes ? sizes : "10000");
    for (std::string size; std::getline(list, size, ',');)
        benchmark::RegisterBenchmark("BM_Migration", BM_Migration)
            ->Arg(std::atoll(size.c_str()))
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kSecond);
    benchmark::RegisterBenchmark("BM_ScheduleOwners", BM_ScheduleOwners)
        ->Args({1, 10000})
        ->Args({100, 100})
        ->Args({1, 20000})
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kSecond);
    return true;
}();

}  // namespace
