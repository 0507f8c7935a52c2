// Minutes and visitors against the test cluster: stage A from a flat store
// into the working database, stage B from working rows into the target, with
// the files of the minutes copied into the target tree.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convagenda/ConvExEntAgenda.h"
#include "MakeConvEToKiv/convcom/ConvDBRead.h"
#include "MakeConvEToKiv/convvisitor/ConvExEntVisitor.h"
#include "MakeConvSToKiv/convstdagenda/ConvExStdAgendaAgenda.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "PgCluster.h"
#include "ShippedRun.h"
#include "TestSupport.h"
#include "database/CdDBConnection.h"

using namespace testsupport;

namespace {

const std::string kSource = CONV_SOURCE_DIR;
constexpr const char* kEnt = "agenda_ent";
constexpr const char* kKiv = "agenda_kiv";

class AgendaTest : public ::testing::Test {
protected:
    AgendaTest()
        : args_(ClusterRunArgs(dir_.Path(), "create", dir_ / "store", dir_ / "target", kEnt, kKiv)),
          app_(args_.Argc(), args_.Argv(), "sch") {}

    // The settings' directory unit of the target tree.
    virtual const char* DirUnit() const { return "1000"; }

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(PrepareShippedRun(dir_.Path(), kEnt, kKiv));
        MakeDirs(dir_ / "store/data/user");
        WriteFile(dir_ / "target/data/app", std::string("maxdir=") + DirUnit() + "\ndbdirfile=" + (dir_ / "kivfile/") + "\n");
        Store("data/user/index", "a=1\nb=2\n_lastid=2\n");
        Store("data/user/1/info", "object 1\nName=山田\nKana=ヤマダ\nend\n");
        Store("data/user/2/info", "object 2\nName=佐藤\nKana=サトウ\nend\n");
        ASSERT_EQ(app_.Init("label"), 0);
        ASSERT_EQ(app_.EntConnection()->SetTransactional(false), 0);
    }
    void TearDown() override {
        app_.End();
        if (HasFailure()) std::printf("%s", ReadFile(dir_ / "conv/log/sch.log").c_str());
    }

    void Store(const std::string& path, const std::string& utf8) { WriteFile(dir_ / ("store/" + path), Euc(utf8)); }
    void Ent(const std::string& sql) {
        std::string error;
        ASSERT_TRUE(TestCluster().Exec(kEnt, sql, &error)) << error;
    }
    std::string EntValue(const std::string& sql) { return TestCluster().QueryValue(kEnt, sql).value_or("<null>"); }
    std::string Kiv(const std::string& sql) { return TestCluster().QueryValue(kKiv, sql).value_or("<null>"); }
    bool LogHas(const std::string& part) const {
        for (const std::string& line : Lines(ReadFile(dir_ / "conv/log/sch.log")))
            if (line.find(part) != std::string::npos) return true;
        return false;
    }
    int32_t StageA(ConvExStd&& conv) {
        const int32_t ret = conv.OpenSource();
        return ret != 0 ? ret : conv.Convert();
    }

    TempDir dir_;
    Args args_;
    ConvAppStd app_;
};

// A directory unit far from the store's fixed 30,000.
class AgendaUnit7Test : public AgendaTest {
protected:
    const char* DirUnit() const override { return "7"; }
};

}  // namespace

