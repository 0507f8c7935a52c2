// The facility module end to end on the test cluster: the flat store's
// settings, purposes, groups, facilities with their rights, personal settings,
// column orders and reservations into the working database (stage A), and from
// there into the target (stage B).
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "MakeConvEToKiv/convplant/ConvExEntPlantMaster.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchSchedule.h"
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantGroup.h"
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantPlt.h"
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantSch.h"
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantSetting.h"
#include "MakeConvSToKiv/convstdsch/ConvExStdSchSchUser.h"
#include "StdRun.h"

namespace fs = std::filesystem;

namespace {

// A schedule id as the target keeps it: 12 characters of lower-case base 36.
std::string Base36(int id) {
    std::string out(12, '0');
    for (int i = 11; i >= 0 && id > 0; --i, id /= 36) out[i] = "0123456789abcdefghijklmnopqrstuvwxyz"[id % 36];
    return out;
}

class PlantTest : public StdRunTest {
protected:
    PlantTest() : StdRunTest("plant") {}

    void SetUp() override {
        StdRunTest::SetUp();
        if (HasFatalFailure()) return;
        Store("data/group/index", "g1=1\ng2=2\n_lastid=3\n");  // group 3 was deleted
        Store("data/user/index", "u1=1\nu2=2\nu4=4\n_lastid=4\n");
    }
    void WriteFacilities();
};

TEST_F(PlantTest, SettingsKeepGroupAsTextAndPersonalOnesDropCommonKeys) {
    Store("data/setubi/setting",
          "object 1\nrow=20\nsave=1\nstart=9\nunit=15\nreservlimit=30\nGroup=abc\ntitle=T\nsunday=1\nfoo=bar\nend\n");
    Store("data/user/1/setubi/setting", "object 1\nrow=10\nsave=1\ninfomation=x\nstart=9\nGroup=3\nend\n");
    Store("data/user/2/setubi/setting", "object 2\nrow=abc\nGroup=4\nend\n");
    Store("data/setubi/event", "a=会議\nb=\nc=面談\n");
    {
        ConvExStdPlantSetting common(&app_);
        ASSERT_EQ(RunA(common), 0);
        ConvExStdPlantPrSetting personal(&app_);
        ASSERT_EQ(RunA(personal), 0);
        ConvExStdPlantEvent event(&app_);
        ASSERT_EQ(RunA(event), 0);
    }
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ROWCOUNT, save, stime, unit, reservlimit, defgroup, title, sunday) "
                      "FROM TM_PLT_SETTING"),
              "20|1|9|15|30|abc|T|1");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', SID_USER, ROWCOUNT, defgroup) FROM TMPR_PLT_SETTING ORDER BY 1"),
              "1|10|3");
    EXPECT_EQ(LogWith("field=[row] value=[abc]").size(), 1u);
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ID, coalesce(ITEM, '-')) FROM TM_PLT_EVENT ORDER BY ID"),
              "1|会議\n2|-\n3|面談");

    ConvExEntPlantPltSetting setting(&app_);
    ASSERT_EQ(setting.Run(), 0);
    ConvExEntPlantPPltSetting prSetting(&app_);
    ASSERT_EQ(prSetting.Run(), 0);
    ConvExEntPlantPltEvent event(&app_);
    ASSERT_EQ(event.Run(), 0);
    EXPECT_EQ(KivRows("SELECT concat_ws('|', SID_CORPORATE, rowcount, save, stime, defgroup, length(cretime),"
                      " cretime = updtime) FROM TM_PLT_SETTING"),
              "1|20|1|9|abc|14|t");
    EXPECT_EQ(KivRows("SELECT concat_ws('|', SID_USER, rowcount, defgroup, length(updtime)) FROM TMPR_PLT_SETTING"),
              "1|10|3|14");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TM_PLT_EVENT WHERE cretime IS NOT NULL"), "3");
}

// Facilities 1 to 4: 2 is left out, 1 names group 1 twice in its rights.
void PlantTest::WriteFacilities() {
    Store("data/setubi/plant/index", "a=1\nb=2\nc=3\nd=4\ne=5\n_lastid=9\n");  // 5 has no record
    Store("data/setubi/plant/1/info",
               "object 1\nName=会議室A\nstarttime=0900\nendtime=1800\nassigngroup=1\nusetime=30\n"
               "object managegroup\n1=5\n2=9\nend\nend\n");
    Store("data/setubi/plant/1/pltacc",
               "object 1\naccesskind=2\nobject group\n1=1\n2=2\n3=1\nend\nobject gaccess\n1=1\n2=1\n3=2\nend\n"
               "object user\n1=1\n2=99\nend\nobject uaccess\n1=3\n2=3\nend\nend\n");
    Store("data/setubi/plant/2/info", "object 2\nName=壊れた設備\nassigngroup=abc\nend\n");
    Store("data/setubi/plant/2/pltacc", "object 2\nobject user\n1=1\nend\nobject uaccess\n1=1\nend\nend\n");
    Store("data/setubi/plant/3/info", "object 3\nName=車\nstarttime=0800\nendtime=2400\nend\n");
    Store("data/setubi/plant/3/pltacc", "object 3\nobject group\n1=3\nend\nobject gaccess\n1=1\nend\nend\n");
    Store("data/setubi/plant/4/info", "object 4\nName=机\nstarttime=1000\nobject managegroup\nend\nend\n");
}

