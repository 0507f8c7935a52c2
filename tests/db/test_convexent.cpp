// The table conversion frame against the test cluster: the continue rule of a
// row, progress and closing counts, count files that disagree, the commit
// interval, unreadable query files, and the writers of the typical kind.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <tuple>
#include <vector>

#include "ClusterRun.h"
#include "MakeConvEToKiv/convcom/ConvDBEntryTimes.h"
#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convcom/kiv_index.h"

using namespace testsupport;

namespace {

// The application with a chosen commit interval; records every message.
class FrameApp : public ClusterApp {
public:
    using ClusterApp::ClusterApp;
    int32_t GetCommitInterval() override { return interval; }
    int32_t PutMessage(const char* name, int32_t code, int32_t first, int32_t second) override {
        messages.emplace_back(code, first, second);
        return ClusterApp::PutMessage(name, code, first, second);
    }
    int32_t interval = 1;
    std::vector<std::tuple<int32_t, int32_t, int32_t>> messages;
};

using Msg = std::tuple<int32_t, int32_t, int32_t>;

// A writer that answers with the row's column rc when it isn't 0, and writes
// the row (without rc) otherwise.
class ScriptedWriter : public ConvDBEntry {
public:
    using ConvDBEntry::ConvDBEntry;
    int32_t Entry(const char* table, ConvRow& row) override {
        const char* rc = FindColumn(row, "rc");
        const int32_t code = rc ? static_cast<int32_t>(std::strtol(rc, nullptr, 10)) : 0;
        RemoveColumn("rc", row);
        if (code != 0) return code;
        return ConvDBEntry::Entry(table, row);
    }
};

class ScriptedConv : public ConvExEntWith<ScriptedWriter> {
public:
    explicit ScriptedConv(ConvApp* app) : ConvExEntWith(app, false, "t_dst", {"ID"}) {}
};

class TimesConv : public ConvExEntWith<ConvDBEntryTimes> {
public:
    explicit TimesConv(ConvApp* app) : ConvExEntWith(app, false, "t_dst", {"ID"}) {}
};

class ConvExEntTest : public ::testing::Test {
protected:
    ConvExEntTest()
        : args_(RunArgs(dir_.Path(), "create", TestCluster().PortText())), app_(args_.Argc(), args_.Argv(), kDb) {}

    void SetUp() override {
        MakeDirs(dir_ / "conv/log");
        MakeDirs(dir_ / "sql/sch");
        std::string error;
        ASSERT_TRUE(TestCluster().CreateDatabase(kDb, &error)) << error;
        ASSERT_TRUE(TestCluster().Exec(kDb,
                                       "CREATE TABLE t_src (id int, rc int, cretime varchar, updtime varchar);"
                                       "CREATE TABLE t_dst (id int PRIMARY KEY, cretime varchar(14),"
                                       " updtime varchar(14));",
                                       &error))
            << error;
    }
    void TearDown() override {
        if (started_) app_.End();
    }
    void Start(int32_t interval) {
        app_.interval = interval;
        ASSERT_EQ(app_.Init("label"), 0);
        started_ = true;
        app_.SetAbortInTransaction(true);
        app_.PutMessage("表", 3, 0, 0);  // a step's start names what its counts belong to
        app_.messages.clear();
    }
    void Sql(const std::string& sql) {
        std::string error;
        ASSERT_TRUE(TestCluster().Exec(kDb, sql, &error)) << error;
    }
    void Query(const std::string& name, const std::string& text) { WriteFile(dir_ / ("sql/sch/" + name + ".sql"), text); }
    std::string Value(const std::string& sql) { return TestCluster().QueryValue(kDb, sql).value_or("<null>"); }
    std::vector<std::string> UserLog() const { return LogLines(dir_ / "conv/log/sch.log"); }
    std::string LastStatusMessage() const {
        const std::vector<std::string> all = StatusValues(dir_ / "conv/sch.sts", "dispmsg");
        return all.empty() ? "" : all.back();
    }

