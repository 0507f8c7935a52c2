// Schedules from EUC-JP flat-store files into the working database: the entry
// rows of users, groups and personal groups with their dates and attachments,
// the personal access rights, and the masters and settings around them.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "MakeConvSToKiv/convstdsch/ConvExStdSchEvent.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchIcon.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchGroup.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchPGroup.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchUser.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSetting.h"
#include "StdRun.h"

using namespace testsupport;

namespace {

class StdScheduleTest : public StdRunTest {
protected:
    StdScheduleTest() : StdRunTest("std_schedule") {}

    // A value-form index of ids, each with its record file.
    void Index(const std::string& directory, const std::vector<int>& ids, const std::vector<int>& withoutInfo = {}) {
        std::string index;
        int last = 0;
        for (int id : ids) {
            const std::string number = std::to_string(id);
            index.append("n").append(number).append("=").append(number).append("\n");
            last = std::max(last, id);
            if (std::find(withoutInfo.begin(), withoutInfo.end(), id) == withoutInfo.end())
                Store(directory + "/" + std::to_string(id) + "/info",
                      "object " + std::to_string(id) + "\nName=名前" + std::to_string(id) + "\nKana=なまえ\nend\n");
        }
        Store(directory + "/index", index + "_lastid=" + std::to_string(last) + "\n");
    }

    template <class T, class... Extra>
    int32_t Run(Extra... extra) {
        T conversion(&app_, extra...);
        return RunA(conversion);
    }

