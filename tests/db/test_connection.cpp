// Tests of the PostgreSQL connection against the test cluster: error mapping,
// transactions, row reading, parameters, timing logs and connect retries.
#include <gtest/gtest.h>
#include <libpq-fe.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "PgCluster.h"
#include "TestSupport.h"
#include "base/comClock.h"
#include "base/comLog.h"
#include "database/CdDBConnection_PG.h"

using testsupport::ReadFile;

namespace {

const char* const kDb = "cddb_conn";

// The last call of the statement callback as "text code status".
std::string g_lastCall;

void RecordCall(const char* text, int code, int status, const char*) {
    g_lastCall = std::string(text ? text : "") + " " + std::to_string(code) + " " + std::to_string(status);
}

// Injected clock: a fixed moment plus an offset that the callback below advances
// by g_statementMillis whenever a statement (not BEGIN/COMMIT/ROLLBACK) has run.
long long g_clockOffsetMillis = 0;
long long g_statementMillis = 0;

void FakeClock(timespec* now) {
    const long long millis = 1700000000000LL + g_clockOffsetMillis;
    now->tv_sec = static_cast<time_t>(millis / 1000);
    now->tv_nsec = static_cast<long>((millis % 1000) * 1000000);
}

void AdvanceClockOnStatement(const char* text, int, int, const char*) {
    const std::string t = text ? text : "";
    if (t != "BeginTransaction" && t != "commit" && t != "rollback")
        g_clockOffsetMillis += g_statementMillis;
}

std::vector<unsigned> g_sleeps;
void RecordSleep(unsigned seconds) { g_sleeps.push_back(seconds); }

// A column of the current row as "'text':type" ("null:type" for NULL), or the code of
// a failed read.
std::string Cell(const CdDBConnection& c, int index) {
    char* value = nullptr;
    uint32_t type = 99;
    const int rc = c.GetValue(&value, index, &type);
    if (rc != 0) return std::to_string(rc);
    const std::string out = (value ? "'" + std::string(value) + "'" : "null") + ":" + std::to_string(type);
    std::free(value);
    return out;
}

// The first column of a query's first row, as Cell gives it.
std::string Select(CdDBConnection& c, const char* sql, const char* param = nullptr) {
    const int rc = param ? c.Exec(sql, param, nullptr, nullptr, 0) : c.Exec(sql);
    return rc != 0 ? "Exec " + std::to_string(rc) : Cell(c, 0);
}

using RawConn = std::unique_ptr<PGconn, decltype(&PQfinish)>;

class CdDBConnectionTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(TestCluster().IsRunning());
        std::string error;
        ASSERT_TRUE(TestCluster().CreateDatabase(kDb, &error)) << error;
        comLogSetPath(logPath_.c_str(), previousLog_);
        g_lastCall.clear();
        g_sleeps.clear();
        previousSleep_ = comSetSleepFunction(RecordSleep);
    }

    void TearDown() override {
        comSetSleepFunction(previousSleep_);
        comSetClockFunction(nullptr);
        comLogSetPath(previousLog_, nullptr);
    }

    int Connect(CdDBConnection& c, int timeoutSeconds = -1, const char* password = nullptr) {
        const PgCluster& pg = TestCluster();
        return c.Connect(pg.User().c_str(), password ? password : pg.Password().c_str(),
                         pg.Host().c_str(), kDb, pg.PortText().c_str(), timeoutSeconds);
    }

    void Setup(const std::string& sql) {
        std::string error;
        ASSERT_TRUE(TestCluster().Exec(kDb, sql, &error)) << error;
    }

    std::string Value(const std::string& sql) { return TestCluster().QueryValue(kDb, sql).value_or("<null>"); }

    RawConn RawConnect() { return RawConn(PQconnectdb(TestCluster().ConnInfo(kDb).c_str()), PQfinish); }

    std::string Log() const { return ReadFile(logPath_); }

    testsupport::TempDir dir_;
    const std::string logPath_ = dir_ / "current.log";
    char previousLog_[1024] = {};
    comSleepFunc previousSleep_ = nullptr;
};