TEST_F(AgendaUnit7Test, StageAReadsMinutesFromGroupsOf30000WithTopicsFilesMembersAndNames) {
    Store("data/agenda/index", "29999=a\n30000=b\n_lastid=30000\n");
    const std::string longMemo(2001, 'm');
    Store("data/agenda/1/29999/info", "object 29999\nsubject=週次\nstatus=1\nto=x@example.com\nentry=1\n"
                                      "updateuser=9\nsid=77\nmemo=" + longMemo + "\nend\n");
    Store("data/agenda/1/29999/member", "object 4\nName=鈴木\nend\nobject 1\nName=山田\nend\n");
    const std::string longTopic(2100, 't');
    Store("data/agenda/1/29999/topic",
          "object 3\ntitletopic=議題三\nmemo=" + longTopic + "\nformat=<p>$text$</p>\n"
          "object attach\n1=f1.txt\n2=f2.txt\nend\nobject attachdisp\n1=資料.txt\n2=b.txt\nend\nend\n"
          "object 1\ntitletopic=議題一\nend\nobject 2\ntitletopic=議題二\nend\n");
    // Text in a numeric key leaves the whole minutes out, members and topics too.
    Store("data/agenda/2/30000/info", "object 30000\nsubject=壊れ\nentry=abc\nend\n");
    Store("data/agenda/2/30000/member", "object 1\nName=山田\nend\n");
    Store("data/agenda/2/30000/topic", "object 1\ntitletopic=x\nend\n");

    EXPECT_EQ(StageA(ConvExStdAgendaAgenda(&app_, "data/agenda/index", "TT_AGENDA")), 0);

    EXPECT_EQ(EntValue("SELECT string_agg(ID::text, ',' ORDER BY ID) FROM TT_AGENDA"), "29999");
    EXPECT_TRUE(LogHas("数値型の項目に文字列が指定されたため、登録を行いませんでした。field=[entry] value=[abc]"));
    EXPECT_EQ(EntValue("SELECT concat_ws('|', subject, STATUS, mailto, sid, entryname, entrykana, updname, updkana,"
                       " length(memo)) FROM TT_AGENDA WHERE ID = 29999"),
              "週次|1|x@example.com|77|山田|ヤマダ|2000");
    EXPECT_TRUE(LogHas("[memo]の値が桁数オーバーとなるため、[2000]文字でカットして登録しました。"));
    // The editor 9 is unknown: no names, no message about it.
    EXPECT_FALSE(LogHas("[9]"));
    EXPECT_EQ(EntValue("SELECT string_agg(agnid || ':' || SEQNO || ':' || name, ',' ORDER BY agnid, SEQNO)"
                       " FROM TT_AGENDA_MEMBER"),
              "29999:1:鈴木,29999:2:山田");
    EXPECT_EQ(EntValue("SELECT string_agg(ID || ':' || titletopic || ':' || coalesce(length(memo), 0), ','"
                       " ORDER BY ID) FROM TT_AGENDA_TOPIC WHERE agnid = 29999 AND SID_CORPORATE = 1"),
              "1:議題一:0,2:議題二:0,3:議題三:2100");
    EXPECT_EQ(EntValue("SELECT count(*) FROM TT_AGENDA_TOPIC WHERE agnid = 30000"), "0");
    EXPECT_EQ(EntValue("SELECT string_agg(concat_ws(':', agnid, ID, SID_ATTACH, filename, dispname), ','"
                       " ORDER BY SID_ATTACH) FROM TT_ATTACH_AGENDA_TOPIC"),
              "29999:3:1:f1.txt:資料.txt,29999:3:2:f2.txt:b.txt");
    // The last topic read, not the largest id.
    EXPECT_EQ(EntValue("SELECT string_agg(ID || '=' || lastid, ',') FROM TT_INDEX_AGENDA_TOPIC"), "29999=2");
    EXPECT_EQ(EntValue("SELECT lastid FROM TM_INDEX WHERE SID_MODULE = 26 AND SUBCODE = '001'"), "30000");
    EXPECT_EQ(app_.StatusWord(), 1);
}

TEST_F(AgendaTest, OpenListWithoutLastIdWritesNothingAndTheFinishedListStillConverts) {
    Store("data/agenda/index", "5=a\n");  // entries, but _lastid 0
    Store("data/agenda/1/5/info", "object 5\nsubject=open\nend\n");
    Store("data/agenda/indexend", "6=a\n7=b\n");
    // The record's own name stays; the look-up's other name joins it.
    Store("data/agenda/1/6/info", "object 6\nsubject=done\nentry=2\nentryname=旧姓\nend\n");
    Store("data/agenda/1/7/info", "object 7\nsubject=no topics\nend\n");
    Store("data/agenda/1/6/topic", "object 8\ntitletopic=t\nend\n");

    EXPECT_EQ(StageA(ConvExStdAgendaAgenda(&app_, "data/agenda/index", "TT_AGENDA")), 0);
    EXPECT_EQ(EntValue("SELECT count(*) FROM TT_AGENDA"), "0");
    EXPECT_EQ(EntValue("SELECT count(*) FROM TM_INDEX"), "0");

    EXPECT_EQ(StageA(ConvExStdAgendaAgendaEnd(&app_, "data/agenda/indexend", "TT_AGENDA")), 0);
    EXPECT_EQ(EntValue("SELECT string_agg(concat_ws(':', ID, entryname, entrykana), ',' ORDER BY ID) FROM TT_AGENDA"),
              "6:旧姓:サトウ,7");
    EXPECT_EQ(EntValue("SELECT count(*) FROM TM_INDEX"), "0");
    EXPECT_EQ(EntValue("SELECT string_agg(ID || '=' || lastid, ',') FROM TT_INDEX_AGENDA_TOPIC"), "6=8");
}