TEST_F(PlantTest, FacilitiesKeepTheirPlaceAndRightsSurviveARetry) {
    WriteFacilities();
    {
        ConvExStdPlantPlt plant(&app_);
        ASSERT_EQ(RunA(plant), 0);
    }
    EXPECT_EQ(Ent("SELECT lastid FROM TM_INDEX WHERE SID_MODULE = 3 AND SUBCODE = '001'"), "9");
    // The left-out facility 2 still took number 2; facility 1, walked twice, kept 1.
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ID, name, seqno, managegroup, starttime) FROM TM_PLANT ORDER BY ID"),
              "1|会議室A|1|5|0900\n3|車|3|0|0800\n4|机|4|0|1000");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ID, accesskind) FROM TM_ACCPLT_ALL ORDER BY ID"), "1|2\n3|1");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ID, SID_ASSIGN, accesskind) FROM TM_ACCPLT_GROUP ORDER BY 1"),
              "1|1|1\n1|2|1");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ID, SID_ASSIGN, accesskind) FROM TM_ACCPLT_USER ORDER BY 1"), "1|1|3");
    EXPECT_EQ(LogWith("field=[assigngroup] value=[abc]").size(), 1u);
    // The deleted group and user vanish without a word.
    EXPECT_TRUE(LogWith("99").empty());

    // A second run over these rows meets the index row inside the transaction
    // and stops, leaving what is there.
    {
        ConvExStdPlantPlt again(&app_);
        EXPECT_LT(RunA(again), 0);
    }
    EXPECT_EQ(Ent("SELECT count(*) FROM TM_PLANT"), "3");

    ConvExEntPlantPlant target(&app_);
    ASSERT_EQ(target.Run(), 0);
    EXPECT_EQ(KivRows("SELECT concat_ws('|', ID, seqno, managegroup, starttime, endtime, usetime) "
                      "FROM TM_PLANT ORDER BY ID"),
              "1|1|5|0000|0900|30\n3|3|0|2300|1500\n4|4|0|0100");
}

TEST_F(PlantTest, GroupsNumberOnlyTheRowsThatArrive) {
    Store("data/setubi/group/index", "x=1\ny=2\nz=3\n_lastid=3\n");
    Store("data/setubi/group/1/info", "object 1\nName=本館\nstarttime=0900\nendtime=1700\nend\n");
    Store("data/setubi/group/2/info", "object 2\nID=abc\nName=壊れ\nend\n");
    Store("data/setubi/group/3/info", "object 3\nName=別館\nreservlimit=7\nend\n");
    {
        ConvExStdPlantGroup group(&app_);
        ASSERT_EQ(RunA(group), 0);
    }
    EXPECT_EQ(Ent("SELECT lastid FROM TM_INDEX WHERE SID_MODULE = 3 AND SUBCODE = '002'"), "3");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ID, name, seqno) FROM TM_PLT_GROUP ORDER BY ID"), "1|本館|1\n3|別館|2");

    ConvExEntPlantPltGroup target(&app_);
    ASSERT_EQ(target.Run(), 0);
    EXPECT_EQ(KivRows("SELECT concat_ws('|', ID, seqno, starttime, endtime, reservlimit) FROM TM_PLT_GROUP ORDER BY ID"),
              "1|1|0000|0800\n3|2|7");
}

TEST_F(PlantTest, EmptyGroupIndexWritesNoIndexRow) {
    Store("data/setubi/group/index", "\n");
    ConvExStdPlantGroup group(&app_);
    ASSERT_EQ(RunA(group), 0);
    EXPECT_EQ(Ent("SELECT count(*) FROM TM_INDEX"), "0");
}

