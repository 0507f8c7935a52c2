// The shipped example migrated by a whole create run, as scripts/demo.sh does:
// every module with data in the flat store reaches the target, attached files
// arrive byte for byte, and each fault documented in examples/README.md gives
// its line in the user log and nothing else is lost.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "PgCluster.h"
#include "ShippedRun.h"
#include "TestSupport.h"

using namespace testsupport;

namespace {

const std::string kSource = CONV_SOURCE_DIR;
constexpr const char* kEnt = "example_ent";
constexpr const char* kKiv = "example_kiv";


class ExampleRun : public ::testing::Test {
protected:
    // One create run for the whole suite: the example is fixed, every test
    // reads the same outcome.
    static void SetUpTestSuite() {
        dir_ = new TempDir;
        ASSERT_NO_FATAL_FAILURE(PrepareShippedRun(dir_->Path(), kEnt, kKiv));
        ASSERT_EQ(system(("cp -r " + kSource + "/examples/target " + dir_->Path() + "/target").c_str()), 0);
        Args args(ClusterRunArgs(dir_->Path(), "create", kSource + "/examples/store", *dir_ / "target", kEnt, kKiv));
        result_ = new ChildResult(RunInChild(RunProgram, &args));
    }
    static void TearDownTestSuite() {
        delete result_;
        result_ = nullptr;
        delete dir_;
        dir_ = nullptr;
    }

    static std::vector<std::string> LogLinesWith(const std::string& tag) {
        std::vector<std::string> out;
        for (const std::string& line : LogLines(*dir_ / "conv/log/sch.log"))
            if (line.rfind(tag, 0) == 0) out.push_back(line);
        return out;
    }
    static std::string Kiv(const std::string& sql) { return TestCluster().QueryValue(kKiv, sql).value_or("<null>"); }