TEST_F(CdDBConnectionTest, SqlStatesMapToStatusAndCode) {
    Setup(
        "CREATE TABLE parent (id int PRIMARY KEY);"
        "CREATE TABLE t (id int PRIMARY KEY, name varchar(5) NOT NULL, n smallint,"
        " pid int REFERENCES parent(id));"
        "INSERT INTO parent VALUES (1); INSERT INTO t VALUES (1, 'a', 1, 1);");
    CdDBConnection_PG c;
    ASSERT_EQ(Connect(c), 0);
    c.SetCallback(RecordCall);

    struct Case {
        const char* sql;
        const char* sqlState;
        int status;
        int code;
        bool errorBlock;
    };
    const Case cases[] = {
        {"INSERT INTO t VALUES (1, 'b', 1, 1)", "23505", 2601, -1012, false},
        {"INSERT INTO t VALUES (2, NULL, 1, 1)", "23502", 515, -1043, false},
        {"INSERT INTO t VALUES (2, 'toolong', 1, 1)", "22001", 8152, -1014, false},
        {"INSERT INTO t VALUES (2, 'b', 1, 99)", "23503", 547, -1009, false},
        {"INSERT INTO t VALUES (2, 'b', 99999, 1)", "22003", 8115, -1044, false},
        {"INSERT INTO t VALUS (2)", "42601", 170, -1016, true},
        {"select nosuch from t", "42703", 7601, -1017, true},
        {"select nofunction(1)", "42883", 7601, -1017, true},
        {"select convert_from('\\xff'::bytea, 'UTF8')", "22021", 10000000, -1024, true},
        {"INSERT INTO t (id, id) VALUES (3, 4)", "42701", 264, -1006, true},
        {"select 1 / 0", "22012", PGRES_FATAL_ERROR, -1006, true},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.sql);
        const std::size_t logBefore = Log().size();
        EXPECT_EQ(c.Exec(k.sql), k.code);
        EXPECT_EQ(c.GetStatus(), k.status);
        EXPECT_EQ(std::string(c.GetErrorMessage()).rfind(std::string("[") + k.sqlState + "]:", 0), 0u)
            << c.GetErrorMessage();
        EXPECT_FALSE(c.HasResult());
        EXPECT_EQ(g_lastCall, std::string(k.sql) + " " + std::to_string(k.code) + " " + std::to_string(k.status));
        const std::string logged = Log().substr(logBefore);
        EXPECT_EQ(logged.find(std::string("Error      [") + k.sqlState + "]\n") != std::string::npos,
                  k.errorBlock)
            << logged;
        EXPECT_EQ(logged.find("DB access:sql[" + std::string(k.sql) + "]") != std::string::npos,
                  k.code == -1006)
            << logged;
        EXPECT_EQ(c.Rollback(0), 0);
    }
    // Nothing of the failed statements reached the table.
    EXPECT_EQ(Value("SELECT count(*) FROM t"), "1");
}

TEST_F(CdDBConnectionTest, SelectRuleTransactionsAndAutoCommit) {
    Setup("CREATE TABLE t (id int PRIMARY KEY, v int); INSERT INTO t VALUES (1, 0), (2, 0);");
    CdDBConnection_PG c;
    EXPECT_EQ(c.Exec("select 1"), -1101);
    EXPECT_EQ(c.Commit(), -1101);
    ASSERT_EQ(Connect(c), 0);
    // An empty statement is no statement: nothing is sent, no transaction begins.
    EXPECT_EQ(c.Exec(""), -1099);
    EXPECT_FALSE(c.IsInTransaction());

    // Only "select " or "SELECT " keeps its result outside a transaction.
    EXPECT_EQ(c.Exec("select 1"), 0);
    EXPECT_TRUE(c.HasResult());
    EXPECT_FALSE(c.IsInTransaction());
    EXPECT_EQ(c.Exec("Select 1"), 0);
    EXPECT_FALSE(c.HasResult());
    EXPECT_TRUE(c.IsInTransaction());
    EXPECT_EQ(c.Commit(), 0);
    EXPECT_FALSE(c.IsInTransaction());
    EXPECT_EQ(c.Commit(), 0);  // nothing open: nothing sent

    // An UPDATE that touches no row is reported, and the transaction stays open.
    EXPECT_EQ(c.Exec("UPDATE t SET v = 1 WHERE id = 99"), -1110);
    EXPECT_EQ(c.GetAffectedRows(), 0);
    EXPECT_TRUE(c.IsInTransaction());
    EXPECT_EQ(c.Exec("delete from t where id = 99"), -1110);
    EXPECT_EQ(c.Exec("UPDATE t SET v = 1 WHERE id IN (1, 2)"), 0);
    EXPECT_EQ(c.GetAffectedRows(), 2);
    EXPECT_EQ(c.SetTransactional(false), -1034);
    EXPECT_TRUE(c.IsTransactional());
    EXPECT_EQ(c.Commit(), 0);
    EXPECT_EQ(Value("SELECT sum(v) FROM t"), "2");

    // Disconnect rolls back what is open.
    EXPECT_EQ(c.Exec("INSERT INTO t VALUES (3, 0)"), 0);
    EXPECT_EQ(c.GetAffectedRows(), 1);
    EXPECT_EQ(c.Disconnect(), 0);
    EXPECT_EQ(c.Disconnect(), 0);
    EXPECT_EQ(Value("SELECT count(*) FROM t"), "2");

    // Auto-commit: each statement is visible at once, Commit and Rollback do nothing.
    ASSERT_EQ(Connect(c), 0);
    EXPECT_EQ(c.SetTransactional(false), 0);
    EXPECT_EQ(c.Exec("INSERT INTO t VALUES (4, 0)"), 0);
    EXPECT_FALSE(c.IsInTransaction());
    EXPECT_EQ(c.Rollback(0), 0);
    EXPECT_EQ(Value("SELECT count(*) FROM t WHERE id = 4"), "1");
}

