// The alarm module end to end on the test cluster: settings and the users'
// notification plans from the flat store into the working database, and from
// there, with the send times moved to UTC, into the target.
#include <gtest/gtest.h>

#include <string>

#include "MakeConvEToKiv/convagent/ConvExEntAgent.h"
#include "MakeConvSToKiv/convstdagent/ConvExStdAgentPrAgent.h"
#include "MakeConvSToKiv/convstdagent/ConvExStdAgentSetting.h"
#include "StdRun.h"

namespace {

class AgentTest : public StdRunTest {
protected:
    AgentTest() : StdRunTest("agent") {}

    void SetUp() override {
        StdRunTest::SetUp();
        if (HasFatalFailure()) return;
        Store("data/user/index", "u1=1\nu2=2\nu4=4\nu5=5\n_lastid=5\n");
    }
    int32_t RunPlans() {
        ConvExStdAgentPrAgent plans(&app_);
        return RunA(plans);
    }
};

TEST_F(AgentTest, WorkedExampleArrivesShiftedInTheTarget) {
    Store("data/user/4/agent/schedule",
          "object 4\nsendkind=1\nsendsize=100\nobject sendtimes\n1=900\n2=0930\n3=2500\n4=12345\nend\nend\n");
    ASSERT_EQ(RunPlans(), 0);
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ID, SID_SCHEDULER, STIME) FROM TM_SCHEDULER ORDER BY STIME"),
              "4|1|0900\n4|1|0930");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', SID_USER, sendkind, sendsize, SENDTIMES) FROM TMPR_AGENT"),
              "4|1|100|900,930");

    ConvExEntAgentPrAgent agent(&app_);
    ASSERT_EQ(agent.Run(), 0);
    ConvExEntAgentScheduler scheduler(&app_);
    ASSERT_EQ(scheduler.Run(), 0);
    EXPECT_EQ(KivRows("SELECT concat_ws('|', SID_USER, sendtimes, coalesce(sendlastdate, '-'), length(cretime)) "
                      "FROM TMPR_AGENT"),
              "4|0,30|-|14");
    EXPECT_EQ(KivRows("SELECT concat_ws('|', SID_SCHEDULER, SID_USER, STIME, coalesce(cretime, '-')) "
                      "FROM TM_SCHEDULER ORDER BY STIME"),
              "1|4|0000|-\n1|4|0030|-");
}

TEST_F(AgentTest, SendTimesArePaddedValidatedAndKeptInOrder) {
    Store("data/user/2/agent/schedule",
          "object 2\nobject sendtimes\n1=30\n2=9\n3=\n4=2400\n5=2460\n6=0930\n7=0930\n8=9x\nend\nend\n");
    Store("data/user/5/agent/schedule", "object 5\nsendkind=2\nend\n");
    ASSERT_EQ(RunPlans(), 0);
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ID, STIME) FROM TM_SCHEDULER ORDER BY ctid"),
              "2|0030\n2|0009\n2|2400\n2|0930\n2|0930");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', SID_USER, coalesce(SENDTIMES, '-')) FROM TMPR_AGENT ORDER BY 1"),
              "2|30,9,2400,930,930\n5|-");

    ConvExEntAgentPrAgent agent(&app_);
    ASSERT_EQ(agent.Run(), 0);
    ConvExEntAgentScheduler scheduler(&app_);
    ASSERT_EQ(scheduler.Run(), 0);
    EXPECT_EQ(KivRows("SELECT concat_ws('|', SID_USER, coalesce(sendtimes, '-')) FROM TMPR_AGENT ORDER BY 1"),
              "2|1530,1509,1500,30,30\n5|-");
    // Equal working rows arrive once.
    EXPECT_EQ(KivRows("SELECT STIME FROM TM_SCHEDULER ORDER BY STIME"), "0030\n1500\n1509\n1530");
}

