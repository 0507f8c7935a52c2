// Whole runs of the program against the test cluster: the clean mode with its
// file removal and scripts, the SQL logs, and the start of a create run.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "MakeConvEToKiv/convbatcom/ConvBat.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "PgCluster.h"
#include "TestSupport.h"
#include "base/comTime.h"

using namespace testsupport;
namespace fs = std::filesystem;

namespace {

// A work root, a target installation and two fresh databases with a table of
// marks that the scripts delete from and a table they log into.
class RunFixture : public ::testing::Test {
protected:
    void SetUp() override {
        root = dir.Path();
        target = dir / "target";
        MakeDirs(root + "/conv/log");
        MakeDirs(target);
        for (const char* db : {"run_ent", "run_kiv"}) {
            ASSERT_TRUE(TestCluster().CreateDatabase(db));
            ASSERT_TRUE(TestCluster().Exec(db,
                                           "CREATE TABLE marks (n int); INSERT INTO marks VALUES (1), (2), (3);"
                                           "CREATE TABLE runlog (what text);"));
        }
    }

    std::vector<std::string> Arguments(const std::string& mode, const std::string* sqlLogDir = nullptr) {
        PgCluster& c = TestCluster();
        std::vector<std::string> a = {"convsch", root,       "0",          mode,       dir / "store", c.Host(),
                                      c.PortText(), c.User(), c.Password(), target,     c.Host(),      c.PortText(),
                                      c.User(),     c.Password(), "run_ent", "run_kiv"};
        if (sqlLogDir) a.push_back(*sqlLogDir);
        return a;
    }

    ChildResult Run(const std::vector<std::string>& values) {
        Args args(values);
        return RunInChild(RunProgram, &args);
    }

    std::string Value(const char* db, const std::string& sql) {
        return TestCluster().QueryValue(db, sql).value_or("<null>");
    }

    std::string Status(const std::string& file) { return StatusValue(root + "/conv/" + file, "status"); }