TEST_F(PlantTest, TimesThatCannotMoveDropTheirRowWithTheOldValue) {
    EntSql("INSERT INTO TM_PLANT (ID, name, starttime, endtime, seqno) VALUES"
           " (1, 'a', '', '1000', 1), (2, 'b', '0900', '900', 2), (3, 'c', NULL, NULL, 3), (4, 'd', '2400', '0000', 4);"
           "INSERT INTO TM_PLT_GROUP (ID, name, starttime, seqno) VALUES (1, 'g', '12:00', 1);");
    ConvExEntPlantPlant plant(&app_);
    ASSERT_EQ(plant.Run(), 0);
    EXPECT_EQ(plant.FailedRows(), 2);
    EXPECT_EQ(KivRows("SELECT concat_ws('|', ID, coalesce(starttime, '-'), coalesce(endtime, '-')) "
                      "FROM TM_PLANT ORDER BY ID"),
              "3|-|-\n4|1500|1500");
    EXPECT_EQ(LogWith("開始時刻[]のタイムゾーン変換に失敗しましたが処理を続行しました。").size(), 1u);
    EXPECT_EQ(LogWith("終了時刻[900]のタイムゾーン変換に失敗しましたが処理を続行しました。").size(), 1u);
    EXPECT_EQ(LogWith("[Name=b]").size(), 1u);

    ConvExEntPlantPltGroup group(&app_);
    ASSERT_EQ(group.Run(), 0);
    EXPECT_EQ(group.FailedRows(), 1);
    EXPECT_EQ(LogWith("開始時刻[12:00]").size(), 1u);
}

TEST_F(PlantTest, ColumnOrdersPassOverAUserWithABadLine) {
    Store("data/user/1/setubi/infocsvindex", "a=3\nb=1\nc=2\n");
    Store("data/user/2/setubi/infocsvindex", "a=3\nb=x\nc=2\n");
    Store("data/user/4/setubi/infocsvindex", "a=7\n");
    {
        ConvExStdPlantPPltCsvindex csv(&app_);
        ASSERT_EQ(RunA(csv), 0);
    }
    EXPECT_EQ(EntRows("SELECT concat_ws('|', SID_USER, SEQNO, ID) FROM TMPR_PLTMST_CSVINDEX ORDER BY 1"),
              "1|1|3\n1|2|1\n1|3|2\n4|1|7");

    ConvExEntPlantPPltMstCsvindex target(&app_);
    ASSERT_EQ(target.Run(), 0);
    // Copied as they come: the rows have no times.
    EXPECT_EQ(KivRows("SELECT concat_ws('|', SID_USER, SEQNO, ID, coalesce(cretime, '-')) "
                      "FROM TMPR_PLTMST_CSVINDEX ORDER BY SID_USER, SEQNO"),
              "1|1|3|-\n1|2|1|-\n1|3|2|-\n4|1|7|-");
}

TEST_F(PlantTest, ReservationsArriveAsSchedulesWithDatesAndFiles) {
    WriteFacilities();
    // Facility 2's own row is left out; its reservation is converted all the same.
    Store("data/setubi/plant/1/schedule",
          "object 101\nstartdate=20120401\nenddate=20120401\nstarttime=0800\nendtime=1000\nevent=会議\n"
          "object attach\n1=a.txt\nend\nobject attachdisp\n1=資料.txt\nend\nobject mimetype\n1=text/plain\nend\nend\n"
          "object 102\nstartdate=20120401\nenddate=20120430\nstarttime=0900\nendtime=1000\nrepeat=1\n"
          "object dates\n1=20120402\n2=20120409\nend\nobject deldates\n1=20120409\nend\nend\n"
          "object 103\nstartdate=2012041\nend\n");
    Store("data/setubi/plant/2/schedule", "object 201\nstartdate=20120501\nstarttime=0830\nendtime=0900\nend\n");
    Store("data/setubi/plant/5/schedule", "object 501\nstartdate=20120601\nend\n");
    testsupport::MakeDirs(dir_ / "store/file/setubi/plant/1/schedule/101");
    testsupport::WriteFile(dir_ / "store/file/setubi/plant/1/schedule/101/a.txt", "contents");
    {
        ConvExStdPlantPlt plant(&app_);
        ASSERT_EQ(RunA(plant), 0);
        ConvExStdPlantSch sch(&app_);
        ASSERT_EQ(RunA(sch), 0);
    }
    EXPECT_EQ(EntRows("SELECT concat_ws('|', SID_PLANT, ID, startdate, starttime) FROM TT_PLT_SCHEDULE ORDER BY ID"),
              "1|101|20120401|0800\n1|102|20120401|0900\n2|201|20120501|0830\n5|501|20120601");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', SID_PLANT, ID, SID_ASSIGN, deldates) FROM TT_PLT_SCH_REPDATE ORDER BY SID_ASSIGN, deldates"),
              "1|102|20120402|0\n1|102|20120409|0\n1|102|20120409|1");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', SID_PLANT, ID, SID_ATTACH, filename, dispname, mimetype) "
                      "FROM TT_ATTACH_PLT_SCHEDULE"),
              "1|101|1|a.txt|資料.txt|text/plain");
    EXPECT_EQ(LogWith("開始日付[2012041]が不正ですが処理を続行しました。").size(), 1u);

    ConvExEntSchSchedule schedule(&app_);
    ASSERT_EQ(schedule.Run(), 0);
    ConvExEntSchSchRepdate repdate(&app_);
    ASSERT_EQ(repdate.Run(), 0);
    ConvExEntSchAttachSchedule attach(&app_);
    ASSERT_EQ(attach.Run(), 0);
    ConvExEntSchScheduleOtherTo otherTo(&app_);
    ASSERT_EQ(otherTo.Run(), 0);
    // 101 and 102 in base 36; 08:00 local is 23:00 UTC of the day before.
    EXPECT_EQ(KivRows("SELECT concat_ws('|', ID, startdate, starttime, endtime, event) FROM TT_SCHEDULE "
                      "WHERE ID = '00000000002t'"),
              "00000000002t|20120331|2300|0100|会議");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TT_SCHEDULE"), "4");
    EXPECT_EQ(KivRows("SELECT concat_ws('|', ID, otherto_type, SID_USER, SID_ASSIGN) FROM TT_SCHEDULE_OTHERTO "
                      "ORDER BY ID"),
              "00000000002t|4|0|1\n00000000002u|4|0|1\n00000000005l|4|0|2\n0000000000dx|4|0|5");
    EXPECT_EQ(KivRows("SELECT concat_ws('|', ID, filename, dispname) FROM TT_ATTACH_SCHEDULE"),
              "00000000002t|a.txt|資料.txt");
    std::string copied;
    for (const auto& entry : fs::recursive_directory_iterator(dir_ / "target"))
        if (entry.is_regular_file() && entry.path().filename() == "a.txt")
            copied = testsupport::ReadFile(entry.path().string());
    EXPECT_EQ(copied, "contents");
    EXPECT_EQ(Kiv("SELECT count(*) FROM TT_SCH_REPDATE WHERE ID = '00000000002u'"), "3");
}

