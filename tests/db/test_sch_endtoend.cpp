// Schedules from the flat store to the target in whole runs of the program:
// every kind of entry, one entry in three owners' files, attached files under
// EUC-JP and Shift_JIS names, and records that are left out, each run under
// another host time zone with the same result.
#include <gtest/gtest.h>
#include <time.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "MakeConvSToKiv/mainconvsch/ConvMainSchStd.h"
#include "PgCluster.h"
#include "ShippedRun.h"
#include "TestSupport.h"

using namespace testsupport;

namespace {

const std::string kSource = CONV_SOURCE_DIR;
constexpr const char* kEnt = "e2e_ent";
constexpr const char* kKiv = "e2e_kiv";

struct ChildRun {
    Args* args;
    const char* zone;
};

int RunInZone(void* arg) {
    auto* run = static_cast<ChildRun*>(arg);
    setenv("TZ", run->zone, 1);
    tzset();
    ConvMainSchStd program;
    return program.Run(run->args->Argc(), run->args->Argv());
}

// One schedule object of a flat file; fields in "key=value" lines.
std::string Object(const std::string& id, const std::vector<std::string>& fields,
                   const std::string& nested = "") {
    std::string text = "object " + id + "\n";
    for (const std::string& field : fields) text += field + "\n";
    return text + nested + "end\n";
}

std::string List(const std::string& name, const std::vector<std::string>& entries) {
    std::string text = "object " + name + "\n";
    for (std::size_t i = 0; i < entries.size(); ++i) text += std::to_string(i + 1) + "=" + entries[i] + "\n";
    return text + "end\n";
}

class SchEndToEnd : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(PrepareShippedRun(dir_.Path(), kEnt, kKiv));
        ASSERT_EQ(system(("cp -r " + kSource + "/examples/target " + dir_.Path() + "/target").c_str()),
                  0);
        WriteStore();
    }

    void Store(const std::string& path, const std::string& utf8) { WriteFile(dir_ / ("store/" + path), Euc(utf8)); }

    void WriteStore() {
        Store("data/user/index", "u7=7\nu8=8\n_lastid=8\n");
        Store("data/user/7/info", "object 7\nName=七\nend\n");
        Store("data/user/8/info", "object 8\nName=八\nend\n");
        Store("data/group/index", "g3=3\n_lastid=3\n");
        Store("data/group/3/info", "object 3\nName=三課\nend\n");
        Store("data/user/7/group/index", "p2=2\n_lastid=2\n");
        Store("data/user/7/group/2/info", "object 2\nName=個人\nend\n");

        std::string user7;
        auto entry = [&](const char* id, const char* start, const char* end, const char* st, const char* et,
                         const char* repeat, const char* weekdays, const char* event,
                         const std::string& nested = "") {
            std::vector<std::string> f = {std::string("startdate=") + start, std::string("event=") + event,
                                          "creuser=7"};
            if (end) f.push_back(std::string("enddate=") + end);
            if (st) f.push_back(std::string("starttime=") + st);
            if (et) f.push_back(std::string("endtime=") + et);
            if (repeat) f.push_back(std::string("repeat=") + repeat);
            if (weekdays) f.push_back(std::string("everyweekday=") + weekdays);
            user7 += Object(id, f, nested);
        };
        entry("1", "20130101", "20130101", "0800", "1000", nullptr, nullptr, "plain");
        entry("35", "20120105", "20121231", "0800", "0900", "m", nullptr, "monthly");
        entry("36", "20120403", "20120430", "0100", "0200", "w", "0100000", "weekly");
        entry("37", "20120601", "20120610", "2200", "2430", "d", nullptr, "daily late");
        entry("38", "20120601", "20120601", "2200", "2430", nullptr, nullptr, "late, once");
        entry("39", "20120601", "20120601", "2400", nullptr, nullptr, nullptr, "start 2400");
        entry("40", "20120601", nullptr, nullptr, nullptr, nullptr, nullptr, "no end");
        entry("41", "20120601", "21000101", nullptr, nullptr, nullptr, nullptr, "past 2099");
        entry("42", "20120601", "20991231", nullptr, nullptr, nullptr, nullptr, "end 2099");
        entry("43", "20120301", "20120301", "0800", "0900", nullptr, nullptr, "leap day");
        entry("44", "20120105", "20121231", "0800", "0700", "y", nullptr, "yearly over midnight");
        entry("45", "20120403", "20120410", "0100", "0130", "1", nullptr, "listed",
              List("dates", {"20120403", "20120410"}) + List("deldates", {"20120410"}));
        // Files: one under its EUC-JP name, one under its Shift_JIS name, one missing.
        entry("1234567", "20240110", nullptr, "0930", "1030", nullptr, nullptr, "with files",
              List("attach", {"議事録.txt", "資料.pdf", "gone.txt"}) + List("attachdisp", {"議事録", "資料", "gone"}) +
                  List("mimetype", {"text/plain", "application/pdf", "text/plain"}));
        // Left out by stage A: a bad start date (its file stays behind), text
        // in a number key; an over-long memo is cut.
        user7 += Object("60", {"startdate=20120230", "event=bad date"}, List("attach", {"left.txt"}));
        user7 += Object("61", {"startdate=20120601", "iconno=abc", "event=bad number"});
        user7 += Object("62", {"startdate=20120601", "event=long memo", "memo=" + std::string(2100, 'm')});
        // Made by user 8; it stands in user 7's, user 8's and group 3's files.
        const std::vector<std::string> shared = {"startdate=20240110", "starttime=0930", "endtime=1030",
                                                 "event=会議", "creuser=8"};
        std::vector<std::string> withAlarm = shared;
        withAlarm.insert(withAlarm.end(), {"alarm=1", "alarmtime=15", "alarmcnt=1"});
        user7 += Object("500", withAlarm);
        Store("data/user/7/schedule", user7);
        Store("data/user/8/schedule", Object("500", shared));
        Store("data/group/3/schedule", Object("500", shared));
        Store("data/user/7/group/2/schedule", Object("501", {"startdate=20240111", "event=個人グループ", "creuser=7"}));

        const std::string files = dir_ / "store/file/user/7/schedule/1234567/";
        WriteFile(files + Euc("議事録.txt"), "minutes\n");
        WriteFile(files + "\x8E\x91\x97\xBF.pdf", std::string("%PDF\0\x01\xff", 7));
        WriteFile(dir_ / "store/file/user/7/schedule/60/left.txt", "not copied");
    }

    ChildResult RunCreate() {
        PgCluster& c = TestCluster();
        Args args({"convsch", dir_.Path(), "0", "create", dir_ / "store", c.Host(), c.PortText(), c.User(),
                   c.Password(), dir_ / "target", c.Host(), c.PortText(), c.User(), c.Password(), kEnt, kKiv});
        ChildRun run{&args, GetParam()};
        return RunInChild(RunInZone, &run);
    }

    std::vector<std::string> Kiv(const std::string& sql) { return RowLines(kKiv, sql); }
    std::vector<std::string> LogLinesWith(const std::string& part) const {
        std::vector<std::string> out;
        for (const std::string& line : LogLines(dir_ / "conv/log/sch.log"))
            if (line.find(part) != std::string::npos) out.push_back(line);
        return out;
    }
    std::string Status() const { return StatusValue(dir_ / "conv/sch.sts", "status"); }

    TempDir dir_;
};

}  // namespace