TEST_F(CdDBConnectionTest, ReadsValuesNullsAndRefusesBytea) {
    CdDBConnection_PG c;
    ASSERT_EQ(Connect(c), 0);
    char* value = nullptr;
    ASSERT_EQ(c.Exec("select 'x'::text AS t, ''::text AS e, NULL::text AS n, 12.50::numeric AS num,"
                     " 7 AS i, '\\x0102'::bytea AS b"),
              0);
    EXPECT_EQ(c.GetColumnCount(), 6);
    char name[kCdDBColumnNameSize];
    EXPECT_EQ(c.GetColumnName(name, 3), 0);
    EXPECT_STREQ(name, "num");
    EXPECT_EQ(c.GetColumnName(name, 6), -1007);

    EXPECT_EQ(Cell(c, 0), "'x':2");
    EXPECT_EQ(Cell(c, 1), "'':2");    // empty text: an empty array
    EXPECT_EQ(Cell(c, 2), "null:2");  // NULL: no array, type still set
    EXPECT_EQ(Cell(c, 3), "'12.50':1");
    EXPECT_EQ(Cell(c, 4), "'7':0");
    EXPECT_EQ(Cell(c, 5), "-1008");
    EXPECT_EQ(Cell(c, 6), "-1008");

    ASSERT_EQ(c.GetValueByName(&value, "NUM"), 0);  // the name is lower-cased first
    EXPECT_STREQ(value, "12.50");
    std::free(value);
    EXPECT_EQ(c.GetValueByName(&value, "missing"), -1013);
    EXPECT_EQ(c.GetValueByName(&value, nullptr), -1099);

    EXPECT_FALSE(c.IsEnd());
    EXPECT_EQ(c.NextRow(), 0);
    EXPECT_TRUE(c.IsEnd());
    EXPECT_EQ(Cell(c, 0), "-1013");
    c.ClearResult();
    EXPECT_TRUE(c.IsEnd());
    EXPECT_EQ(Cell(c, 0), "-1101");
    EXPECT_EQ(c.GetColumnName(name, 0), -1101);
    EXPECT_EQ(c.GetColumnCount(), 0);
}