TEST_F(AgendaTest, MinutesTopicsAndMembersReachTheTargetInUtcWithRichText) {
    Ent("INSERT INTO TTPR_SCHEDULE (SID_USER, ID, startdate, starttime, endtime) VALUES (1, 77, '20240110', '0100', '0200');"
        "INSERT INTO TM_AGENDA_SETTING (ROWCOUNT, save, mngrow) VALUES (20, 1, 5);"
        "INSERT INTO TMPR_AGENDA_SETTING (SID_USER, ROWCOUNT, mngrow) VALUES (1, 10, 3);"
        "INSERT INTO TT_AGENDA (ID, subject, sid, schseldate, entrydate, entrytime, updatetime, memo) VALUES"
        " (5, 'linked', '77', '20240110', '20240110', '0830', '0100', 'm'),"
        " (6, 'broken link', 'x7', NULL, NULL, NULL, NULL, NULL),"
        " (7, 'date only', NULL, NULL, '20240110', NULL, NULL, NULL);"
        "INSERT INTO TT_AGENDA_TOPIC (SID_CORPORATE, agnid, ID, memo, format) VALUES"
        " (1, 5, 1, E'a\\r\\nb', NULL), (1, 5, 2, 'x y', '<p>$text$</p>'), (1, 5, 3, NULL, '<p>$text$</p>'),"
        " (1, 6, 1, E'l1\\nl2\\n<&>\"', '<BR><BR><b>$text$</b><i>$text$</i>'), (1, 6, 2, NULL, NULL);"
        "INSERT INTO TT_INDEX_AGENDA_TOPIC (ID, lastid) VALUES (5, 3);"
        "INSERT INTO TT_AGENDA_MEMBER (SID_CORPORATE, agnid, SEQNO, ID, name) VALUES (1, 5, 1, 1, '山田');");

    for (ConvExEnt* conv : std::initializer_list<ConvExEnt*>{
             new ConvExEntAgendaAgendaSetting(&app_), new ConvExEntAgendaPAgendaSetting(&app_),
             new ConvExEntAgendaAgenda(&app_), new ConvExEntAgendaAgendaTopic(&app_),
             new ConvExEntAgendaIndexAgendaTopic(&app_), new ConvExEntAgendaAgendaMember(&app_)}) {
        std::unique_ptr<ConvExEnt> owned(conv);
        EXPECT_EQ(owned->Run(), 0) << owned->TableName();
    }

    EXPECT_EQ(Kiv("SELECT concat_ws('|', rowcount, save, mngrow, length(updtime)) FROM TM_AGENDA_SETTING"),
              "20|1|5|14");
    EXPECT_EQ(Kiv("SELECT concat_ws('|', SID_USER, rowcount, mngrow) FROM TMPR_AGENDA_SETTING"), "1|10|3");
    // The schedule 77 starts at 01:00 local: its selected day is the day before in UTC.
    EXPECT_EQ(Kiv("SELECT concat_ws('|', sid, schseldate, entrydate, entrytime, coalesce(updatedate, '-'), updatetime,"
                  " memo) FROM TT_AGENDA WHERE ID = 5"),
              "000000000025|20240109|20240109|2330|-|1600|m");
    EXPECT_EQ(Kiv("SELECT concat_ws('|', entrydate, coalesce(entrytime, '-')) FROM TT_AGENDA WHERE ID = 7"),
              "20240109|-");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TT_AGENDA WHERE ID = 6"), "0");
    EXPECT_TRUE(LogHas("TT_AGENDA [subject=broken link] スケジュールＩＤ[x7]の作成に失敗しましたが処理を続行しました。"));

    EXPECT_EQ(Kiv("SELECT string_agg(agnid || ':' || ID || '=' || SEQNO, ',' ORDER BY agnid, ID) FROM TT_AGENDA_TOPIC"),
              "5:1=1,5:2=2,5:3=3,6:1=1,6:2=2");
    auto topic = [&](int agnid, int id) {
        return Kiv("SELECT coalesce(memo, '<null>') || '|' || coalesce(format, '<null>') FROM TT_AGENDA_TOPIC"
                   " WHERE agnid = " + std::to_string(agnid) + " AND ID = " + std::to_string(id));
    };
    EXPECT_EQ(topic(5, 1), "<div>a<br />b</div>|a\r\nb");  // plain memo: CR dropped, not escaped
    EXPECT_EQ(topic(5, 2), "<p>x&nbsp;y</p>|x y");
    EXPECT_EQ(topic(5, 3), "<p>&nbsp;</p>|<null>");
    // Leading <BR>s go, a line per marker, the surplus line behind the frame, escaped.
    EXPECT_EQ(topic(6, 1), "<b>l1</b><i>l2</i>&#60;&#38;&#62;&#34;|l1\nl2\n<&>\"");
    EXPECT_EQ(topic(6, 2), "|<null>");

    EXPECT_EQ(Kiv("SELECT ID || '=' || lastid FROM TT_INDEX_AGENDA_TOPIC"), "5=3");
    EXPECT_EQ(Kiv("SELECT concat_ws('|', agnid, SEQNO, ID, name) FROM TT_AGENDA_MEMBER"), "5|1|1|山田");
}