    std::vector<std::string> Rows(const std::string& sql) { return RowLines(ent_, sql); }
    // A table's rows as JSON objects without their NULL columns, in key order.
    std::vector<std::string> Json(const std::string& table, const std::string& order) {
        return Rows("SELECT json_strip_nulls(row_to_json(t))::text FROM " + table + " t ORDER BY " + order);
    }
};

TEST_F(StdScheduleTest, OneObjectGivesItsMainRowAndOneRowPerListedDate) {
    Index("data/user", {7});
    Store("data/user/7/schedule",
        "object 12\nstartdate=20120401\nenddate=20120430\nlevel=1\nrepeat=1\neveryweek=2\n"
        "object dates\n1=20120403\n2=20120410\nend\n"
        "object deldates\n1=20120410\nend\n"
        "end\n");
    EXPECT_EQ(Run<ConvExStdSchSchUser>(), 0);

    EXPECT_EQ(Json("TTPR_SCHEDULE", "id"),
              (std::vector<std::string>{"{\"sid_corporate\":1,\"sid_user\":7,\"id\":12,\"startdate\":\"20120401\","
                                        "\"enddate\":\"20120430\",\"openlevel\":\"1\",\"repeat\":\"1\","
                                        "\"everyweek\":2}"}));
    EXPECT_EQ(Rows("SELECT sid_user, id, sid_assign, deldates FROM TTPR_SCH_REPDATE ORDER BY sid_assign, deldates"),
              (std::vector<std::string>{"7|12|20120403|0", "7|12|20120410|0", "7|12|20120410|1"}));
    EXPECT_EQ(Rows("SELECT count(*) FROM TTPR_ATTACH_SCHEDULE"), (std::vector<std::string>{"0"}));
    EXPECT_EQ(app_.StatusWord(), 0);
    EXPECT_TRUE(UserLog().empty());
}

TEST_F(StdScheduleTest, BadRecordsAreLeftOutWithTheirKeysAndTheOwnersOtherRecordsArrive) {
    Index("data/user", {7, 8});
    std::string longMemo;
    for (int i = 0; i < 2048; ++i) longMemo += i < 2046 ? "予" : "x";
    Store("data/user/7/schedule",
        "object 1\nstartdate=20120401\nstarttime=0900\nevent=会議\ndetail=定例\nmemo=一行目\n\t二行目\n"
        "object dates\n1=20120401\n2=2012041\n3=20120408\n4=abcd0101\n5=20120408\n6=\n7=20120415xyz\nend\n"
        "object attach\n1=agenda.pdf\n2=予定表.xls\nend\n"
        "object attachdisp\n1=議題.pdf\n2=予定表.xls\nend\n"
        "object mimetype\n1=application/pdf\nend\n"
        "object agnids\n1=31\nend\n"
        "end\n"
        "object 2\nstartdate=abcd0101\nstarttime=1000\nevent=出張\ndetail=大阪\n"
        "object dates\n1=20120402\nend\nobject attach\n1=x.txt\nend\nend\n"
        "object 3\nstartdate=20120403\nstarttime=1100\nevent=来客\ndetail=A社\niconno=1a\nend\n"
        "object 4\nstartdate=20120404\nstarttime=1200\nevent=作業\ndetail=長文\nmemo=" + longMemo + "\nend\n"
        "object 5\nstartdate=20110229\nend\n"
        "object 6\nstartdate=20120406\nagnids=\nobject agnids\nend\nend\n"
        "object 7\nstartdate=20120407\nmemo=" + std::string(2047, 'm') + "\nend\n");
    Store("data/user/8/schedule", "object 1\nstartdate=20120401\nend\n");
    EXPECT_EQ(Run<ConvExStdSchSchUser>(), 0);

    EXPECT_EQ(Rows("SELECT sid_user, id, startdate, agenda, memo FROM TTPR_SCHEDULE WHERE id NOT IN (4, 7)"
                   " ORDER BY sid_user, id"),
              (std::vector<std::string>{"7|1|20120401|1|一行目\n二行目", "7|6|20120406|-|-", "8|1|20120401|-|-"}));
    // Only the valid dates of the kept record, each once; the tail behind a date isn't part of it.
    EXPECT_EQ(Rows("SELECT id, sid_assign, deldates FROM TTPR_SCH_REPDATE ORDER BY id, sid_assign"),
              (std::vector<std::string>{"1|20120401|0", "1|20120408|0", "1|20120415|0"}));
    EXPECT_EQ(Rows("SELECT sid_user, id, sid_attach, filename, dispname, mimetype FROM TTPR_ATTACH_SCHEDULE"
                   " ORDER BY id, sid_attach"),
              (std::vector<std::string>{"7|1|1|agenda.pdf|議題.pdf|application/pdf", "7|1|2|予定表.xls|予定表.xls|-"}));
    // The memo keeps 2,047 characters; one of exactly that length passes without a word.
    EXPECT_EQ(Rows("SELECT id, char_length(memo), right(memo, 2) FROM TTPR_SCHEDULE WHERE id IN (4, 7) ORDER BY id"),
              (std::vector<std::string>{"4|2047|予x", "7|2047|mm"}));

    EXPECT_TRUE(LogHas("[WARN] TTPR_SCHEDULE [ID=2] [SID_USER=7] [detail=大阪] [event=出張] "
                           "[startdate=abcd0101] [starttime=1000] 開始日付[abcd0101]が不正ですが処理を続行しました。"));
    EXPECT_TRUE(LogHas("TTPR_SCHEDULE [ID=3] [SID_USER=7] [detail=A社] [event=来客] [startdate=20120403] "
                           "[starttime=1100] 数値型の項目に文字列が指定されたため、登録を行いませんでした。"
                           "field=[iconno] value=[1a]"));
    EXPECT_TRUE(LogHas("[WARN] TTPR_SCHEDULE [ID=4] [SID_USER=7] [detail=長文] [event=作業] "
                           "[startdate=20120404] [starttime=1200] "
                           "[memo]の値が桁数オーバーとなるため、[2047]文字でカットして登録しました。"));
    EXPECT_TRUE(LogHas("[WARN] TTPR_SCHEDULE [ID=5] [SID_USER=7] [detail=] [event=] [startdate=20110229] "
                           "[starttime=] 開始日付[20110229]が不正ですが処理を続行しました。"));
    EXPECT_EQ(UserLog().size(), 4u);
    EXPECT_EQ(app_.StatusWord(), 1);
}

TEST_F(StdScheduleTest, GroupsAndPersonalGroupsNeedTheirOwnRecord) {
    Index("data/user", {7, 8});
    Index("data/group", {3, 4}, {4});
    // A crash remnant: the entry stands twice; the second copy and its lists are refused.
    Store("data/group/3/schedule",
        "object 40\nstartdate=20120501\nevent=全体会議\nobject deldates\n1=20120508\nend\n"
        "object attach\n1=資料.txt\nend\nend\n"
        "object 40\nstartdate=20120501\nevent=全体会議\nobject deldates\n1=20120515\nend\n"
        "object attach\n1=古い資料.txt\nend\nend\n");
    Store("data/group/4/schedule", "object 41\nstartdate=20120502\nend\n");
    // User 7's personal group 2 has no record of its own; user 8 has no groups.
    Index("data/user/7/group", {1, 2}, {2});
    Store("data/user/7/group/1/schedule",
        "object 50\nstartdate=20120601\nalarm=1\nobject dates\n1=20120602\nend\n"
        "object attach\n1=a.txt\nend\nend\n");
    Store("data/user/7/group/2/schedule", "object 51\nstartdate=20120603\nend\n");
    EXPECT_EQ(Run<ConvExStdSchSchGroup>(), 0);
    EXPECT_EQ(Run<ConvExStdSchSchPGroup>(), 0);

    EXPECT_EQ(Json("TT_SCH_GROUP", "id"),
              (std::vector<std::string>{"{\"sid_corporate\":1,\"sid_group\":3,\"id\":40,\"startdate\":\"20120501\","
                                        "\"event\":\"全体会議\"}"}));
    EXPECT_EQ(Rows("SELECT sid_group, id, sid_assign, deldates FROM TT_SCH_GROUP_REPDATE"),
              (std::vector<std::string>{"3|40|20120508|1"}));
    EXPECT_EQ(Rows("SELECT sid_group, id, sid_attach, filename FROM TT_ATTACH_SCH_GROUP"),
              (std::vector<std::string>{"3|40|1|資料.txt"}));
    // `alarm` belongs to a user's own entries only.
    EXPECT_EQ(Json("TTPR_SCH_GROUP", "id"),
              (std::vector<std::string>{"{\"sid_corporate\":1,\"sid_prgroup\":1,\"sid_user\":7,\"id\":50,"
                                        "\"startdate\":\"20120601\"}"}));
    EXPECT_EQ(Rows("SELECT sid_prgroup, sid_user, id, sid_assign, deldates FROM TTPR_SCH_GROUP_REPDATE"),
              (std::vector<std::string>{"1|7|50|20120602|0"}));
    EXPECT_EQ(Rows("SELECT sid_prgroup, sid_user, id, sid_attach, filename FROM TTPR_ATTACH_SCH_GROUP"),
              (std::vector<std::string>{"1|7|50|1|a.txt"}));

    EXPECT_TRUE(LogHas("[WARN] TT_SCH_GROUP [ID=40] [SID_GROUP=3] [detail=] [event=全体会議] "
                           "[startdate=20120501] [starttime=] 重複エラーが発生しましたが処理を続行しました。"));
    // Each group without its record is named in the user log by its path.
    EXPECT_TRUE(LogHas("ファイル[" + dir_.Path() + "/store/data/group//4/info]"));
    EXPECT_TRUE(LogHas("ファイル[" + dir_.Path() + "/store/data/user/7/group//2/info]"));
    for (const std::string& line : UserLog()) EXPECT_EQ(line.rfind("[WARN] ", 0), 0u) << line;
    EXPECT_EQ(app_.StatusWord(), 1);
}

TEST_F(StdScheduleTest, PersonalAccessRightsRideAlongWithTheUsersEntries) {
    Index("data/user", {7, 8, 9, 10});
    Index("data/group", {3});
    Store("data/user/7/schacc",
        "object 1\naccesskind=2\n"
        "object group\n1=3\n2=-5\n3=99\n4=3\nend\nobject gaccess\n1=1\n2=2\n3=1\nend\n"
        "object user\n1=8\n2=77\n3=9\nend\nobject uaccess\n1=2\n2=1\n3=1\nend\n"
        "end\n");
    Store("data/user/7/schedule", "object 12\nstartdate=20120401\nend\n");
    // Without an access kind the default is "3"; user 9 has rights but no entries.
    Store("data/user/8/schacc", "object 1\nend\n");
    Store("data/user/8/schedule", "object 13\nstartdate=20120402\nend\n");
    Store("data/user/9/schacc", "object 1\naccesskind=1\nend\n");
    EXPECT_EQ(Run<ConvExStdSchSchUser>(), 0);

    EXPECT_EQ(Rows("SELECT id, sid_module, accesskind FROM TMPR_ACCESS_ALL ORDER BY id"),
              (std::vector<std::string>{"7|1|2", "8|1|3", "9|1|1"}));
    // gaccess is shorter than group: the fourth group gets no right.
    EXPECT_EQ(Rows("SELECT id, sid_module, sid_assign, accesskind FROM TMPR_ACCESS_GROUP"),
              (std::vector<std::string>{"7|1|3|1"}));
    EXPECT_EQ(Rows("SELECT id, sid_module, sid_assign, accesskind FROM TMPR_ACCESS_PRGROUP"),
              (std::vector<std::string>{"7|1|5|2"}));
    EXPECT_EQ(Rows("SELECT id, sid_module, sid_assign, accesskind FROM TMPR_ACCESS_USER ORDER BY sid_assign"),
              (std::vector<std::string>{"7|1|8|2", "7|1|9|1"}));
    EXPECT_EQ(Rows("SELECT sid_user, id FROM TTPR_SCHEDULE ORDER BY sid_user"),
              (std::vector<std::string>{"7|12", "8|13"}));
    // Rights for ids in neither index vanish without a word.
    EXPECT_TRUE(UserLog().empty());
    EXPECT_EQ(app_.StatusWord(), 0);
}

TEST_F(StdScheduleTest, UnreadableAccessFilePassesOverThatUserOnly) {
    Index("data/user", {10, 11, 12});
    Store("data/user/10/schacc", "accesskind=2\nobject 1\nend\n");
    Store("data/user/10/schedule", "object 14\nstartdate=20120401\nend\n");
    Store("data/user/11/schacc", "object abc\naccesskind=2\nend\n");
    Store("data/user/11/schedule", "object 15\nstartdate=20120401\nend\n");
    Store("data/user/12/schedule", "object 16\nstartdate=20120401\nend\n");
    EXPECT_EQ(Run<ConvExStdSchSchUser>(), 0);

    EXPECT_EQ(Rows("SELECT sid_user, id FROM TTPR_SCHEDULE ORDER BY sid_user"),
              (std::vector<std::string>{"12|16"}));
    EXPECT_EQ(Rows("SELECT count(*) FROM TMPR_ACCESS_ALL"), (std::vector<std::string>{"0"}));
    EXPECT_TRUE(LogHas("ファイル[" + dir_.Path() + "/store/data/user/10/schacc]"));
    EXPECT_TRUE(LogHas("値[abc]が不正です。ファイル[" + dir_.Path() + "/store/data/user/11/schacc]"));
    EXPECT_EQ(app_.StatusWord(), 1);
}

TEST_F(StdScheduleTest, SettingsWordListsAndIcons) {
    Index("data/user", {7, 8, 9});
    Store("data/schedule/setting",
        "object 1\nrow=10\nsave=1\ninfomation=お知らせ\nstart=8\nunit=30\nopenperm=1\nrowother=5\nsunday=1\n"
        "Group=2\ntodo=1\nunknown=x\nend\n");
    Store("data/schedule/event", "a=会議\nb=\nz=出張\n");
    Store("data/schedule/place", "");
    Store("data/schedule/icon/index", "i1=1\ni3=3\n_lastid=3\n");
    Store("data/schedule/icon/1/info",
        "object 1\nName=星\nobject attach\n1=star.gif\nend\nobject attachdisp\n1=星.gif\nend\n"
        "object mimetype\n1=image/gif\nend\nobject other\n1=x\nend\nend\n");
    Store("data/schedule/icon/3/info", "object 3\nName=丸\nend\n");
    Store("data/user/7/schgen", "object 1\nrow=3\nsave=1\ninfomation=x\nstart=9\nrowother=2\nholiday=1\nend\n");
    Store("data/user/9/schgen", "object 1\nrow=abc\nrowother=2\nend\n");
    Store("data/user/7/event", "1=私用\n");
    Store("data/user/8/place", "x=自宅\ny=実家\n");

    EXPECT_EQ(Run<ConvExStdSchSetting>(), 0);
    EXPECT_EQ(Run<ConvExStdSchEvent>(), 0);
    EXPECT_EQ(Run<ConvExStdSchPlace>(), 0);
    EXPECT_EQ(Run<ConvExStdSchIcon>(), 0);
    EXPECT_EQ(Run<ConvExStdSchPrSetting>(), 0);
    EXPECT_EQ(Run<ConvExStdSchPrEvent>(), 0);
    EXPECT_EQ(Run<ConvExStdSchPrPlace>(), 0);

    EXPECT_EQ(Json("TM_SCH_SETTING", "1"),
              (std::vector<std::string>{"{\"sid_corporate\":1,\"rowcount\":10,\"save\":1,\"infomation\":\"お知らせ\","
                                        "\"stime\":8,\"unit\":30,\"openperm\":\"1\",\"rowother\":5,\"sunday\":\"1\","
                                        "\"dispgroup\":\"2\",\"todo\":\"1\"}"}));
    EXPECT_EQ(Rows("SELECT id, item FROM TM_SCH_EVENT ORDER BY id"),
              (std::vector<std::string>{"1|会議", "2|-", "3|出張"}));
    EXPECT_EQ(Rows("SELECT count(*) FROM TM_SCH_PLACE"), (std::vector<std::string>{"0"}));
    EXPECT_EQ(Rows("SELECT sid_module, subcode, lastid FROM TM_INDEX"), (std::vector<std::string>{"1|001|3"}));
    EXPECT_EQ(Rows("SELECT id, name, filename, dispname, mimetype, seqno FROM TM_SCH_ICON ORDER BY id"),
              (std::vector<std::string>{"1|星|star.gif|星.gif|image/gif|1", "3|丸|-|-|-|2"}));
    // A personal record drops `save` and the common keys; user 8 has none, user 9's is refused.
    EXPECT_EQ(Json("TMPR_SCH_SETTING", "sid_user"),
              (std::vector<std::string>{"{\"sid_corporate\":1,\"sid_user\":7,\"rowcount\":3,\"rowother\":2,"
                                        "\"holiday\":\"1\"}"}));
    EXPECT_EQ(Rows("SELECT sid_user, id, item FROM TMPR_SCH_EVENT"), (std::vector<std::string>{"7|1|私用"}));
    EXPECT_EQ(Rows("SELECT sid_user, id, item FROM TMPR_SCH_PLACE ORDER BY id"),
              (std::vector<std::string>{"8|1|自宅", "8|2|実家"}));
    EXPECT_TRUE(LogHas("TMPR_SCH_SETTING [SID_USER=9] 数値型の項目に文字列が指定されたため、登録を行いませんでした。"
                           "field=[row] value=[abc]"));
    EXPECT_EQ(UserLog().size(), 1u);
}

}  // namespace