TEST_F(AgentTest, ABadNumberRollsTheWholeUserBackAndTheNextOneArrives) {
    Store("data/user/1/agent/schedule", "object 1\nsendsize=abc\nobject sendtimes\n1=800\n2=0900\nend\nend\n");
    Store("data/user/2/agent/schedule", "object 2\nsendsize=5\nobject sendtimes\n1=1200\nend\nend\n");
    ASSERT_EQ(RunPlans(), 0);
    EXPECT_EQ(EntRows("SELECT concat_ws('|', ID, STIME) FROM TM_SCHEDULER ORDER BY 1"), "2|1200");
    EXPECT_EQ(EntRows("SELECT concat_ws('|', SID_USER, SENDTIMES) FROM TMPR_AGENT ORDER BY 1"), "2|1200");
    const std::vector<std::string> report = LogWith("field=[sendsize] value=[abc]");
    ASSERT_EQ(report.size(), 1u);
    EXPECT_NE(report[0].find("TMPR_AGENT [SID_USER=1]"), std::string::npos) << report[0];
    EXPECT_EQ(app_.StatusWord(), 1);
}

TEST_F(AgentTest, LastSendingOfAnEnterpriseRowMovesToThePreviousDay) {
    EntSql("INSERT INTO TMPR_AGENT (SID_USER, SENDTIMES, SENDLASTDATE, SENDLASTTIME) VALUES"
           " (7, '900', '20120301', '0800'),"
           " (8, NULL, '20120301', NULL),"
           " (9, '1730', '2012030', '0800'),"
           " (10, '900,abc', NULL, NULL),"
           " (11, '800,', NULL, NULL),"
           " (12, repeat('900,', 299) || '900', NULL, NULL)");
    ConvExEntAgentPrAgent agent(&app_);
    ASSERT_EQ(agent.Run(), 0);
    EXPECT_EQ(agent.FailedRows(), 2);
    EXPECT_EQ(KivRows("SELECT concat_ws('|', SID_USER, coalesce(sendtimes, '-'), coalesce(sendlastdate, '-'),"
                      " coalesce(sendlasttime, '-')) FROM TMPR_AGENT WHERE SID_USER < 12 ORDER BY SID_USER"),
              "7|0|20120229|2300\n8|-|20120301|-\n11|2300|-|-");
    // Items past the 256th are dropped without a word.
    EXPECT_EQ(Kiv("SELECT sendtimes = repeat('0,', 255) || '0' FROM TMPR_AGENT WHERE SID_USER = 12"), "t");
    EXPECT_EQ(LogWith("送信最終日時[2012030 0800]のタイムゾーン変換に失敗しましたが処理を続行しました。").size(), 1u);
    EXPECT_EQ(LogWith("通知時間[abc]のタイムゾーン変換に失敗しましたが処理を続行しました。").size(), 1u);
}

TEST_F(AgentTest, SchedulerRowsWithoutAMovableTimeAreDroppedWithTheirValue) {
    EntSql("INSERT INTO TM_SCHEDULER (ID, SID_SCHEDULER, STIME) VALUES (3, 1, ''), (3, 1, '900'), (3, 1, '0800')");
    ConvExEntAgentScheduler scheduler(&app_);
    ASSERT_EQ(scheduler.Run(), 0);
    EXPECT_EQ(scheduler.FailedRows(), 2);
    EXPECT_EQ(KivRows("SELECT concat_ws('|', SID_USER, STIME) FROM TM_SCHEDULER"), "3|2300");
    EXPECT_EQ(LogWith("開始時間[]のタイムゾーン変換に失敗しましたが処理を続行しました。").size(), 1u);
    EXPECT_EQ(LogWith("開始時間[900]のタイムゾーン変換に失敗しましたが処理を続行しました。").size(), 1u);
}

TEST_F(AgentTest, SettingsCommonAndPersonal) {
    Store("data/agent/setting", "object 1\nrow=5\nsave=1\nalarmuse=1\nother=x\nend\n");
    Store("data/user/1/agent/setting", "object 1\nrow=3\nsave=1\nalarmuse=0\nend\n");
    {
        ConvExStdAgentSetting common(&app_);
        ASSERT_EQ(RunA(common), 0);
        ConvExStdAgentPrSetting personal(&app_);
        ASSERT_EQ(RunA(personal), 0);
    }
    ConvExEntAgentAlmSetting common(&app_);
    ASSERT_EQ(common.Run(), 0);
    ConvExEntAgentPrAlmSetting personal(&app_);
    ASSERT_EQ(personal.Run(), 0);
    EXPECT_EQ(KivRows("SELECT concat_ws('|', rowcount, save, alarmuse, length(updtime)) FROM TM_ALM_SETTING"),
              "5|1|1|14");
    EXPECT_EQ(KivRows("SELECT concat_ws('|', SID_USER, rowcount, alarmuse) FROM TMPR_ALM_SETTING"), "1|3|0");
}

}  // namespace