TEST_F(AgendaTest, MinutesFilesAreNumberedPerMinutesRenamedUniquelyAndCopiedUnderTheBucket) {
    Ent("INSERT INTO TT_ATTACH_AGENDA_TOPIC (agnid, ID, SID_ATTACH, filename, dispname, mimetype) VALUES"
        " (29999, 1, 1, 'f1.txt', 'a.txt', 'text/plain'), (29999, 2, 1, 'f2.bin', 'a.txt', NULL),"
        " (30000, 1, 1, 'g1.txt', 'a.txt', NULL), (30000, 1, 2, 'g2', 'a(1).txt', NULL),"
        " (30000, 2, 1, 'g3.txt', 'a.txt', NULL);");
    for (const char* file : {"1/29999/1/f1.txt", "1/29999/2/f2.bin", "2/30000/1/g1.txt", "2/30000/1/g2",
                             "2/30000/2/g3.txt"}) {
        const std::string path = dir_ / ("store/file/agenda/" + std::string(file));
        MakeDirs(path.substr(0, path.rfind('/')));
        WriteFile(path, file);
    }

    ConvExEntAgendaAttachAgenda conv(&app_);
    EXPECT_EQ(conv.Run(), 0);

    EXPECT_EQ(Kiv("SELECT string_agg(concat_ws(':', ID, SID_ATTACH, filename, dispname, mimetype), ','"
                  " ORDER BY ID, SID_ATTACH) FROM TT_ATTACH_AGENDA"),
              "29999:1:attach00001.txt:a.txt:text/plain,29999:2:attach00002.bin:a(1).txt,"
              "30000:1:attach00001.txt:a.txt,30000:2:attach00002:a(1).txt,30000:3:attach00003.txt:a(2).txt");
    EXPECT_TRUE(LogHas("ファイル名が重複するため、変更して登録しました。 [a.txt]->[a(1).txt]"));
    EXPECT_TRUE(LogHas("ファイル名が重複するため、変更して登録しました。 [a.txt]->[a(2).txt]"));
    // The settings' unit of 1,000 buckets the target: 29,999 under 30/, 30,000 under 31/.
    const std::string tree = dir_ / "kivfile/1/agenda/";
    EXPECT_EQ(ReadFile(tree + "30/29999/attach00001.txt"), "1/29999/1/f1.txt");
    EXPECT_EQ(ReadFile(tree + "30/29999/attach00002.bin"), "1/29999/2/f2.bin");
    EXPECT_EQ(ReadFile(tree + "31/30000/attach00002"), "2/30000/1/g2");
    EXPECT_EQ(ReadFile(tree + "31/30000/attach00003.txt"), "2/30000/2/g3.txt");
    EXPECT_EQ(app_.StatusWord(), 1);  // the renames are warnings
}

