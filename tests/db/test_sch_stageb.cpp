// Stage B of the schedule module against the test cluster: working rows as
// stage A leaves them go through the shipped queries and the writers into the
// shipped target tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convsch/ConvExEntSchMaster.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchSchedule.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"
#include "ClusterRun.h"
#include "ShippedRun.h"

using namespace testsupport;

namespace {

const std::string kSource = CONV_SOURCE_DIR;
constexpr const char* kEnt = "schb_ent";
constexpr const char* kKiv = "schb_kiv";

class SchStageBTest : public ::testing::Test {
protected:
    SchStageBTest()
        : args_(RunArgs(dir_.Path(), "create", TestCluster().PortText())), app_(args_.Argc(), args_.Argv(), kEnt, kKiv) {}

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(PrepareShippedRun(dir_.Path(), kEnt, kKiv));
        // The installation's settings, messages and tag template.
        ASSERT_EQ(system(("cp -r " + kSource + "/examples/target " + dir_.Path() + "/target").c_str()), 0);
        ASSERT_EQ(app_.Init("label"), 0);
        app_.SetAbortInTransaction(true);
    }
    void TearDown() override { app_.End(); }

    void Ent(const std::string& sql) {
        std::string error;
        ASSERT_TRUE(TestCluster().Exec(kEnt, sql, &error)) << error;
    }
    std::vector<std::string> Kiv(const std::string& sql) { return RowLines(kKiv, sql); }
    template <class Conv>
    int32_t Run() {
        Conv conv(&app_, false);
        return conv.Run();
    }
    // The user log's lines that contain part.
    std::vector<std::string> LogLines(const std::string& part) const {
        std::vector<std::string> out;
        for (const std::string& line : testsupport::LogLines(dir_ / "conv/log/sch.log"))
            if (line.find(part) != std::string::npos) out.push_back(line);
        return out;
    }
    std::string Source(const std::string& rest) const { return dir_ / ("store/file/1/" + rest); }
    std::string Target(const std::string& rest) const { return dir_ / ("target/file/1/" + rest); }

    TempDir dir_;
    Args args_;
    ClusterApp app_;
};

// Columns of a user's entry: owner, id, dates, times, repeat, week days, event.
std::string UserEntry(int user, int id, const char* start, const char* end, const char* startTime,
                      const char* endTime, const char* repeat, const char* weekdays, const char* event) {
    auto q = [](const char* v) { return v ? std::string("'").append(v).append("'") : std::string("NULL"); };
    return "INSERT INTO TTPR_SCHEDULE (SID_USER, ID, startdate, enddate, starttime, endtime, repeat, everyweekday,"
           " event, creuser) VALUES (" +
           std::to_string(user) + ", " + std::to_string(id) + ", " + q(start) + ", " + q(end) + ", " +
           q(startTime) + ", " + q(endTime) + ", " + q(repeat) + ", " + (weekdays ? weekdays : "NULL") + ", " +
           q(event) + ", " + std::to_string(user) + ");";
}

}  // namespace