// The rows of a select come one at a time: in order, to the end; a statement
// sent in the middle ends the read; a failure after the first rows is handed
// to the reader once, as a read that stopped.
TEST_F(CdDBConnectionTest, ReadsRowsOneAtATime) {
    Setup("CREATE TABLE t (id int PRIMARY KEY)");
    CdDBConnection_PG c;
    ASSERT_EQ(Connect(c), 0);
    c.SetCallback(RecordCall);
    c.SetTransactional(false);  // as the reading connection runs

    ASSERT_EQ(c.Exec("select n from generate_series(1, 3) n ORDER BY n"), 0);
    EXPECT_EQ(c.GetStatus(), PGRES_TUPLES_OK);
    std::string seen;
    for (; !c.IsEnd(); c.NextRow()) seen += Cell(c, 0) + " ";
    EXPECT_EQ(seen, "'1':0 '2':0 '3':0 ");
    EXPECT_EQ(c.GetColumnCount(), 1);
    EXPECT_EQ(c.TakeReadError(), 0);

    ASSERT_EQ(c.Exec("select n from generate_series(1, 100000) n"), 0);
    EXPECT_EQ(Cell(c, 0), "'1':0");
    EXPECT_EQ(c.Exec("INSERT INTO t VALUES (1)"), 0);
    EXPECT_TRUE(c.IsEnd());
    EXPECT_EQ(Select(c, "select count(*) from t"), "'1':0");

    ASSERT_EQ(c.Exec("select 10 / (3 - n) AS v from generate_series(1, 5) n"), 0);
    seen.clear();
    for (; !c.IsEnd(); c.NextRow()) seen += Cell(c, 0) + " ";
    EXPECT_EQ(seen, "'5':0 '10':0 ");
    EXPECT_EQ(c.TakeReadError(), -1006);
    EXPECT_EQ(c.TakeReadError(), 0);
    EXPECT_EQ(g_lastCall.substr(0, 8), "select 1");
    EXPECT_NE(std::string(c.GetErrorMessage()).find("[22012]"), std::string::npos);
    EXPECT_EQ(Select(c, "select 2"), "'2':0");  // the connection goes on
}

TEST_F(CdDBConnectionTest, CommitAfterFailedStatementIsRolledBack) {
    Setup("CREATE TABLE t (id int PRIMARY KEY)");
    CdDBConnection_PG c;
    ASSERT_EQ(Connect(c), 0);
    c.SetCallback(RecordCall);
    EXPECT_EQ(c.Exec("INSERT INTO t VALUES (1)"), 0);
    EXPECT_EQ(c.Exec("INSERT INTO t VALUES (1)"), -1012);
    EXPECT_EQ(c.Commit(), -1041);
    EXPECT_EQ(g_lastCall, "commit -1041 0");
    EXPECT_TRUE(c.IsInTransaction());
    const std::string log = Log();
    EXPECT_NE(log.find("Error      [-1041]\n"), std::string::npos) << log;
    EXPECT_NE(log.find("ErrorMsg   [commit process is rollback]\n"), std::string::npos) << log;
    EXPECT_EQ(c.Rollback(1), 0);
    EXPECT_EQ(g_lastCall, "rollback 0 1");
    EXPECT_FALSE(c.IsInTransaction());
    EXPECT_EQ(Value("SELECT count(*) FROM t"), "0");
}

TEST_F(CdDBConnectionTest, ParametersArriveUnchanged) {
    Setup("CREATE TABLE p (id serial, a text, b text, c text)");
    CdDBConnection_PG c;
    ASSERT_EQ(Connect(c), 0);
    const char* single = "it's a \\ backslash";
    const char* array[] = {"O'Reilly \\n \\\\ '' ; --", ""};
    ASSERT_EQ(c.Exec("INSERT INTO p (a, b, c) VALUES ($1, $2, $3)", single, nullptr, array, 2), 0);
    ASSERT_EQ(c.Exec("INSERT INTO p (a) VALUES ($1)", "", nullptr, nullptr, 0), 0);  // stays ''
    ASSERT_EQ(c.Commit(), 0);

    PgCluster::Rows rows;
    ASSERT_TRUE(TestCluster().Query(kDb, "SELECT a, b, c FROM p ORDER BY id", &rows));
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0][0], single);
    EXPECT_EQ(rows[0][1], array[0]);
    EXPECT_EQ(rows[0][2], std::nullopt);  // an empty array entry is NULL
    EXPECT_EQ(rows[1][0], "");

    // A select takes them as well; "for update" opens a transaction.
    EXPECT_EQ(Select(c, "select b from p where a = $1", single), "'" + std::string(array[0]) + "':2");
    EXPECT_FALSE(c.IsInTransaction());
    ASSERT_EQ(c.Exec("select id from p where a = $1 FOR UPDATE", single, nullptr, nullptr, 0), 0);
    EXPECT_TRUE(c.IsInTransaction());
    EXPECT_FALSE(c.IsEnd());
    EXPECT_EQ(c.Rollback(0), 0);
}

