// Stage A against the test cluster: the writers' key map, number check,
// duplicate-column repair and retry list; the index, owner and access-right
// frames with their rollback and walk-again rules; and a create run whose
// stage A fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStdAcc.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStdAttach.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdIndex.h"
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantManage.h"
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"
#include "StdRun.h"

using namespace testsupport;

namespace {

const std::string kSource = CONV_SOURCE_DIR;
class StageATest : public StdRunTest {
protected:
    StageATest() : StdRunTest("stagea_test") {}

    void SetUp() override {
        StdRunTest::SetUp();
        EntSql("CREATE TABLE t_set (ROWCOUNT integer, save integer, memo varchar, num integer UNIQUE);"
               "CREATE TABLE t_rec (ID integer PRIMARY KEY, name varchar, num integer);"
               "CREATE TABLE t_own (SID_USER integer, name varchar, num integer);"
               "CREATE TABLE t_att (sid_attach integer, filename varchar UNIQUE, dispname varchar, mimetype varchar);");
        conn_ = app_.EntConnection();
        ASSERT_EQ(conn_->SetTransactional(false), 0);
    }

    static ConvRow Record(std::initializer_list<std::pair<const char*, const char*>> items) {
        ConvRow row;
        for (const auto& [name, value] : items) AddColumn(name, value, kRowTypeText, row);
        return row;
    }
    static void List(ConvRow& row, const char* name, std::vector<std::string> entries) {
        AddColumn(name, nullptr, kRowTypeList, row);
        row.back()->list = std::move(entries);
    }