TEST_F(SchStageBTest, EveryKindOfScheduleArrivesWithBase36IdsInUtc) {
    Ent(UserEntry(7, 1, "20130101", "20130101", "0800", "1000", nullptr, nullptr, "plain") +
        // Monthly and yearly entries keep their dates; the shift lives in the times.
        UserEntry(7, 35, "20120105", "20121231", "0800", "0900", "m", nullptr, "monthly") +
        UserEntry(7, 44, "20120105", "20121231", "0800", "0700", "y", nullptr, "yearly over midnight") +
        // Weekly at 01:00 local is the day before in UTC: dates and week days move back.
        UserEntry(7, 36, "20120403", "20120430", "0100", "0200", "w", "100000", "weekly") +
        // A daily 22:00 to 24:30 keeps its end date.
        UserEntry(7, 37, "20120601", "20120610", "2200", "2430", "d", nullptr, "daily late") +
        UserEntry(7, 38, "20120601", "20120601", "2200", "2430", nullptr, nullptr, "late, once") +
        UserEntry(7, 39, "20120601", "20120601", "2400", nullptr, nullptr, nullptr, "start 2400") +
        UserEntry(7, 40, "20120601", nullptr, nullptr, nullptr, nullptr, nullptr, "no end") +
        UserEntry(7, 41, "20120601", "21000101", nullptr, nullptr, nullptr, nullptr, "past 2099") +
        UserEntry(7, 42, "20120601", "20991231", nullptr, nullptr, nullptr, nullptr, "end 2099") +
        UserEntry(7, 43, "20120301", "20120301", "0800", "0900", nullptr, nullptr, "leap day") +
        // A date list with its own repeat word, and an unknown word without dates.
        UserEntry(7, 45, "20120403", "20120410", "0100", "0130", "1", nullptr, "listed") +
        UserEntry(7, 46, "20120403", "20120410", "0100", "0130", "q", nullptr, "unknown repeat") +
        "INSERT INTO TTPR_SCH_REPDATE VALUES (1, 7, 45, 20120403, 0), (1, 7, 45, 20120410, 0),"
        " (1, 7, 45, 20120410, 1);"
        "UPDATE TTPR_SCHEDULE SET cretime = '20120301085959' WHERE ID = 1;");

    ASSERT_EQ(Run<ConvExEntSchSchedule>(), 0);
    EXPECT_EQ(Kiv("SELECT ID, startdate, enddate, starttime, endtime, repeat, everyweekday, visitor, event"
                  " FROM TT_SCHEDULE ORDER BY ID"),
              (std::vector<std::string>{
                  "000000000001|20121231|20130101|2300|0100|-|-|0|plain",
                  "00000000000z|20120105|20121231|-0100|0000|m|-|0|monthly",
                  "000000000010|20120402|20120429|1600|1700|w|1000000|0|weekly",
                  "000000000011|20120601|20120610|1300|1530|d|-|0|daily late",
                  "000000000012|20120601|20120601|1300|1530|-|-|0|late, once",
                  "000000000013|20120601|20120601|1455|-|-|-|0|start 2400",
                  "000000000014|20120601|20371231|-|-|-|-|0|no end",
                  "000000000015|20120601|20991231|-|-|-|-|0|past 2099",
                  "000000000016|20120601|20991231|-|-|-|-|0|end 2099",
                  "000000000017|20120229|20120301|2300|0000|-|-|0|leap day",
                  "000000000018|20120105|20121231|-0100|2200|y|-|0|yearly over midnight",
                  "000000000019|20120402|20120409|1600|1630|r|-|0|listed",
              }));
    // The stamp is shifted; a missing one is the conversion's time in UTC.
    EXPECT_EQ(Kiv("SELECT cretime FROM TT_SCHEDULE WHERE ID = '000000000001'"),
              std::vector<std::string>{"20120229235959"});
    EXPECT_EQ(Kiv("SELECT count(*) FROM TT_SCHEDULE WHERE length(cretime) = 14 AND cretime = updtime"),
              std::vector<std::string>{"12"});
    // The unknown repeat word is left out with its keys, and the run knows it.
    const std::vector<std::string> dropped = LogLines("unknown repeat");
    ASSERT_EQ(dropped.size(), 1u);
    EXPECT_NE(dropped[0].find("[LOG_SCH_ID=46]"), std::string::npos) << dropped[0];
    EXPECT_NE(dropped[0].find("開始日時、終了日時のタイムゾーン変換に失敗しましたが処理を続行しました。"),
              std::string::npos);
    EXPECT_EQ(app_.StatusWord(), 1);

    // Listed days move with the schedule's start time, both lists kept.
    ASSERT_EQ(Run<ConvExEntSchSchRepdate>(), 0);
    EXPECT_EQ(Kiv("SELECT ID, SID_ASSIGN, deldates FROM TT_SCH_REPDATE ORDER BY 1, 2, 3"),
              (std::vector<std::string>{"000000000019|20120402|0", "000000000019|20120409|0",
                                        "000000000019|20120409|1"}));
}