TEST_F(CdDBConnectionTest, SlowStatementsGoToWarnFileAndLog) {
    Setup("CREATE TABLE t (id int)");
    comSetClockFunction(FakeClock);
    g_clockOffsetMillis = 0;
    const std::string trace = dir_ / "entDB_sch_1.log";
    CdDBConnection_PG c;
    c.SetTraceFile(trace.c_str());
    c.SetCallback(AdvanceClockOnStatement);
    ASSERT_EQ(Connect(c), 0);

    g_statementMillis = 99;
    ASSERT_EQ(c.Exec("INSERT INTO t VALUES (99)"), 0);
    g_statementMillis = 100;
    ASSERT_EQ(c.Exec("INSERT INTO t VALUES ($1)", "100", nullptr, nullptr, 0), 0);
    g_statementMillis = 150;
    ASSERT_EQ(c.Exec("INSERT INTO t VALUES (150)"), 0);
    ASSERT_EQ(c.Commit(), 0);
    ASSERT_EQ(c.Disconnect(), 0);

    const std::string warn = ReadFile(trace + ".warn");
    EXPECT_EQ(warn.find("(99)"), std::string::npos) << warn;
    EXPECT_NE(warn.find(" 100 \"INSERT INTO t VALUES ($1)\"\n"), std::string::npos) << warn;
    EXPECT_NE(warn.find(" param=[100]\n"), std::string::npos) << warn;
    EXPECT_NE(warn.find(" 150 \"INSERT INTO t VALUES (150)\"\n"), std::string::npos) << warn;

    const std::string all = ReadFile(trace);
    for (const char* line : {" \"DB open\"\n", " TranBegin\n", " 99 \"INSERT INTO t VALUES (99)\"\n",
                             " 150 \"INSERT INTO t VALUES (150)\"\n", " commit\n", " \"DB close\"\n"})
        EXPECT_NE(all.find(line), std::string::npos) << line << " in\n" << all;
    EXPECT_EQ(Log().find("[WARN]"), std::string::npos);

    // Without a trace file, warnOnly notes slow statements in the current log.
    CdDBConnection_PG quiet;
    quiet.SetWarnOnly(true);
    quiet.SetCallback(AdvanceClockOnStatement);
    ASSERT_EQ(Connect(quiet), 0);
    g_statementMillis = 99;
    ASSERT_EQ(quiet.Exec("INSERT INTO t VALUES (1)"), 0);
    g_statementMillis = 120;
    ASSERT_EQ(quiet.Exec("INSERT INTO t VALUES (2)"), 0);
    const std::string log = Log();
    EXPECT_EQ(log.find("VALUES (1)"), std::string::npos) << log;
    EXPECT_NE(log.find("[WARN] 120 \"INSERT INTO t VALUES (2)\"\n"), std::string::npos) << log;
}

TEST_F(CdDBConnectionTest, StatementTimeoutIsAppliedAndCancels) {
    const std::string trace = dir_ / "trace.log";
    CdDBConnection_PG c;
    c.SetTraceFile(trace.c_str());
    ASSERT_EQ(Connect(c, 5), 0);
    const char* setting = "select current_setting('statement_timeout')";
    EXPECT_EQ(Select(c, setting), "'5s':2");
    c.SetTimeout(2);
    EXPECT_EQ(Select(c, setting), "'2s':2");
    c.SetTimeout(-1);  // stands for the time-out given to Connect
    EXPECT_EQ(Select(c, setting), "'5s':2");
    c.SetTimeout(3);
    c.ResetTimeout();
    EXPECT_EQ(c.GetTimeout(), 5);
    EXPECT_NE(ReadFile(trace).find(" SET statement_timeout TO 2000\n"), std::string::npos);

    // With no time-out of its own the server's default is restored.
    CdDBConnection_PG d;
    ASSERT_EQ(Connect(d, -1), 0);
    d.SetTimeout(1);
    ASSERT_EQ(d.Exec("select 1"), 0);
    d.SetTimeout(-1);
    EXPECT_EQ(Select(d, setting), "'0':2");

    // A cancelled plain select and a cancelled other statement differ.
    ASSERT_EQ(d.SetTransactional(false), 0);
    ASSERT_EQ(d.Exec("SET statement_timeout TO 50"), 0);
    EXPECT_EQ(d.Exec("select pg_sleep(1)"), -1028);
    EXPECT_EQ(d.GetStatus(), 57014);
    EXPECT_EQ(d.Exec("Select pg_sleep(1)"), -1010);
    EXPECT_NE(Log().find("Error      [57014]\n"), std::string::npos);
}