TEST_F(AgendaTest, ManyFilesOfOneMinutesUseOneSecondConnection) {
    std::string values;
    for (int topic = 1; topic <= 50; ++topic)
        for (int file = 1; file <= 10; ++file)
            values += std::string(values.empty() ? "" : ",") + "(1, " + std::to_string(topic) + ", " +
                      std::to_string(file) + ", 'same.txt')";
    Ent("INSERT INTO TT_ATTACH_AGENDA_TOPIC (agnid, ID, SID_ATTACH, dispname) VALUES " + values + ";"
        "INSERT INTO TT_ATTACH_AGENDA_TOPIC (agnid, ID, SID_ATTACH, dispname) VALUES (2, 1, 1, 'x.txt');");

    ASSERT_EQ(app_.KivConnection()->SetTransactional(false), 0);
    kiv_attachagenda writer(&app_, app_.KivConnection());
    ConvDBRead reader(&app_, app_.EntConnection());
    ASSERT_EQ(reader.OpenQuery(ReadFile(kSource + "/sql/sch/TT_ATTACH_AGENDA.sql").c_str()), 0);
    int rows = 0;
    while (reader.Fetch() == 1) {
        EXPECT_EQ(writer.Entry("TT_ATTACH_AGENDA", reader.Row()), 0);
        ++rows;
    }
    EXPECT_EQ(rows, 501);
    EXPECT_EQ(writer.ConnectCount(), 1);
    EXPECT_EQ(Kiv("SELECT count(DISTINCT dispname) || ':' || max(SID_ATTACH) FROM TT_ATTACH_AGENDA WHERE ID = 1"),
              "500:500");
    EXPECT_EQ(Kiv("SELECT dispname FROM TT_ATTACH_AGENDA WHERE ID = 1 AND SID_ATTACH = 500"), "same(499).txt");
}

TEST_F(AgendaTest, VisitorsKeepTheirScheduleLinkAndABrokenLinkDropsTheRow) {
    Ent("INSERT INTO TM_VIS_SETTING (ROWCOUNT) VALUES (15);"
        "INSERT INTO TM_VIS_PLACE (ID, Name, SEQNO) VALUES (1, '受付', 1), (2, '会議室', 2);"
        "INSERT INTO TM_VIS_RECEPT_PLACE (SID_PLACE, SID_USER) VALUES (1, 5);"
        "INSERT INTO TMPR_VIS_SETTING (SID_USER, ROWCOUNT) VALUES (5, 30);"
        "INSERT INTO TT_VISITOR (ID, SID_SCHEDULE, SID_PLACE, company, name, memo, cretime, updtime) VALUES"
        " (10, '77', 1, '甲社', '田中', 'memo', '20240110093000', '20240110100000'),"
        " (11, NULL, 2, '乙社', '高橋', NULL, NULL, NULL),"
        " (12, 'abc', 2, '丙社', '伊藤', NULL, NULL, NULL);");

    for (ConvExEnt* conv : std::initializer_list<ConvExEnt*>{
             new ConvExEntVisitorVisitorSetting(&app_), new ConvExEntVisitorVisitorPlace(&app_),
             new ConvExEntVisitorVisitorReceptPlace(&app_), new ConvExEntVisitorPVisitorSetting(&app_),
             new ConvExEntVisitorVisitor(&app_)}) {
        std::unique_ptr<ConvExEnt> owned(conv);
        EXPECT_EQ(owned->Run(), 0) << owned->TableName();
    }
    EXPECT_EQ(Kiv("SELECT SID_CORPORATE || ':' || rowcount FROM TM_VIS_SETTING"), "1:15");
    EXPECT_EQ(Kiv("SELECT string_agg(ID || ':' || name || ':' || seqno, ',' ORDER BY ID) FROM TM_VIS_PLACE"),
              "1:受付:1,2:会議室:2");
    EXPECT_EQ(Kiv("SELECT SID_PLACE || ':' || SID_USER FROM TM_VIS_RECEPT_PLACE"), "1:5");
    EXPECT_EQ(Kiv("SELECT SID_USER || ':' || rowcount FROM TMPR_VIS_SETTING"), "5:30");
    EXPECT_EQ(Kiv("SELECT string_agg(concat_ws('|', coalesce(SID_SCHEDULE, '-'), SID_PLACE, company, name, memo), ','"
                  " ORDER BY SID_PLACE) FROM TT_VISITOR"),
              "000000000025|1|甲社|田中|memo,-|2|乙社|高橋");
    EXPECT_EQ(Kiv("SELECT cretime || '|' || updtime FROM TT_VISITOR WHERE SID_PLACE = 1"),
              "20240110003000|20240110010000");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TT_VISITOR"), "2");
    EXPECT_TRUE(LogHas("スケジュールＩＤ[abc]の作成に失敗しましたが処理を続行しました。"));
}