// A reservation of each repeat kind arrives as the same entry of a user does.
TEST_F(PlantTest, ReservationsOfEachRepeatKindArriveLikeAUsersEntries) {
    const std::string entries[] = {
        "startdate=20120402\nenddate=20120402\nstarttime=0830\nendtime=0930\n",
        "startdate=20120402\nenddate=20120430\nstarttime=0800\nendtime=1000\nrepeat=d\n",
        "startdate=20120402\nenddate=20120430\nstarttime=0800\nendtime=1000\nrepeat=w\neveryweekday=0100100\n",
        "startdate=20120402\nenddate=20121231\nstarttime=0700\nendtime=0800\nrepeat=m\neverymonth=2\n",
        "startdate=20120402\nenddate=20151231\nstarttime=1000\nendtime=1100\nrepeat=y\n",
        "startdate=20120402\nenddate=20120430\nstarttime=0800\nendtime=0900\nrepeat=r\n"
        "object dates\n1=20120403\n2=20120410\nend\n",
    };
    std::string plant, user;
    for (int i = 0; i < 6; ++i) {
        plant += "object " + std::to_string(301 + i) + "\n" + entries[i] + "end\n";
        user += "object " + std::to_string(1301 + i) + "\n" + entries[i] + "end\n";
    }
    Store("data/setubi/plant/index", "a=1\n_lastid=1\n");
    Store("data/setubi/plant/1/schedule", plant);
    Store("data/user/1/schedule", user);
    {
        ConvExStdPlantSch sch(&app_);
        ASSERT_EQ(RunA(sch), 0);
        ConvExStdSchSchUser users(&app_);
        ASSERT_EQ(RunA(users), 0);
    }
    ConvExEntSchSchedule schedule(&app_);
    ASSERT_EQ(schedule.Run(), 0);
    ConvExEntSchSchRepdate repdate(&app_);
    ASSERT_EQ(repdate.Run(), 0);
    EXPECT_EQ(schedule.FailedRows(), 0);
    EXPECT_EQ(Kiv("SELECT count(*) FROM TT_SCHEDULE"), "12");
    // The facility's and the user's copy of each entry agree on everything the
    // shift to UTC touches.
    auto columns = [&](int id) {
        return KivRows("SELECT concat_ws('|', startdate, enddate, starttime, endtime, repeat, everyweekday,"
                       " everymonth) FROM TT_SCHEDULE WHERE ID = '" + Base36(id) + "'");
    };
    for (int i = 0; i < 6; ++i) {
        EXPECT_NE(columns(301 + i), "") << 301 + i;
        EXPECT_EQ(columns(301 + i), columns(1301 + i)) << 301 + i;
    }
    EXPECT_EQ(Kiv("SELECT count(*) FROM TT_SCH_REPDATE"), "4");
}

}  // namespace