TEST_F(SchStageBTest, OneScheduleInThreeOwnersFilesIsOneRowWithThreeDestinations) {
    // User 8 made it; it stands in user 7's and user 8's files and in group 3's.
    Ent("INSERT INTO TTPR_SCHEDULE (SID_USER, ID, startdate, starttime, endtime, event, creuser, memo, alarm,"
        " alarmtime, alarmcnt, cretime) VALUES"
        " (7, 500, '20240110', '0930', '1030', '会議', 8, 'copy of 7', '1', 15, 1, '20240101120000'),"
        " (8, 500, '20240110', '0930', '1030', '会議', 8, 'made by 8', NULL, NULL, NULL, '20240101120000');"
        "INSERT INTO TT_SCH_GROUP (SID_GROUP, ID, startdate, starttime, endtime, event, creuser, memo) VALUES"
        " (3, 500, '20240110', '0930', '1030', '会議', 8, 'copy of group 3');"
        "INSERT INTO TTPR_SCH_GROUP (SID_USER, SID_PRGROUP, ID, startdate, event, creuser) VALUES"
        " (7, 2, 501, '20240111', '個人グループ', 7);");

    ASSERT_EQ(Run<ConvExEntSchSchedule>(), 0);
    EXPECT_EQ(Kiv("SELECT ID, memo, startdate, starttime FROM TT_SCHEDULE ORDER BY ID"),
              (std::vector<std::string>{"0000000000dw|made by 8|20240110|0030",
                                        "0000000000dx|-|20240111|-"}));
    ASSERT_EQ(Run<ConvExEntSchScheduleOtherTo>(), 0);
    EXPECT_EQ(Kiv("SELECT ID, otherto_type, SID_USER, SID_ASSIGN, startdate, enddate FROM TT_SCHEDULE_OTHERTO"
                  " ORDER BY 1, 2, 3, 4"),
              (std::vector<std::string>{"0000000000dw|1|0|7|20240110|20371231", "0000000000dw|1|0|8|20240110|20371231",
                                        "0000000000dw|2|0|3|20240110|20371231",
                                        "0000000000dx|3|7|2|20240111|20371231"}));

    // Each user's own copy gives the user's information; user 7's alarm goes
    // out 15 minutes before the start, in UTC.
    ASSERT_EQ(Run<ConvExEntSchScheduleUserInfo>(), 0);
    EXPECT_EQ(Kiv("SELECT ID, SID_ASSIGN, alarm, alarmtime, alarmcnt FROM TT_SCHEDULE_USERINFO ORDER BY 1, 2"),
              (std::vector<std::string>{"0000000000dw|7|1|15|1", "0000000000dw|8|-|-|-"}));
    EXPECT_EQ(Kiv("SELECT SID_USER, ID, SID_MENU, DID, SENDTIME, STATUS, NAME, OBJID FROM TTPR_ALARM"),
              std::vector<std::string>{"7|1|1|0000000000dw|20240110001500|0|会議|"
                                       "qkiv.{{ext}}?cmd=schindex#cmd=schreferdtl&sid=0000000000dw&seldate="});
    EXPECT_EQ(Kiv("SELECT count(*) FROM TTPR_TAG"), std::vector<std::string>{"0"});
    EXPECT_EQ(app_.StatusWord(), 0);
}

TEST_F(SchStageBTest, AttachedFilesAreCopiedUnderTheOldIdAndTheNewOne) {
    // Entry 1234567 of user 7 has three files: one stored under its EUC-JP
    // name, one under its Shift_JIS name, and one that is missing.
    Ent("INSERT INTO TTPR_SCHEDULE (SID_USER, ID, startdate, event, creuser) VALUES (7, 1234567, '20240110', 'x', 7);"
        "INSERT INTO TTPR_ATTACH_SCHEDULE VALUES (1, 7, 1234567, 1, '議事録.txt', '議事録', 'text/plain'),"
        " (1, 7, 1234567, 2, '資料.pdf', '資料', 'application/pdf'),"
        " (1, 7, 1234567, 3, 'gone.txt', 'gone', 'text/plain');");
    const std::string dir = "user/1/7/schedule/1234567/";
    WriteFile(Source(dir + Euc("議事録.txt")), "minutes\n");
    WriteFile(Source(dir + "\x8E\x91\x97\xBF.pdf"), std::string("%PDF\0\x01\xff", 7));

    ASSERT_EQ(Run<ConvExEntSchAttachSchedule>(), 0);
    EXPECT_EQ(Kiv("SELECT ID, SID_ATTACH, filename, dispname FROM TT_ATTACH_SCHEDULE ORDER BY 2"),
              (std::vector<std::string>{"00000000qglj|1|議事録.txt|議事録", "00000000qglj|2|資料.pdf|資料",
                                        "00000000qglj|3|gone.txt|gone"}));
    const std::string target = "schedule/123456/00000000qglj/";
    EXPECT_EQ(ReadFile(Target(target + "議事録.txt")), "minutes\n");
    EXPECT_EQ(ReadFile(Target(target + "資料.pdf")), std::string("%PDF\0\x01\xff", 7));
    EXPECT_FALSE(Exists(Target(target + "gone.txt")));
    const std::vector<std::string> warn = LogLines("添付ファイルの複写に失敗しました。");
    ASSERT_EQ(warn.size(), 1u);
    EXPECT_EQ(warn[0].rfind("[WARN] 添付ファイルの複写に失敗しました。Name=[gone]", 0), 0u) << warn[0];
    EXPECT_EQ(app_.StatusWord(), 1);
}