    static constexpr const char* kDb = "convexent_test";
    TempDir dir_;
    Args args_;
    FrameApp app_;
    bool started_ = false;
};

TEST_F(ConvExEntTest, RowsLeftOutCountAsFailedAndTheTableGoesOnToItsClosingCount) {
    // Row 3 repeats the key of row 2: the statement fails, is stepped over, and
    // counts as failed; so does the writer's own 1 on row 4.
    Sql("INSERT INTO t_src (id, rc) VALUES (1, 0), (2, 0), (2, 0), (4, 1), (5, 0)");
    Query("t_dst", "SELECT id, rc FROM t_src ORDER BY id, rc");
    Query("t_dst_count", "SELECT count(*) FROM t_src");
    Start(1);
    ScriptedConv conv(&app_);
    EXPECT_EQ(conv.Run(), 0);
    EXPECT_EQ(conv.TotalRows(), 5);
    EXPECT_EQ(conv.FailedRows(), 2);
    EXPECT_EQ(app_.StatusWord(), 1);
    EXPECT_EQ(Value("SELECT string_agg(id::text, ',' ORDER BY id) FROM t_dst"), "1,2,5");
    const std::vector<Msg> expected = {{4, 5, 1}, {4, 5, 2}, {4, 5, 3}, {4, 5, 4}, {6, 5, 2}, {6, 5, 2}};
    EXPECT_EQ(app_.messages, expected);
    EXPECT_EQ(LastStatusMessage(), "表 5件移行が終了しました。(成功：3 失敗：2)");
    const std::vector<std::string> log = UserLog();
    EXPECT_NE(std::find(log.begin(), log.end(), "[WARN] t_dst [ID=2] 重複エラーが発生しましたが処理を続行しました。"),
              log.end());
    // Progress is never written to the log.
    for (const std::string& line : log) EXPECT_EQ(line.find("件が移行済みです。"), std::string::npos) << line;
}

TEST_F(ConvExEntTest, ARowCodeOtherThanZeroOrOneStopsTheTable) {
    for (int32_t code : {7, -5, 2, 3}) {
        SCOPED_TRACE(code);
        Sql("DELETE FROM t_src; DELETE FROM t_dst;");
        Sql("INSERT INTO t_src (id, rc) VALUES (1, 0), (2, 1), (3, " + std::to_string(code) + "), (4, 0)");
        Query("t_dst", "SELECT id, rc FROM t_src ORDER BY id");
        if (!started_) Start(1);
        app_.messages.clear();
        ScriptedConv conv(&app_);
        EXPECT_EQ(conv.Run(), code);
        EXPECT_EQ(conv.FailedRows(), 1);
        EXPECT_EQ(Value("SELECT string_agg(id::text, ',' ORDER BY id) FROM t_dst"), "1");
        // No count file: no progress at all.
        EXPECT_TRUE(app_.messages.empty());
    }
}

TEST_F(ConvExEntTest, CountFileThatDisagreesNeverShowsTheClosingCount) {
    Sql("INSERT INTO t_src (id) VALUES (1), (2), (3)");
    Query("t_dst", "SELECT id FROM t_src ORDER BY id");
    Query("t_dst_count", "SELECT 5");
    Start(2);
    ScriptedConv conv(&app_);
    EXPECT_EQ(conv.Run(), 0);
    // Every second row, and the forced one at the end.
    const std::vector<Msg> expected = {{4, 5, 2}, {4, 5, 3}};
    EXPECT_EQ(app_.messages, expected);
    EXPECT_EQ(LastStatusMessage(), "表 5件中3件が移行済みです。");
    EXPECT_EQ(app_.StatusWord(), 0);
}

TEST_F(ConvExEntTest, EmptySourceClosesOnceAndIntervalZeroGivesNoProgress) {
    Query("t_dst", "SELECT id FROM t_src ORDER BY id");
    Query("t_dst_count", "SELECT count(*) FROM t_src");
    Start(1);
    {
        ScriptedConv conv(&app_);
        EXPECT_EQ(conv.Run(), 0);
        EXPECT_EQ(app_.messages, (std::vector<Msg>{{6, 0, 0}}));
    }
    app_.End();
    started_ = false;

    Sql("INSERT INTO t_src (id) VALUES (1), (2)");
    Start(0);
    ScriptedConv conv(&app_);
    EXPECT_EQ(conv.Run(), 0);
    EXPECT_EQ(conv.TotalRows(), 2);
    EXPECT_TRUE(app_.messages.empty());
    EXPECT_EQ(Value("SELECT count(*) FROM t_dst"), "2");
}

TEST_F(ConvExEntTest, UnreadableQueriesStopTheTableBeforeAnyRow) {
    Start(1);
    {
        ScriptedConv conv(&app_);  // no query file at all
        EXPECT_EQ(conv.Run(), ConvApp::kBatchFailed);
    }
    const std::vector<std::string> log = UserLog();
    EXPECT_NE(std::find(log.begin(), log.end(), "[ERR] SQLファイルの読み込みに失敗しました。(errno=2)"), log.end());

    Query("t_dst", "SELECT id FROM no_such_table");
    ScriptedConv badMain(&app_);
    EXPECT_EQ(badMain.Run(), ConvApp::kBatchFailed);
    Query("t_dst", "SELECT id FROM t_src");
    Query("t_dst_count", "SELECT count(*) FROM no_such_table");
    ScriptedConv badCount(&app_);
    EXPECT_EQ(badCount.Run(), ConvApp::kBatchFailed);
    const std::vector<std::string> after = UserLog();
    EXPECT_NE(std::find(after.begin(), after.end(), "[ERR] データの読み込みに失敗しました。"), after.end());
    EXPECT_NE(std::find(after.begin(), after.end(), "[ERR] データ件数の取得に失敗しました。"), after.end());
}

TEST_F(ConvExEntTest, AQueryThatFailsAfterItsFirstRowsStopsTheTable) {
    // The third row divides by zero: the rows before it are written, then the
    // table stops as a query that fails at once does, never closing as done.
    Sql("INSERT INTO t_src (id) VALUES (1), (2), (3), (4)");
    Query("t_dst", "SELECT id, 0 / (3 - id) AS rc FROM (SELECT id FROM t_src ORDER BY id OFFSET 0) s");
    Query("t_dst_count", "SELECT count(*) FROM t_src");
    Start(1);
    ScriptedConv conv(&app_);
    EXPECT_EQ(conv.Run(), -1006);
    EXPECT_EQ(Value("SELECT string_agg(id::text, ',' ORDER BY id) FROM t_dst"), "1,2");
    const std::vector<Msg> expected = {{4, 4, 1}, {4, 4, 2}};
    EXPECT_EQ(app_.messages, expected);
    const std::vector<std::string> log = UserLog();
    EXPECT_NE(std::find(log.begin(), log.end(), "[ERR] データの読み込みに失敗しました。"), log.end());
}

TEST_F(ConvExEntTest, TypicalWriterShiftsTimesAndLeavesOutARowWhoseTimesCantShift) {
    Sql("INSERT INTO t_src (id, cretime, updtime) VALUES (1, '20240301085959', NULL),"
        " (2, '2024x', '20240101000000'), (3, '20240101120000', '20240102120000')");
    Query("t_dst", "SELECT id, cretime, updtime FROM t_src ORDER BY id");
    Start(1);
    TimesConv conv(&app_);
    EXPECT_EQ(conv.Run(), 0);
    EXPECT_EQ(conv.FailedRows(), 1);
    EXPECT_EQ(Value("SELECT cretime || '/' || updtime FROM t_dst WHERE id = 1"), "20240229235959/20240229235959");
    EXPECT_EQ(Value("SELECT cretime || '/' || updtime FROM t_dst WHERE id = 3"), "20240101030000/20240102030000");
    EXPECT_EQ(Value("SELECT count(*) FROM t_dst WHERE id = 2"), "0");
    const std::vector<std::string> log = UserLog();
    EXPECT_NE(std::find(log.begin(), log.end(),
                        "[ERR] t_dst [ID=2] 作成日時、更新日時のタイムゾーン変換に失敗しましたが処理を続行しました。"),
              log.end());
    // Reported with a negative code, the row still ends as a warning.
    EXPECT_EQ(app_.StatusWord(), 1);
}

// The index writer keeps the condition an UPDATE of the row would need.
class IndexWriterProbe : public kiv_index {
public:
    using kiv_index::kiv_index;
    const std::string& Where() const { return whereText; }
};

TEST_F(ConvExEntTest, IndexWriterCollectsModuleAndSubCodeAsCondition) {
    Start(1);
    IndexWriterProbe writer(&app_, app_.KivConnection());
    ConvRow row;
    AddColumn("sid_module", "3", kRowTypeText, row);
    AddColumn("subcode", "001", kRowTypeText, row);
    ASSERT_EQ(writer.CollectColumns("TM_INDEX", row), 0);
    EXPECT_EQ(writer.Where(), "SID_MODULE=3 AND SUBCODE='001'");

    ConvRow noModule;
    AddColumn("sid_module", nullptr, kRowTypeText, noModule);
    AddColumn("subcode", "002", kRowTypeText, noModule);
    ASSERT_EQ(writer.CollectColumns("TM_INDEX", noModule), 0);
    EXPECT_EQ(writer.Where(), "SUBCODE='002'");
}

}  // namespace
