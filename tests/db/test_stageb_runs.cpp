// Whole create runs over the shipped schemas and queries: what the index,
// administrator and access-right steps make of real working rows, a second run
// over the same target, and a stage-B step that fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "PgCluster.h"
#include "ShippedRun.h"
#include "TestSupport.h"

using namespace testsupport;

namespace {

const std::string kSource = CONV_SOURCE_DIR;

class StageBRun : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(PrepareShippedRun(dir.Path(), kEnt, kKiv));
        // Stage A reads an empty store; every store has its user index.
        MakeDirs(dir / "store/data/user");
        WriteFile(dir / "store/data/user/index", "_lastid=0\n");
    }

    void Ent(const std::string& sql) {
        std::string error;
        ASSERT_TRUE(TestCluster().Exec(kEnt, sql, &error)) << error;
    }
    std::string Kiv(const std::string& sql) { return TestCluster().QueryValue(kKiv, sql).value_or("<null>"); }

    ChildResult Create() {
        // An empty store; stage A's owner steps need its user index all the same.
        WriteFile(dir / "store/data/user/index", "_lastid=0\n");
        Args args(ClusterRunArgs(dir.Path(), "create", dir / "store", kSource + "/examples/target", kEnt, kKiv));
        return RunInChild(RunProgram, &args);
    }

    std::vector<std::string> UserLog() const { return LogLines(dir / "conv/log/sch.log"); }
    bool LogHas(const std::string& line) const {
        const std::vector<std::string> log = UserLog();
        return std::find(log.begin(), log.end(), line) != log.end();
    }
    std::string Status() const { return StatusValue(dir / "conv/sch.sts", "status"); }
    std::vector<std::string> StatusMessages() const { return StatusValues(dir / "conv/sch.sts", "dispmsg"); }

    // Working rows of every table the shared steps read.
    void FillWorkingRows() {
        Ent("INSERT INTO TM_INDEX (SID_MODULE, SUBCODE, lastid) VALUES (1, '001', 60), (3, '001', 4), (3, '002', 2),"
            " (26, '001', 9);"
            "INSERT INTO TM_PLT_ADMIN_COMMON (ID) VALUES (7);"
            "INSERT INTO TM_PLT_ADMIN_GROUP (SID_GROUP, ID) VALUES (2, 7), (2, 8);"
            "INSERT INTO TM_AGENDA_COMMON (ID) VALUES (9);"
            "INSERT INTO TM_AGENDA_ADMIN_GROUP (SID_GROUP, ID) VALUES (4, 8);"
            "INSERT INTO TMPR_SCH_SETTING (SID_USER, ROWCOUNT, sunday, todo) VALUES (5, 10, '1', '0');"
            "INSERT INTO TMPR_SCH_EVENT (SID_USER, ID, ITEM) VALUES (5, 1, '会議'), (5, 2, 'it''s');"
            "INSERT INTO TMPR_SCH_PLACE (SID_USER, ID, ITEM) VALUES (5, 1, '本社');"
            "INSERT INTO TMPR_ACCESS_ALL (SID_MODULE, ID, accesskind) VALUES (1, 5, 3), (1, 6, 3);"
            "INSERT INTO TMPR_ACCESS_GROUP (SID_MODULE, ID, SID_ASSIGN, accesskind) VALUES (1, 5, 2, 1);"
            "INSERT INTO TMPR_ACCESS_PRGROUP (SID_MODULE, ID, SID_ASSIGN, accesskind) VALUES (1, 5, 2, 2);"
            "INSERT INTO TMPR_ACCESS_USER (SID_MODULE, ID, SID_ASSIGN, accesskind) VALUES (1, 5, 6, 2), (1, 6, 5, 1);"
            "INSERT INTO TM_ACCPLT_ALL (ID, accesskind) VALUES (11, 1);"
            "INSERT INTO TM_ACCPLT_GROUP (ID, SID_ASSIGN, accesskind) VALUES (11, 2, 2);"
            "INSERT INTO TM_ACCPLT_USER (ID, SID_ASSIGN, accesskind) VALUES (11, 5, 3);");
    }

    static constexpr const char* kEnt = "stageb_ent";
    static constexpr const char* kKiv = "stageb_kiv";
    TempDir dir;
};