TEST_F(SchStageBTest, MastersIconsFromFortyEightAndTheSettingsRowUpdated) {
    Ent("INSERT INTO TM_SCH_SETTING (ROWCOUNT, stime, unit, sunday, todo) VALUES (20, 8, 30, 'red', '1');"
        "INSERT INTO TM_SCH_EVENT (ID, ITEM) VALUES (1, '会議'), (2, '外出');"
        "INSERT INTO TM_SCH_PLACE (ID, ITEM) VALUES (1, '本社');"
        "INSERT INTO TM_SCH_ICON (ID, name, filename, seqno) VALUES (3, '星', 'star.gif', 1),"
        " (5, '欠', 'lost.gif', 2), (9, '旗', 'flag.gif', 3);");
    WriteFile(Source("schedule/icon/3/star.gif"), "GIF89a-star");
    WriteFile(Source("schedule/icon/9/flag.gif"), "GIF89a-flag");

    ASSERT_EQ(Run<ConvExEntSchSchSetting>(), 0);
    EXPECT_EQ(Kiv("SELECT count(*), max(rowcount), max(stime), max(sunday), max(todo), min(length(cretime))"
                  " FROM TM_SCH_SETTING"),
              std::vector<std::string>{"1|20|8|red|1|14"});
    ASSERT_EQ(Run<ConvExEntSchSchEvent>(), 0);
    ASSERT_EQ(Run<ConvExEntSchSchPlace>(), 0);
    EXPECT_EQ(Kiv("SELECT ID, item FROM TM_SCH_EVENT ORDER BY ID"), (std::vector<std::string>{"1|会議", "2|外出"}));
    EXPECT_EQ(Kiv("SELECT ID, item FROM TM_SCH_PLACE"), std::vector<std::string>{"1|本社"});

    // The icon whose file is missing is not inserted and takes no number.
    ASSERT_EQ(Run<ConvExEntSchSchIcon>(), 0);
    EXPECT_EQ(Kiv("SELECT ID, name, filename, seqno FROM TM_SCH_ICON ORDER BY ID"),
              (std::vector<std::string>{"3|星|star.gif|48", "9|旗|flag.gif|49"}));
    EXPECT_EQ(ReadFile(Target("schedule/icon/9/flag.gif")), "GIF89a-flag");
    EXPECT_EQ(LogLines("Name=[欠]").size(), 1u);
    EXPECT_EQ(app_.StatusWord(), 1);
}

TEST_F(SchStageBTest, WithoutTheInstallationsSettingsRowTheUpdateIsReported) {
    ASSERT_TRUE(TestCluster().Exec(kKiv, "DELETE FROM TM_SCH_SETTING"));
    Ent("INSERT INTO TM_SCH_SETTING (ROWCOUNT) VALUES (20);");
    ASSERT_EQ(Run<ConvExEntSchSchSetting>(), 0);
    EXPECT_EQ(LogLines("該当レコードなしエラー").size(), 1u);
    EXPECT_EQ(app_.StatusWord(), 1);
}