    CdDBConnection* conn_ = nullptr;
};

TEST_F(StageATest, KeyMapAndNumberCheck) {
    ConvDBEntryStdGen writer(&app_, conn_);

    // Unmapped keys leave no trace; an empty value adds no column.
    ConvRow record = Record({{"row", "5"}, {"unknown", "zzz"}, {"save", ""}});
    EXPECT_EQ(writer.Entry("t_set", record), 0);
    EXPECT_EQ(writer.GetSql(), "INSERT INTO t_set (ROWCOUNT) VALUES (5)");
    EXPECT_FALSE(LogHas("unknown"));
    EXPECT_EQ(app_.StatusWord(), 0);

    ConvRow text = Record({{"row", "abc"}});
    EXPECT_EQ(writer.Entry("t_set", text), 1);
    EXPECT_TRUE(LogHas("数値型の項目に文字列が指定されたため、登録を行いませんでした。field=[row] value=[abc]"));
    // A tolerated refusal leaves the run warned, not failed.
    EXPECT_EQ(app_.StatusWord(), 1);

    ConvRow blank = Record({{"row", "12 "}}), negative = Record({{"row", "-12"}});
    EXPECT_EQ(writer.Entry("t_set", blank), 1);
    EXPECT_TRUE(LogHas("field=[row] value=[12 ]"));
    EXPECT_EQ(writer.Entry("t_set", negative), 0);

    // The check looks at every item before the key map: a number item the map
    // doesn't carry still refuses its row.
    ConvRow badId;
    AddColumn("ID", "x1", kRowTypeNumber, badId);
    AddColumn("row", "7", kRowTypeText, badId);
    EXPECT_EQ(writer.Entry("t_set", badId), 1);
    EXPECT_TRUE(LogHas("field=[ID] value=[x1]"));

    EXPECT_EQ(Ent("SELECT string_agg(ROWCOUNT::text, ',' ORDER BY ROWCOUNT) FROM t_set"), "-12,5");
}

TEST_F(StageATest, KeyGivenTwiceIsInsertedOnceAfterRollbackFirstValueWins) {
    ASSERT_EQ(conn_->SetTransactional(true), 0);
    ConvDBEntryStd writer(&app_, conn_);
    writer.MapKey("memo", "memo");
    writer.MapKey("n", "num");
    writer.AddKey("num", "");
    ConvRow record = Record({{"memo", "first"}, {"n", "1"}, {"memo", "second"}});
    EXPECT_EQ(writer.Entry("t_set", record), 0);
    ASSERT_EQ(conn_->Commit(), 0);
    EXPECT_EQ(Ent("SELECT count(*) || ':' || max(memo) FROM t_set"), "1:first");
    EXPECT_TRUE(LogHas("[WARN] t_set [num=1] 列の重複エラーが発生しましたが重複列を削除して再登録しました。"));
    EXPECT_EQ(app_.StatusWord(), 1);
}

TEST_F(StageATest, RetryListAnswersTwoForAStatementThatFailedBefore) {
    ConvDBEntryStdEnableRetry writer(&app_, conn_);
    writer.MapKey("n", "num");
    ConvRow first = Record({{"n", "1"}}), again = Record({{"n", "1"}});
    EXPECT_EQ(writer.Entry("t_set", first), 0);
    EXPECT_EQ(writer.Entry("t_set", again), 1);  // unique key, tolerated, listed
    EXPECT_FALSE(app_.IsRetryListEmpty());
    EXPECT_EQ(writer.Entry("t_set", again), 2);  // not run again
    app_.ClearRetryList();
    EXPECT_EQ(writer.Entry("t_set", again), 1);
    EXPECT_EQ(Ent("SELECT count(*) FROM t_set"), "1");
}

TEST_F(StageATest, AttachmentRowsFollowTheirListsAndPassOverListedStatements) {
    ConvDBEntryStdAttach writer(&app_, conn_, false);
    ConvRow record = Record({{"title", "x"}});
    List(record, "attach", {"a.txt", "b.txt", "a.txt", "c.txt"});
    List(record, "attachdisp", {"A", "B"});
    List(record, "mimetype", {"text/plain"});
    // Automatic commit: the refused third row is left out and the walk goes on.
    EXPECT_EQ(writer.InsertAttach("t_att", record), 0);
    EXPECT_EQ(Ent("SELECT string_agg(sid_attach || filename || coalesce(dispname, '-') || coalesce(mimetype, '-'),"
                    " ',' ORDER BY sid_attach) FROM t_att"),
              "1a.txtAtext/plain,2b.txtB-,4c.txt--");
    EXPECT_TRUE(LogHas("[WARN] t_att [dispname=] [sid_attach=3] 重複エラーが発生しましたが処理を続行しました。"));

    // In a transaction the refusal ends the walk; the walk again passes over it.
    ASSERT_TRUE(TestCluster().Exec(ent_, "DELETE FROM t_att"));
    app_.ClearRetryList();
    ASSERT_EQ(conn_->SetTransactional(true), 0);
    EXPECT_EQ(writer.InsertAttach("t_att", record), 1);
    ASSERT_EQ(conn_->Rollback(1), 0);
    EXPECT_EQ(writer.InsertAttach("t_att", record), 0);
    ASSERT_EQ(conn_->Commit(), 0);
    EXPECT_EQ(Ent("SELECT string_agg(sid_attach::text, ',' ORDER BY sid_attach) FROM t_att"), "1,2,4");
}

// An index conversion of t_rec, with ID and name mapped.
class RecIndex : public ConvExStdIndex {
public:
    explicit RecIndex(ConvAppStd* app) : ConvExStdIndex(app, false, "data/rec/index", "t_rec", 9, "001") {}
    int32_t SetUpWriter(ConvDBEntryStd* writer) override {
        writer->MapKey("ID", "ID");
        writer->MapKey("name", "name");
        return 0;
    }
};

TEST_F(StageATest, IndexWritesItsIndexRowAndRecordsButNothingWhenLastIdIsZero) {
    Store("data/rec/1/info", "object 1\nname=一\nend\n");
    Store("data/rec/index", "a=1\n_lastid=0\n");
    {
        RecIndex conv(&app_);
        EXPECT_EQ(RunA(conv), 0);
    }
    EXPECT_EQ(Ent("SELECT count(*) FROM t_rec"), "0");
    EXPECT_EQ(Ent("SELECT count(*) FROM TM_INDEX"), "0");

    // Entry 2 has no record file: passed over with a warning.
    Store("data/rec/index", "a=1\nb=2\nc=3\n_lastid=3\n");
    Store("data/rec/3/info", "object 77\nname=三\nend\n");
    {
        RecIndex conv(&app_);
        EXPECT_EQ(RunA(conv), 0);
    }
    EXPECT_EQ(Ent("SELECT string_agg(ID || name, ',' ORDER BY ID) FROM t_rec"), "1一,3三");
    EXPECT_EQ(Ent("SELECT SID_MODULE || SUBCODE || ':' || lastid FROM TM_INDEX"), "9001:3");
    EXPECT_EQ(app_.StatusWord(), 1);
}

// An owner conversion of each user's "list" file into t_own; num is numeric.
class OwnList : public ConvExStdStackIndex {
public:
    OwnList(ConvAppStd* app, bool transactional)
        : ConvExStdStackIndex(app, transactional, "list", "t_own", "data/user/index") {}
    struct Writer : ConvDBEntryStd {
        using ConvDBEntryStd::ConvDBEntryStd;
        bool IsNumberField(const char* name) override { return std::string(name) == "num"; }
    };
    std::unique_ptr<ConvDBEntryStd> NewWriter() override { return std::make_unique<Writer>(app, connection); }
    int32_t SetUpWriter(ConvDBEntryStd* writer) override {
        writer->MapKey("name", "name");
        writer->MapKey("num", "num");
        return ConvExStdStackIndex::SetUpWriter(writer);
    }
};

TEST_F(StageATest, UnreadableOwnerIsPassedOverAndTransactionalOwnerRollsBackWhole) {
    Store("data/user/index", "u=1\nu=2\nu=3\nu=4\n_lastid=4\n");
    Store("data/user/1/list", "name=before any object\n");  // unreadable
    Store("data/user/2/list", "object 1\nname=two\nend\n");
    Store("data/user/3/list", "object 1\nname=kept?\nend\nobject 2\nname=bad\nnum=abc\nend\n");
    Store("data/user/4/list", "object 1\nname=four\nend\n");
    // user 5 in no index, user 4 without trouble; user 3's second row is refused.
    {
        OwnList conv(&app_, true);
        EXPECT_EQ(RunA(conv), 0);
    }
    // Owner 3's first row went in and was rolled back with the owner.
    EXPECT_EQ(Ent("SELECT string_agg(SID_USER || name, ',' ORDER BY SID_USER) FROM t_own"), "2two,4four");
    EXPECT_TRUE(LogHas("field=[num] value=[abc]"));
    EXPECT_EQ(app_.StatusWord(), 1);

    // Without a transaction the refused row alone is left out.
    ASSERT_TRUE(TestCluster().Exec(ent_, "DELETE FROM t_own"));
    {
        OwnList conv(&app_, false);
        EXPECT_EQ(RunA(conv), 0);
    }
    EXPECT_EQ(Ent("SELECT string_agg(SID_USER || name, ',' ORDER BY SID_USER) FROM t_own"), "2two,3kept?,4four");
}

// Personal schedule rights of each user (data/user/<id>/schacc).
class SchAcc : public ConvExStdStackIndex {
public:
    explicit SchAcc(ConvAppStd* app) : ConvExStdStackIndex(app, true, "schacc", "TMPR_ACCESS", "data/user/index") {}
    std::unique_ptr<ConvDBEntryStd> NewWriter() override {
        return std::make_unique<ConvDBEntryStdAccSch>(app, connection, ownerId.c_str(), 1);
    }
    int32_t SetUpWriter(ConvDBEntryStd*) override { return 0; }
};

TEST_F(StageATest, AccessRightsWalkAgainAfterRollbackAndDropDeletedIds) {
    Store("data/user/index", "u=1\nu=2\n_lastid=2\n");
    Store("data/group/index", "g=3\ng=5\n_lastid=5\n");
    // User 1: group 3 given twice; the second refusal rolls the owner back, the
    // walk again passes over it, so the first value wins.
    Store("data/user/1/schacc",
          "object 1\naccesskind=2\nobject group\ng=3\ng=3\nend\nobject gaccess\na=1\na=4\nend\nend\n");
    // User 2: personal group -5, deleted group 7 and user 99, a short gaccess list.
    Store("data/user/2/schacc",
          "object 1\nobject group\ng=-5\ng=7\ng=5\ng=3\nend\nobject gaccess\na=2\na=2\na=2\nend\n"
          "object user\nu=1\nu=99\nend\nobject uaccess\na=1\na=1\nend\nend\n");
    {
        SchAcc conv(&app_);
        EXPECT_EQ(RunA(conv), 0);
    }
    auto rows = [&](const char* table) {
        return Ent(std::string("SELECT string_agg(ID || ':' || SID_ASSIGN || '=' || accesskind, ',' ORDER BY ID,"
                                 " SID_ASSIGN) FROM ") + table);
    };
    EXPECT_EQ(Ent("SELECT string_agg(SID_MODULE || ':' || ID || '=' || accesskind, ',' ORDER BY ID)"
                    " FROM TMPR_ACCESS_ALL"),
              "1:1=2,1:2=3");
    EXPECT_EQ(rows("TMPR_ACCESS_GROUP"), "1:3=1,2:5=2");
    EXPECT_EQ(rows("TMPR_ACCESS_PRGROUP"), "2:5=2");
    EXPECT_EQ(rows("TMPR_ACCESS_USER"), "2:1=1");
    EXPECT_FALSE(LogHas("99"));
    EXPECT_FALSE(LogHas("=7]"));
}

TEST_F(StageATest, AdministratorStepsFillTheirTables) {
    Store("data/group/nogroup/setubi/admin", "a=5\na=6\n");
    Store("data/group/index", "g=3\ng=4\n_lastid=4\n");
    Store("data/group/3/info", "object 3\nName=営業\nend\n");
    Store("data/group/4/info", "object 4\nName=総務\nend\n");
    Store("data/group/3/setubi/admin", "a=7\n");
    Store("data/group/4/agenda/admin", "a=8\na=9\n");
    Store("data/user/index", "_lastid=0\n");  // the owner steps of every module need it
    ConvBatSchStd bat(&app_);
    EXPECT_EQ(bat.RunPrepare(), 0);
    EXPECT_EQ(Ent("SELECT string_agg(ID::text, ',' ORDER BY ID) FROM TM_PLT_ADMIN_COMMON"), "5,6");
    EXPECT_EQ(Ent("SELECT string_agg(SID_GROUP || ':' || ID, ',') FROM TM_PLT_ADMIN_GROUP"), "3:7");
    EXPECT_EQ(Ent("SELECT count(*) FROM TM_AGENDA_COMMON"), "0");
    EXPECT_EQ(Ent("SELECT string_agg(SID_GROUP || ':' || ID, ',' ORDER BY ID) FROM TM_AGENDA_ADMIN_GROUP"),
              "4:8,4:9");
    EXPECT_EQ(app_.StatusWord(), 0);
}

// ------------------------------------------------------------ a create run

TEST(StageARun, FailingStepStopsTheRunBeforeStageB) {
    TempDir dir;
    MakeDirs(dir / "conv/log");
    PgCluster& c = TestCluster();
    for (const char* db : {"stagea_ent", "stagea_kiv"}) ASSERT_TRUE(c.CreateDatabase(db));
    ASSERT_TRUE(c.Exec("stagea_ent", ReadFile(kSource + "/schema/ent.sql") + "DROP TABLE TM_PLT_ADMIN_COMMON;"));
    WriteFile(dir / "store/data/group/nogroup/setubi/admin", "a=5\n");
    WriteFile(dir / "store/data/group/index", "g=3\n_lastid=3\n");
    WriteFile(dir / "store/data/group/3/setubi/admin", "a=6\n");
    WriteFile(dir / "store/data/user/index", "_lastid=0\n");
    Args args({"convsch", dir.Path(), "0", "create", dir / "store", c.Host(), c.PortText(), c.User(), c.Password(),
               dir / "target", c.Host(), c.PortText(), c.User(), c.Password(), "stagea_ent", "stagea_kiv"});
    ChildResult r = RunInChild(RunProgram, &args);

    EXPECT_EQ(r.status, 253);
    EXPECT_EQ(StatusValue(dir / "conv/sch.sts", "status"), "3");
    const std::vector<std::string> log = LogLines(dir / "conv/log/sch.log");
    auto has = [&](const std::string& part) {
        return std::any_of(log.begin(), log.end(), [&](const std::string& l) { return l.find(part) != std::string::npos; });
    };
    EXPECT_TRUE(has("[ERR] TM_PLT_ADMIN_COMMON [ID=5] データベースエラーが発生したため処理を中断しました。"));
    EXPECT_TRUE(has("移行を中断しました。"));
    // A16 never ran, and stage B never began.
    EXPECT_EQ(c.QueryValue("stagea_ent", "SELECT count(*) FROM TM_PLT_ADMIN_GROUP").value_or(""), "0");
    EXPECT_FALSE(has("設備予約所属管理者"));
}

}  // namespace