TEST_P(SchEndToEnd, SchedulesArriveInUtcWithTheirFilesWhateverTheHostZone) {
    const ChildResult r = RunCreate();
    EXPECT_EQ(r.status, 0) << r.out;
    // Rows and a file were left out: the run ends with warnings.
    EXPECT_EQ(Status(), "2");

    EXPECT_EQ(Kiv("SELECT ID, startdate, enddate, starttime, endtime, repeat, everyweekday, event FROM TT_SCHEDULE"
                  " ORDER BY ID"),
              (std::vector<std::string>{
                  "000000000001|20121231|20130101|2300|0100|-|-|plain",
                  "00000000000z|20120105|20121231|-0100|0000|m|-|monthly",
                  "000000000010|20120402|20120429|1600|1700|w|1000000|weekly",
                  "000000000011|20120601|20120610|1300|1530|d|-|daily late",
                  "000000000012|20120601|20120601|1300|1530|-|-|late, once",
                  "000000000013|20120601|20120601|1455|-|-|-|start 2400",
                  "000000000014|20120601|20371231|-|-|-|-|no end",
                  "000000000015|20120601|20991231|-|-|-|-|past 2099",
                  "000000000016|20120601|20991231|-|-|-|-|end 2099",
                  "000000000017|20120229|20120301|2300|0000|-|-|leap day",
                  "000000000018|20120105|20121231|-0100|2200|y|-|yearly over midnight",
                  "000000000019|20120402|20120409|1600|1630|r|-|listed",
                  "00000000001q|20120601|20371231|-|-|-|-|long memo",
                  "0000000000dw|20240110|20371231|0030|0130|-|-|会議",
                  "0000000000dx|20240111|20371231|-|-|-|-|個人グループ",
                  "00000000qglj|20240110|20371231|0030|0130|-|-|with files",
              }));
    EXPECT_EQ(Kiv("SELECT length(memo) FROM TT_SCHEDULE WHERE ID = '00000000001q'"), std::vector<std::string>{"2047"});
    EXPECT_EQ(Kiv("SELECT ID, SID_ASSIGN, deldates FROM TT_SCH_REPDATE ORDER BY 1, 2, 3"),
              (std::vector<std::string>{"000000000019|20120402|0", "000000000019|20120409|0",
                                        "000000000019|20120409|1"}));

    // One entry in three owners' files: one schedule, three destinations, the
    // information of both users and user 7's alarm.
    EXPECT_EQ(Kiv("SELECT otherto_type, SID_USER, SID_ASSIGN FROM TT_SCHEDULE_OTHERTO WHERE ID = '0000000000dw'"
                  " ORDER BY 1, 2, 3"),
              (std::vector<std::string>{"1|0|7", "1|0|8", "2|0|3"}));
    EXPECT_EQ(Kiv("SELECT otherto_type, SID_USER, SID_ASSIGN FROM TT_SCHEDULE_OTHERTO WHERE ID = '0000000000dx'"),
              std::vector<std::string>{"3|7|2"});
    EXPECT_EQ(Kiv("SELECT SID_ASSIGN, alarm FROM TT_SCHEDULE_USERINFO WHERE ID = '0000000000dw' ORDER BY 1"),
              (std::vector<std::string>{"7|1", "8|-"}));
    EXPECT_EQ(Kiv("SELECT SID_USER, DID, SENDTIME FROM TTPR_ALARM"),
              std::vector<std::string>{"7|0000000000dw|20240110001500"});

    // Files arrive byte-equal under their UTF-8 names; the missing one keeps its row.
    const std::string target = dir_ / "target/file/1/schedule/123456/00000000qglj/";
    EXPECT_EQ(ReadFile(target + "議事録.txt"), "minutes\n");
    EXPECT_EQ(ReadFile(target + "資料.pdf"), std::string("%PDF\0\x01\xff", 7));
    EXPECT_EQ(Kiv("SELECT SID_ATTACH, filename FROM TT_ATTACH_SCHEDULE ORDER BY 1"),
              (std::vector<std::string>{"1|議事録.txt", "2|資料.pdf", "3|gone.txt"}));
    EXPECT_EQ(LogLinesWith("[WARN] 添付ファイルの複写に失敗しました。Name=[gone]").size(), 1u);
    // The records left out by stage A are reported and copy nothing.
    EXPECT_EQ(LogLinesWith("開始日付[20120230]が不正ですが処理を続行しました。").size(), 1u);
    EXPECT_EQ(LogLinesWith("数値型の項目に文字列が指定されたため、登録を行いませんでした。field=[iconno] value=[abc]").size(),
              1u);
    EXPECT_EQ(LogLinesWith("[memo]の値が桁数オーバーとなるため、[2047]文字でカットして登録しました。").size(), 1u);
    EXPECT_FALSE(Exists(dir_ / "target/file/1/schedule/60"));
}

INSTANTIATE_TEST_SUITE_P(HostZones, SchEndToEnd, ::testing::Values("America/New_York", "Asia/Kolkata"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             return info.index == 0 ? std::string("NewYork") : std::string("Kolkata");
                         });