    static TempDir* dir_;
    static ChildResult* result_;
};

TempDir* ExampleRun::dir_ = nullptr;
ChildResult* ExampleRun::result_ = nullptr;

TEST_F(ExampleRun, EndsWithWarningsAndEveryDocumentedFaultHasItsLine) {
    ASSERT_NE(result_, nullptr);
    EXPECT_EQ(result_->status, 0) << result_->out;
    EXPECT_EQ(StatusValue(*dir_ / "conv/sch.sts", "status"), "2");

    const std::string store = kSource + "/examples/store/";
    const std::string target = *dir_ / "target/file/1/";
    // Exactly the four faults of examples/README.md, in the order of the run.
    const std::vector<std::string> expected = {
        "[WARN] TTPR_SCHEDULE [ID=108] [SID_USER=1] [detail=大阪支店 訪問] [event=出張] [startdate=20240231] "
        "[starttime=1000] 開始日付[20240231]が不正ですが処理を続行しました。",
        "[ERR] TTPR_SCHEDULE [ID=202] [SID_USER=2] [detail=健康診断の説明] [event=来客] [startdate=20240610] "
        "[starttime=1400] 数値型の項目に文字列が指定されたため、登録を行いませんでした。field=[iconno] value=[なし]",
        "[WARN] ファイルの読み込みに失敗しました。ファイル[" + store +
            "data/setubi/plant//3/info]errno[2]エラー詳細[No such file or directory]",
        "[WARN] 添付ファイルの複写に失敗しました。Name=[議事メモ.txt] From=[" + store +
            "file/user/1/schedule/107/議事メモ.txt] To=[" + target +
            "schedule/107/00000000002z/] エラー詳細[No such file or directory]",
    };
    std::vector<std::string> reported = LogLinesWith("[WARN]");
    for (const std::string& line : LogLinesWith("[ERR]")) reported.push_back(line);
    std::sort(reported.begin(), reported.end());
    std::vector<std::string> sorted = expected;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(reported, sorted);
}

TEST_F(ExampleRun, EveryModuleWithDataInTheStoreHasRowsInTheTarget) {
    ASSERT_NE(result_, nullptr);
    // Visitors have no file in the flat store; their tables stay empty.
    const std::vector<std::pair<std::string, std::vector<std::string>>> modules = {
        {"schedules",
         {"TM_SCH_SETTING", "TM_SCH_EVENT", "TM_SCH_PLACE", "TM_SCH_ICON", "TMPR_SCH_SETTING", "TMPR_SCH_EVENT",
          "TMPR_SCH_PLACE", "TMPR_ACCESS_ALL", "TMPR_ACCESS_GROUP", "TMPR_ACCESS_USER", "TT_SCHEDULE",
          "TT_SCH_REPDATE", "TT_ATTACH_SCHEDULE", "TT_SCHEDULE_OTHERTO", "TT_SCHEDULE_USERINFO", "TTPR_ALARM"}},
        {"facilities",
         {"TM_PLT_SETTING", "TM_PLT_EVENT", "TM_PLT_GROUP", "TM_PLANT", "TM_ACCPLT_ALL", "TM_ACCPLT_GROUP",
          "TM_ACCPLT_USER", "TMPR_PLT_SETTING", "TMPR_PLTMST_CSVINDEX"}},
        {"alarms", {"TM_ALM_SETTING", "TMPR_ALM_SETTING", "TMPR_AGENT", "TM_SCHEDULER"}},
        {"minutes",
         {"TM_AGENDA_SETTING", "TMPR_AGENDA_SETTING", "TT_AGENDA", "TT_AGENDA_TOPIC", "TT_AGENDA_MEMBER",
          "TT_ATTACH_AGENDA", "TT_INDEX_AGENDA_TOPIC"}},
    };
    for (const auto& [module, tables] : modules)
        for (const std::string& table : tables)
            EXPECT_NE(Kiv("SELECT count(*) FROM " + table), "0") << module << ": " << table;
    // The administrators of both modules and the index rows of icons, facility
    // groups, facilities and minutes.
    EXPECT_EQ(Kiv("SELECT count(*) FROM TM_RMODULE_ASSIGNUSER"), "5");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TM_INDEX"), "4");
}

TEST_F(ExampleRun, WhatTheFaultsLeaveOutIsOnlyWhatTheyName) {
    ASSERT_NE(result_, nullptr);
    // Users' entries 101-107 and 110 in three owners, 201, 301, group 401,
    // personal group 501, reservations 601-603: all but 108 and 202.
    EXPECT_EQ(Kiv("SELECT string_agg(ID, ',' ORDER BY ID) FROM TT_SCHEDULE"),
              "00000000002t,00000000002u,00000000002v,00000000002w,00000000002x,00000000002y,00000000002z,"
              "000000000032,00000000005l,00000000008d,0000000000b5,0000000000dx,0000000000gp,0000000000gq,"
              "0000000000gr");
    EXPECT_EQ(Kiv("SELECT string_agg(otherto_type || ':' || SID_ASSIGN, ',' ORDER BY otherto_type, SID_ASSIGN)"
                  " FROM TT_SCHEDULE_OTHERTO WHERE ID = '000000000032'"),
              "1:1,1:2,2:1");
    // The facility without a record keeps its number's gap; its neighbours are there.
    EXPECT_EQ(Kiv("SELECT string_agg(ID::text || ':' || name, ',' ORDER BY ID) FROM TM_PLANT"), "1:第1会議室,2:応接室");
    // The gone file keeps its row; the others arrive byte for byte.
    EXPECT_EQ(Kiv("SELECT string_agg(filename, ',' ORDER BY filename) FROM TT_ATTACH_SCHEDULE"
                  " WHERE ID = '00000000002z'"),
              "提案資料.pdf,見積書.txt,議事メモ.txt");
    const std::string store = kSource + "/examples/store/file/";
    const std::string target = *dir_ / "target/file/1/";
    EXPECT_EQ(ReadFile(target + "schedule/107/00000000002z/見積書.txt"),
              ReadFile(store + "user/1/schedule/107/" + Euc("見積書.txt")));
    EXPECT_FALSE(Exists(target + "schedule/107/00000000002z/議事メモ.txt"));
    EXPECT_EQ(ReadFile(target + "schedule/icon/48/juyo.png"), ReadFile(store + "schedule/icon/48/juyo.png"));
    EXPECT_EQ(Kiv("SELECT count(*) FROM TT_AGENDA WHERE entryname = '山田 太郎'"), "2");
}

}  // namespace