TEST_F(CdDBConnectionTest, DeadlockIsReported) {
    Setup("CREATE TABLE d (id int PRIMARY KEY, v int); INSERT INTO d VALUES (1, 0), (2, 0);");
    CdDBConnection_PG a;
    ASSERT_EQ(Connect(a), 0);
    ASSERT_EQ(a.Exec("SET deadlock_timeout TO 50"), 0);
    ASSERT_EQ(a.Exec("UPDATE d SET v = 1 WHERE id = 1"), 0);

    // The other side waits for row 1 and keeps the check of its own for later.
    RawConn b = RawConnect();
    ASSERT_EQ(PQstatus(b.get()), CONNECTION_OK);
    for (const char* sql : {"SET deadlock_timeout TO '20s'", "BEGIN", "UPDATE d SET v = 2 WHERE id = 2"})
        PQclear(PQexec(b.get(), sql));
    ASSERT_EQ(PQsendQuery(b.get(), "UPDATE d SET v = 2 WHERE id = 1"), 1);
    bool waiting = false;
    for (int i = 0; i < 500 && !waiting; ++i) {
        waiting = Value("SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock'") == "1";
        if (!waiting) usleep(10000);
    }
    ASSERT_TRUE(waiting);

    EXPECT_EQ(a.Exec("UPDATE d SET v = 1 WHERE id = 2"), -1015);
    EXPECT_EQ(a.GetStatus(), 1205);
    EXPECT_EQ(std::string(a.GetErrorMessage()).rfind("[40P01]:", 0), 0u);
    EXPECT_EQ(a.Rollback(0), 0);
    while (PGresult* r = PQgetResult(b.get())) PQclear(r);
    PQclear(PQexec(b.get(), "COMMIT"));
    EXPECT_EQ(Value("SELECT string_agg(v::text, ',' ORDER BY id) FROM d"), "2,2");
}

TEST_F(CdDBConnectionTest, RefusedConnectsEndAtOnce) {
    CdDBConnection_PG c;
    c.SetRetryCount(3);
    // A wrong password: one attempt, no wait.
    EXPECT_EQ(Connect(c, -1, "wrong"), -1001);
    EXPECT_TRUE(g_sleeps.empty());
    EXPECT_FALSE(c.IsConnected());
    EXPECT_NE(std::string(c.GetErrorMessage()).find("password authentication failed"),
              std::string::npos)
        << c.GetErrorMessage();

    // A closed port: refused, likewise not retried.
    const PgCluster& pg = TestCluster();
    EXPECT_EQ(c.Connect(pg.User().c_str(), pg.Password().c_str(), pg.Host().c_str(), kDb,
                        testsupport::ClosedPort().c_str(), -1),
              -1001);
    EXPECT_TRUE(g_sleeps.empty());
    EXPECT_EQ(std::string(c.GetErrorMessage()).rfind("[]:", 0), 0u);
    EXPECT_EQ(c.Connect(nullptr, "x", "h", "d", nullptr, -1), -1099);
}

TEST_F(CdDBConnectionTest, TooManyClientsIsRetried) {
    // Fill every connection slot of the cluster.
    std::vector<RawConn> held;
    bool full = false;
    for (int i = 0; i < 200 && !full; ++i) {
        RawConn conn = RawConnect();
        if (PQstatus(conn.get()) == CONNECTION_OK) {
            held.push_back(std::move(conn));
        } else {
            full = std::strstr(PQerrorMessage(conn.get()), "too many clients") != nullptr;
            ASSERT_TRUE(full) << PQerrorMessage(conn.get());
        }
    }
    ASSERT_TRUE(full);

    CdDBConnection_PG c;
    c.SetRetryCount(3);
    c.SetConnectTimeout(2);
    EXPECT_EQ(Connect(c), -1002);
    EXPECT_EQ(c.GetStatus(), -911);
    EXPECT_EQ(g_sleeps, (std::vector<unsigned>{2, 2}));  // between attempts, not after the last

    // The slots come free as the server's processes end.
    held.clear();
    int rc = -1;
    for (int i = 0; i < 500 && rc != 0; ++i) {
        rc = Connect(c);
        if (rc != 0) usleep(10000);
    }
    EXPECT_EQ(rc, 0);
    EXPECT_TRUE(c.IsConnected());
}

}  // namespace
