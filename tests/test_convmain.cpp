// The program as a whole: argument count, failed starts, the status file's lock
// between two processes, and the clean mode's files.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "TestSupport.h"
#include "base/NUFileIO.h"
#include "base/NUioObj.h"

using namespace testsupport;

namespace {

int ExecProgram(void* arg) {
    auto* args = static_cast<Args*>(arg);
    execv(CONVSCH_BINARY, args->Argv());
    return 127;
}


// The trace log exists, and every line of it decodes.
std::vector<std::string> ExpectTraceDecodes(const std::string& path) {
    TraceLog log = ReadTrace(path);
    EXPECT_TRUE(log.wellFormed) << path;
    EXPECT_FALSE(log.reports.empty()) << path;
    return log.reports;
}

}  // namespace

TEST(ConvMain, FourteenArgumentsPrintTwoMessagesAndTouchNothing) {
    TempDir dir;
    std::vector<std::string> values = RunArgs(dir.Path(), "create", "1");
    values.resize(15);  // program and 14 arguments
    Args args(values);
    ChildResult r = RunInChild(ExecProgram, &args);
    EXPECT_EQ(r.status, 253);
    EXPECT_EQ(r.out,
              "起動引数が不足しています。バッチプログラムに指定した引数を確認してください。\n"
              "起動引数の取得に失敗しました。バッチプログラムに指定した引数を確認してください。\n");
    EXPECT_FALSE(Exists(dir / "conv"));
}

TEST(ConvMain, FailedStartEndsWithStatusThreeRotatedLogsAndHexTrace) {
    TempDir dir;
    WriteFile(dir / "conv/log/sch.log", "old user log\n");
    WriteFile(dir / "conv/log/sch_trace.log", "old trace\n");
    WriteFile(dir / "conv/log/sch_back.log", "older user log\n");
    Args args(RunArgs(dir.Path(), "create", ClosedPort()));
    ChildResult r = RunInChild(RunProgram, &args);
    EXPECT_EQ(r.status, 253);
    EXPECT_EQ(r.out, "");

    const std::string status = dir / "conv/sch.sts";
    EXPECT_EQ(StatusValue(status, "status"), "3");
    EXPECT_TRUE(IsDigits(StatusValue(status, "sdate"), 14));
    EXPECT_TRUE(IsDigits(StatusValue(status, "edate"), 14));
    EXPECT_EQ(StatusValue(status, "dispmsg"), "移行を中断しました。");

    EXPECT_EQ(ReadFile(dir / "conv/log/sch_back.log"), "old user log\n");
    EXPECT_EQ(ReadFile(dir / "conv/log/sch_trace_back.log"), "old trace\n");
    const std::vector<std::string> userLines = LogLines(dir / "conv/log/sch.log");
    EXPECT_NE(std::find(userLines.begin(), userLines.end(), "[ERR] バッチプログラムを開始することができませんでした。"),
              userLines.end());
    EXPECT_EQ(userLines.back(), "[INFO] 移行を中断しました。");

    std::vector<std::string> trace = ExpectTraceDecodes(dir / "conv/log/sch_trace.log");
    bool sawStart = false;
    for (const std::string& line : trace) {
        if (line.find("ConvMainBase:") != std::string::npos &&
            line.find(" [msg=バッチプログラムを開始することができませんでした。]") != std::string::npos)
            sawStart = true;
    }
    EXPECT_TRUE(sawStart);
}

TEST(ConvMain, SecondRunInSameModeFailsOnTheStatusLock) {
    TempDir dir;
    MakeDirs(dir / "conv/log");
    // This process plays the first run: it holds the status file's lock.
    NUioObjList held;
    held.SetPath((dir / "conv/sch.sts").c_str(), nullptr);
    held.AddValue("status", "1", nullptr);
    NUFileIO io;
    ASSERT_EQ(io.WriteFile(&held, true), 0);
    const std::string before = ReadFile(dir / "conv/sch.sts");

    Args args(RunArgs(dir.Path(), "create", ClosedPort()));
    ChildResult r = RunInChild(RunProgram, &args);
    EXPECT_EQ(r.status, 253);
    EXPECT_EQ(ReadFile(dir / "conv/sch.sts"), before);

    std::vector<std::string> trace = ExpectTraceDecodes(dir / "conv/log/sch_trace.log");
    bool sawBusy = false;
    for (const std::string& line : trace)
        if (line.find("[ret=-17]") != std::string::npos && line.find("ConvApp_Status:") != std::string::npos)
            sawBusy = true;
    EXPECT_TRUE(sawBusy);
}

TEST(ConvMain, CleanModeWritesItsOwnStatusAndTraceButNoUserLog) {
    TempDir dir;
    MakeDirs(dir / "conv/log");
    Args args(RunArgs(dir.Path(), "Create", ClosedPort()));  // any word but "create" cleans
    ChildResult r = RunInChild(RunProgram, &args);
    EXPECT_EQ(r.status, 253);
    EXPECT_EQ(StatusValue(dir / "conv/sch_clean.sts", "status"), "3");
    EXPECT_EQ(StatusValue(dir / "conv/sch_clean.sts", "dispmsg"), "<none>");
    EXPECT_TRUE(Exists(dir / "conv/log/sch_clean_trace.log"));
    EXPECT_FALSE(Exists(dir / "conv/log/sch.log"));
    EXPECT_FALSE(Exists(dir / "conv/sch.sts"));
    ExpectTraceDecodes(dir / "conv/log/sch_clean_trace.log");
}