TEST_F(StageBRun, SharedStepsCarryEveryWorkingRowAndASecondRunWarnsPerDuplicate) {
    FillWorkingRows();
    ChildResult r = Create();
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(Status(), "0");
    for (const std::string& line : UserLog()) EXPECT_EQ(line.rfind("[INFO]", 0), 0u) << line;

    // Index rows by module, with the time of the conversion.
    EXPECT_EQ(Kiv("SELECT string_agg(SID_MODULE || ':' || SUBCODE || '=' || lastid, ',' ORDER BY SID_MODULE, SUBCODE)"
                  " FROM TM_INDEX WHERE SID_CORPORATE = 1"),
              "1:001=60,3:001=4,3:002=2,26:001=9");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TM_INDEX WHERE length(cretime) <> 14 OR updtime IS NULL"), "0");
    // Administrators: the whole module is group 0.
    EXPECT_EQ(Kiv("SELECT string_agg(SID_MODULE || '/' || SID_GROUP || '/' || SID_ASSIGN, ','"
                  " ORDER BY SID_MODULE, SID_GROUP, SID_ASSIGN) FROM TM_RMODULE_ASSIGNUSER"),
              "3/0/7,3/2/7,3/2/8,26/0/9,26/4/8");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TM_RMODULE_ASSIGNUSER WHERE cretime IS NULL OR updtime IS NULL"), "0");
    // Personal settings and masters.
    EXPECT_EQ(Kiv("SELECT rowcount || sunday || todo FROM TMPR_SCH_SETTING WHERE SID_USER = 5"), "1010");
    EXPECT_EQ(Kiv("SELECT string_agg(ID || '=' || item, ',' ORDER BY ID) FROM TMPR_SCH_EVENT WHERE SID_USER = 5"),
              "1=会議,2=it's");
    EXPECT_EQ(Kiv("SELECT item FROM TMPR_SCH_PLACE WHERE SID_USER = 5 AND ID = 1"), "本社");
    // Access rights: the working ID is the owner; a personal group's right has
    // no target and must not pass for the organisation's group 2.
    EXPECT_EQ(Kiv("SELECT string_agg(SID_USER || ':' || accesskind, ',' ORDER BY SID_USER) FROM TMPR_ACCESS_ALL"),
              "5:3,6:3");
    EXPECT_EQ(Kiv("SELECT string_agg(SID_USER || '>' || SID_ASSIGN || ':' || accesskind, ',') FROM TMPR_ACCESS_GROUP"),
              "5>2:1");
    EXPECT_EQ(Kiv("SELECT string_agg(SID_USER || '>' || SID_ASSIGN || ':' || accesskind, ',' ORDER BY SID_USER)"
                  " FROM TMPR_ACCESS_USER"),
              "5>6:2,6>5:1");
    EXPECT_EQ(Kiv("SELECT SID_PLANT || ':' || accesskind FROM TM_ACCPLT_ALL"), "11:1");
    EXPECT_EQ(Kiv("SELECT SID_PLANT || '>' || SID_ASSIGN || ':' || accesskind FROM TM_ACCPLT_GROUP"), "11>2:2");
    EXPECT_EQ(Kiv("SELECT SID_PLANT || '>' || SID_ASSIGN || ':' || accesskind FROM TM_ACCPLT_USER"), "11>5:3");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TMPR_ACCESS_ROLE") + Kiv("SELECT count(*) FROM TM_ACCPLT_ROLE"), "00");

    // The second run over the same target: each row a warning, the run goes on.
    r = Create();
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(Status(), "2");
    EXPECT_TRUE(LogHas("[WARN] TM_INDEX [SID_MODULE=3] [SUBCODE=002] 重複エラーが発生しましたが処理を続行しました。"));
    EXPECT_TRUE(LogHas("[WARN] TM_INDEX [SID_MODULE=26] [SUBCODE=001] 重複エラーが発生しましたが処理を続行しました。"));
    EXPECT_TRUE(LogHas("[WARN] TM_ACCPLT_USER [SID_ASSIGN=5] 重複エラーが発生しましたが処理を続行しました。"));
    EXPECT_TRUE(LogHas("[INFO] 索引マスター（来訪者管理） 移行が終了しました。"));
    EXPECT_TRUE(LogHas("[INFO] 設備アクセス権ユーザー  移行が終了しました。"));  // its label ends in a blank
    // Every function was closed: the first by its summary, not left open.
    const std::vector<std::string> messages = StatusMessages();
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[0].rfind("スケジュール、設備予約機能の移行を終了しました。", 0), 0u) << messages[0];
    EXPECT_EQ(messages[1].rfind("議事録機能の移行を終了しました。", 0), 0u) << messages[1];
    EXPECT_EQ(messages[2].rfind("来訪者管理機能の移行を終了しました。", 0), 0u) << messages[2];
    EXPECT_EQ(Kiv("SELECT count(*) FROM TM_INDEX"), "4");
}

TEST_F(StageBRun, FailingStepStopsTheRunAndKeepsWhatEarlierStepsWrote) {
    FillWorkingRows();
    Ent("DROP TABLE TMPR_ACCESS_USER");
    ChildResult r = Create();
    EXPECT_EQ(r.status, 253);
    EXPECT_EQ(Status(), "3");
    EXPECT_TRUE(LogHas("[ERR] データ件数の取得に失敗しました。"));
    EXPECT_TRUE(LogHas("[INFO] ユーザーアクセス権ユーザー 移行に失敗しました。"));
    const std::vector<std::string> log = UserLog();
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.back(), "[INFO] 移行を中断しました。");
    EXPECT_EQ(StatusMessages().back(), "移行を中断しました。");
    // Earlier steps stay, later ones never ran.
    EXPECT_EQ(Kiv("SELECT count(*) FROM TMPR_ACCESS_GROUP"), "1");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TM_INDEX WHERE SID_MODULE = 1"), "1");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TMPR_ACCESS_ALL"), "0");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TM_ACCPLT_GROUP"), "0");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TM_INDEX WHERE SID_MODULE <> 1"), "0");
}

}  // namespace