// Every query's count file counts exactly the rows of the query, over rows
// that share ids between owners, lists and files.
TEST_F(SchStageBTest, CountFilesMatchTheirQueries) {
    Ent("INSERT INTO TTPR_SCHEDULE (SID_USER, ID, startdate, creuser) VALUES (7, 1, '20240101', 7),"
        " (8, 1, '20240101', 7), (8, 2, '20240101', 8);"
        "INSERT INTO TT_SCH_GROUP (SID_GROUP, ID, startdate) VALUES (3, 1, '20240101'), (3, 4, '20240101');"
        "INSERT INTO TTPR_SCH_GROUP (SID_USER, SID_PRGROUP, ID, startdate) VALUES (7, 1, 5, '20240101');"
        "INSERT INTO TT_PLT_SCHEDULE (SID_PLANT, ID, startdate) VALUES (2, 1, '20240101');"
        "INSERT INTO TTPR_SCH_REPDATE VALUES (1, 7, 1, 20240102, 0), (1, 8, 1, 20240102, 0), (1, 8, 1, 20240102, 1);"
        "INSERT INTO TT_SCH_GROUP_REPDATE VALUES (1, 3, 1, 20240103, 0), (1, 3, 9, 20240103, 0);"
        "INSERT INTO TTPR_ATTACH_SCHEDULE VALUES (1, 7, 1, 1, 'a', 'a', 'x'), (1, 8, 1, 1, 'a', 'a', 'x');"
        "INSERT INTO TT_ATTACH_PLT_SCHEDULE VALUES (1, 2, 1, 2, 'b', 'b', 'x');"
        "INSERT INTO TM_SCH_EVENT (ID, ITEM) VALUES (1, 'a'); INSERT INTO TM_SCH_ICON (ID) VALUES (1);");
    for (const char* table : {"TT_SCHEDULE", "TT_SCH_REPDATE", "TT_ATTACH_SCHEDULE", "TT_SCHEDULE_OTHERTO",
                              "TT_SCHEDULE_USERINFO", "TM_SCH_SETTING", "TM_SCH_EVENT", "TM_SCH_PLACE",
                              "TM_SCH_ICON"}) {
        const std::string base = kSource + "/sql/sch/" + table;
        const std::string query = ReadFile(base + ".sql");
        EXPECT_EQ(query.rfind("SELECT ", 0), 0u) << table;
        const auto rows = TestCluster().QueryValue(kEnt, "SELECT count(*) FROM (" + query + ") q");
        const auto counted = TestCluster().QueryValue(kEnt, ReadFile(base + "_count.sql"));
        ASSERT_TRUE(rows && counted) << table;
        EXPECT_EQ(*rows, *counted) << table;
    }
    EXPECT_EQ(TestCluster().QueryValue(kEnt, "SELECT count(*) FROM (" + ReadFile(kSource + "/sql/sch/TT_SCHEDULE.sql") +
                                                 ") q"),
              "4");
}

// The store has no sticky notes, but a row that carries one writes it beside
// the user information; a note that can't be written leaves that in place.
TEST_F(SchStageBTest, UserInformationWithANoteWritesTheNoteAndKeepsTheRowWhenTheNoteFails) {
    for (const char* name : {"com", "com_locale", "sch"}) ASSERT_EQ(LoadMessageFile(name), 0) << name;
    auto row = [](const char* id) {
        ConvRow r;
        for (auto [name, value] : std::initializer_list<std::pair<const char*, const char*>>{
                 {"SID_CORPORATE", "1"}, {"ID", id}, {"SID_ASSIGN", "7"}, {"startdate", "20240110"},
                 {"starttime", "0930"}, {"endtime", "1030"}, {"event", "会議"}, {"memo", "議題"},
                 {"TAG_SID_MODULE", "1"}, {"TAG_ID", "3"}, {"TAG_tagcolor", "2"}, {"ALARM_ID", "4"},
                 {"LOG_SCH_ID", id}})
            AddColumn(name, value, kRowTypeText, r);
        return r;
    };
    ASSERT_EQ(app_.KivConnection()->SetTransactional(false), 0);
    kiv_scheduleuserinfo writer(&app_, app_.KivConnection());
    writer.CopyKeys({{"LOG_SCH_ID", ""}});
    ConvRow first = row("500");
    ASSERT_EQ(writer.Entry("TT_SCHEDULE_USERINFO", first), 0);
    EXPECT_EQ(Kiv("SELECT SID_USER, ID, SID_MODULE, DID, X, Y, width, height, tagcolor, title, url,"
                  " length(cretime), body LIKE '%議題%' FROM TTPR_TAG"),
              std::vector<std::string>{"7|3|1|0000000000dw|96|96|320|240|2|会議|"
                                       "qkiv.{{ext}}?cmd=schindex#cmd=schreferdtl&sid=0000000000dw|14|t"});
    // An alarm id without a send time writes no alarm, and says nothing.
    EXPECT_EQ(Kiv("SELECT count(*) FROM TTPR_ALARM"), std::vector<std::string>{"0"});
    EXPECT_TRUE(LogLines("[WARN]").empty());
    EXPECT_TRUE(LogLines("[ERR]").empty());

    // The same note id again: the note is refused, the information stays.
    ConvRow second = row("501");
    EXPECT_EQ(writer.Entry("TT_SCHEDULE_USERINFO", second), 1);
    EXPECT_EQ(Kiv("SELECT ID FROM TT_SCHEDULE_USERINFO ORDER BY ID"),
              (std::vector<std::string>{"0000000000dw", "0000000000dx"}));
    const std::vector<std::string> failed = LogLines("付箋登録に失敗しましたが処理を続行しました。");
    ASSERT_EQ(failed.size(), 1u);
    EXPECT_NE(failed[0].find("[LOG_SCH_ID=501]"), std::string::npos) << failed[0];
}