    std::vector<std::string> Names(const std::string& path) {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(path)) names.push_back(e.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    static std::string Today() {
        char today[16] = {};
        comTimeNowDate(today, true);
        return today;
    }

    TempDir dir;
    std::string root;
    std::string target;
};

}  // namespace

TEST_F(RunFixture, CleanRemovesMigratedFilesAndStopsScriptAtFirstFailure) {
    const std::string sched = target + "/file/1/schedule";
    WriteFile(sched + "/1/2/attached.txt", "x");
    for (const char* icon : {"1", "22", "23", "26", "47", "48", "abc"}) WriteFile(sched + "/icon/" + icon, "i");
    WriteFile(sched + "/icon/5/inner", "kept with its directory");
    WriteFile(root + "/sql/sch/clean_ent.sql",
              "-- comment\n"
              "\n"
              "\r\n"
              "DELETE FROM marks WHERE n = 1;\n"
              "DELETE FROM marks WHERE n = 999;\n"  // touches no row: goes on
              "INSERT INTO runlog VALUES ('it''s done');\n");
    WriteFile(root + "/sql/sch/clean_kiv.sql",
              "DELETE FROM marks;\n"
              "  -- not a comment: sent as it stands\n"
              "INSERT INTO runlog VALUES ('never');\n");

    ChildResult r = Run(Arguments("clean"));
    EXPECT_EQ(r.status, 253);
    EXPECT_EQ(Status("sch_clean.sts"), "3");
    EXPECT_FALSE(Exists(root + "/conv/log/sch.log"));

    EXPECT_EQ(Names(sched), std::vector<std::string>{"icon"});
    EXPECT_EQ(Names(sched + "/icon"), (std::vector<std::string>{"1", "22", "26", "47", "5"}));
    EXPECT_TRUE(Exists(sched + "/icon/5/inner"));

    EXPECT_EQ(Value("run_ent", "SELECT string_agg(n::text, ',' ORDER BY n) FROM marks"), "2,3");
    EXPECT_EQ(Value("run_ent", "SELECT string_agg(what, ',') FROM runlog"), "it's done");
    EXPECT_EQ(Value("run_kiv", "SELECT count(*) FROM marks"), "0");
    EXPECT_EQ(Value("run_kiv", "SELECT count(*) FROM runlog"), "0");

    TraceLog trace = ReadTrace(root + "/conv/log/sch_clean_trace.log");
    EXPECT_TRUE(trace.wellFormed);
    bool sawStop = false;
    for (const std::string& report : trace.reports)
        if (report.find("[msg=Quillmere KIVのデータベースの初期化に失敗しました。 sql[  -- not a comment: sent as it "
                        "stands\n] (err[") != std::string::npos)
            sawStop = true;
    EXPECT_TRUE(sawStop);
}

TEST_F(RunFixture, CleanWithSettingsAndDatedSqlLogEndsWithZero) {
    WriteFile(target + "/data/app", "dbdirfile=" + dir.Path() + "/files\ncid=7\n");
    WriteFile(dir / "files/7/schedule/9/a.txt", "x");
    WriteFile(dir / "files/1/schedule/9/a.txt", "another corporation's");
    WriteFile(root + "/sql/sch/clean_ent.sql", "DELETE FROM marks;\n");
    WriteFile(root + "/sql/sch/clean_kiv.sql", "");
    const std::string logDir = dir / ("sql" + Today());
    MakeDirs(logDir);

    ChildResult r = Run(Arguments("clean", &logDir));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(Status("sch_clean.sts"), "0");
    EXPECT_FALSE(Exists(dir / "files/7/schedule/9"));
    EXPECT_TRUE(Exists(dir / "files/1/schedule/9/a.txt"));
    EXPECT_EQ(Value("run_ent", "SELECT count(*) FROM marks"), "0");
    EXPECT_EQ(Value("run_kiv", "SELECT count(*) FROM marks"), "3");

    std::vector<std::string> logs = Names(logDir);
    ASSERT_EQ(logs.size(), 2u);
    EXPECT_EQ(logs[0].rfind("entDB_sch_clean_", 0), 0u);
    EXPECT_EQ(logs[1].rfind("kivDB_sch_clean_", 0), 0u);
    EXPECT_NE(ReadFile(logDir + "/" + logs[0]).find("DELETE FROM marks;"), std::string::npos);
}

TEST_F(RunFixture, SqlLogDirectoryWithoutTodaysDateWritesNoLog) {
    WriteFile(root + "/sql/sch/clean_ent.sql", "DELETE FROM marks;\n");
    WriteFile(root + "/sql/sch/clean_kiv.sql", "DELETE FROM marks;\n");
    const std::string logDir = dir / "sql19990101";
    MakeDirs(logDir);
    ChildResult r = Run(Arguments("clean", &logDir));
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(Names(logDir).empty());
}

TEST_F(RunFixture, MissingScriptStopsTheCleanAfterTheFilesAreGone) {
    WriteFile(target + "/file/1/schedule/3/a.txt", "x");
    WriteFile(root + "/sql/sch/clean_kiv.sql", "DELETE FROM marks;\n");
    ChildResult r = Run(Arguments("clean"));
    EXPECT_EQ(r.status, 253);
    EXPECT_EQ(Status("sch_clean.sts"), "3");
    EXPECT_FALSE(Exists(target + "/file/1/schedule/3"));
    EXPECT_EQ(Value("run_kiv", "SELECT count(*) FROM marks"), "3");
    TraceLog trace = ReadTrace(root + "/conv/log/sch_clean_trace.log");
    bool sawMissing = false;
    for (const std::string& report : trace.reports)
        if (report.find("[ret=-1021]") != std::string::npos &&
            report.find("[detail=" + root + "/sql/sch/clean_ent.sql]") != std::string::npos)
            sawMissing = true;
    EXPECT_TRUE(sawMissing);
}

TEST_F(RunFixture, CreateRunFailsWithTheCodeOfAnUnreadableMessageFile) {
    MakeDirs(target + "/local/ja_JP");
    fs::create_symlink("com", target + "/local/ja_JP/com");  // a link to itself can't be read, even by root
    ChildResult r = Run(Arguments("create"));
    EXPECT_EQ(r.status, 208);  // -30000, the code of a message file that exists but cannot be read
    EXPECT_EQ(Status("sch.sts"), "3");
}

TEST_F(RunFixture, CreateRunWithoutMessageFilesGoesOnAndEndsWithZero) {
    // Both databases and the queries as shipped, with no rows to move.
    const std::string source = CONV_SOURCE_DIR;
    ASSERT_TRUE(TestCluster().Exec("run_ent", ReadFile(source + "/schema/ent.sql")));
    ASSERT_TRUE(TestCluster().Exec("run_kiv", ReadFile(source + "/schema/kiv.sql")));
    MakeDirs(root + "/sql");
    ASSERT_EQ(system(("cp -r " + source + "/sql/sch " + root + "/sql/").c_str()), 0);
    // An empty store; stage A's owner steps need its user index all the same.
    WriteFile(dir / "store/data/user/index", "_lastid=0\n");
    ChildResult r = Run(Arguments("create"));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(Status("sch.sts"), "0");
    const std::vector<std::string> log = LogLines(root + "/conv/log/sch.log");
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.front(), "[INFO] スケジュール、設備予約、議事録、来訪者管理機能の移行の前準備を開始します。");
    // The last function closes with its last counted table.
    EXPECT_EQ(log.back(), "[INFO] 来訪者管理機能の移行を終了しました。索引マスター（来訪者管理）は0件移行しました。(成功：0 失敗：0)");
}

namespace {
// A driver whose clean-up also walks the users' directories.
class UserDirBat : public ConvBat {
public:
    explicit UserDirBat(ConvApp* app) : ConvBat(app) { userDir_ = "schedule"; }
    int32_t RunMain() override { return 0; }
};
}  // namespace

TEST_F(RunFixture, CleanOfUserDirectoriesFollowsTheTargetsUsers) {
    ASSERT_TRUE(TestCluster().Exec("run_kiv",
                                   "CREATE TABLE TM_USER (SID_CORPORATE int, ID int);"
                                   "INSERT INTO TM_USER VALUES (1, 5), (1, 1234), (2, 7);"));
    const std::string users = target + "/file/1/user";
    WriteFile(users + "/1/5/schedule/a.txt", "x");
    WriteFile(users + "/2/1234/schedule/b.txt", "x");
    WriteFile(users + "/2/1234/mail/c.txt", "another module's");
    WriteFile(users + "/1/7/schedule/d.txt", "a user of another corporation");
    Args args(Arguments("clean"));
    ConvAppStd app(args.Argc(), args.Argv(), "sch");
    ASSERT_EQ(app.Init("label"), 0);
    {
        UserDirBat bat(&app);
        EXPECT_EQ(bat.CleanFiles(), 0);
    }
    app.End();
    EXPECT_FALSE(Exists(users + "/1/5/schedule"));
    EXPECT_FALSE(Exists(users + "/2/1234/schedule"));
    EXPECT_TRUE(Exists(users + "/2/1234/mail/c.txt"));
    EXPECT_TRUE(Exists(users + "/1/7/schedule/d.txt"));
}
