// The application object without databases: start-up, paths, the status file
// through a run's functions, and the two logs that reports write.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "TestSupport.h"
#include "base/NUFileIO.h"
#include "base/NUioObj.h"
#include "base/comClock.h"
#include "base/comFile.h"
#include "base/comLog.h"
#include "base/comTime.h"

using namespace testsupport;

namespace {

// The application with its databases standing in as opened.
class StandInApp : public ConvAppStd {
public:
    using ConvAppStd::ConvAppStd;
    int32_t OpenDatabases() override { return 0; }
};

const char kLabel[] = "スケジュール、設備予約、議事録、来訪者管理";

struct AppRun {
    // The logs need conv/log/, which the program doesn't create.
    explicit AppRun(const std::string& root, const std::string& mode = "create")
        : args(RunArgs(root, mode, "1")), app(args.Argc(), args.Argv(), "sch") {
        MakeDirs(root + "/conv/log");
    }
    Args args;
    StandInApp app;
};

std::vector<std::string> UserLog(const std::string& root) { return LogLines(root + "/conv/log/sch.log"); }

std::vector<std::string> Trace(const std::string& path) {
    TraceLog log = ReadTrace(path);
    EXPECT_TRUE(log.wellFormed);
    return log.reports;
}

int g_sleepsOfOneSecond = 0;
void CountSleep(unsigned seconds) {
    if (seconds == 1) ++g_sleepsOfOneSecond;
}

}  // namespace

TEST(ConvApp, ArgumentsPathsAndScripts) {
    TempDir dir;
    std::vector<std::string> values = RunArgs(dir.Path(), "create", "1");
    values[1] = dir.Path();  // no trailing slash
    values[9] = "/opt/target\\";
    Args args(values);
    StandInApp app(args.Argc(), args.Argv(), "sch");
    app.ReadArguments();
    app.SetupPaths();
    EXPECT_EQ(app.RootPath(), dir.Path() + "/");
    EXPECT_EQ(app.TargetRoot(), "/opt/target\\");
    EXPECT_EQ(app.SourceDataRoot(), dir.Path() + "/store/data/");
    EXPECT_EQ(app.SourceFileRoot(), dir.Path() + "/store/file/");
    EXPECT_EQ(app.CommitInterval(), 1);  // the flat-store run ignores argument 2
    EXPECT_EQ(std::string(app.GetSqlScriptPath("TT_SCHEDULE")), dir.Path() + "/sql/sch/TT_SCHEDULE.sql");
    EXPECT_TRUE(app.IsCreateMode());
    EXPECT_EQ(app.GetArgument(16), nullptr);
    EXPECT_EQ(std::string(app.GetArgument(14)), "entdb");

    std::string empty;
    ConvApp::EnsureSlash(empty);
    EXPECT_EQ(empty, "");
}

TEST(ConvApp, FunctionsLeaveOneMessageEachAndRunEndsWithZero) {
    TempDir dir;
    {
        AppRun run(dir.Path());
        ConvApp& app = run.app;
        ASSERT_EQ(app.Init(kLabel), 0);
        const std::string status = dir / "conv/sch.sts";
        EXPECT_EQ(StatusValues(status, "status"), std::vector<std::string>{"1"});
        EXPECT_TRUE(IsDigits(StatusValues(status, "sdate").at(0), 14));
        EXPECT_EQ(StatusValues(status, "edate"), std::vector<std::string>{""});

        app.PutMessage("", 10, 0, 0);
        app.PutMessage("", 11, 0, 0);
        app.SetFunction("スケジュール、設備予約", false);
        app.PutMessage("", 12, 0, 0);
        app.PutMessage("スケジュール", 3, 0, 0);
        app.PutMessage(nullptr, 4, 10, 5);
        EXPECT_EQ(StatusValues(dir / "conv/sch.sts", "dispmsg").back(), "スケジュール 10件中5件が移行済みです。");
        app.PutMessage(nullptr, 6, 10, 2);
        app.SetFunction("議事録", true);
        ASSERT_EQ(app.End(), 0);
    }
    const std::string status = dir / "conv/sch.sts";
    EXPECT_EQ(StatusValues(status, "status"), std::vector<std::string>{"0"});
    EXPECT_TRUE(IsDigits(StatusValues(status, "edate").at(0), 14));
    EXPECT_EQ(StatusValues(status, "dispmsg"),
              (std::vector<std::string>{
                  "スケジュール、設備予約機能の移行を終了しました。スケジュールは10件移行しました。(成功：8 失敗：2)",
                  "議事録機能の移行を終了しました。"}));

    std::vector<std::string> log = UserLog(dir.Path());
    const std::vector<std::string> expected = {
        "[INFO] スケジュール、設備予約、議事録、来訪者管理機能の移行の前準備を開始します。",
        "[INFO] スケジュール、設備予約、議事録、来訪者管理機能の移行の前準備が終了しました。",
        "[INFO] スケジュール、設備予約機能の移行を開始します。",
        "[INFO] スケジュール 移行を開始します。",
        "[INFO] スケジュール 10件移行が終了しました。(成功：8 失敗：2)",
        "[INFO] スケジュール、設備予約機能の移行を終了しました。スケジュールは10件移行しました。(成功：8 失敗：2)",
        "[INFO] 議事録機能の移行を開始します。",
        "[INFO] 議事録機能の移行を終了しました。",
    };
    EXPECT_EQ(log, expected);  // the progress message of code 4 reaches no log
}

TEST(ConvApp, FinalStatusByWarningsAndFailures) {
    {
        // A row left out in the first function only: "2", though statusWord is 0 at the end.
        TempDir dir;
        {
            AppRun run(dir.Path());
            ASSERT_EQ(run.app.Init(kLabel), 0);
            run.app.SetFunction("スケジュール、設備予約", true);
            run.app.ReportError(1, "t", 1, true, nullptr, "left out");
            run.app.SetFunction("議事録", true);
            EXPECT_EQ(run.app.StatusWord(), 0);
            run.app.End();
        }
        EXPECT_EQ(StatusValues(dir / "conv/sch.sts", "status"), std::vector<std::string>{"2"});
    }
    {
        // A negative code: "3", and the function isn't closed with its summary.
        TempDir dir;
        {
            AppRun run(dir.Path());
            ASSERT_EQ(run.app.Init(kLabel), 0);
            run.app.SetFunction("議事録", true);
            run.app.ReportError(-1006, "t", 1, false, nullptr, nullptr);
            run.app.End();
        }
        const std::string status = dir / "conv/sch.sts";
        EXPECT_EQ(StatusValues(status, "status"), std::vector<std::string>{"3"});
        EXPECT_EQ(StatusValues(status, "dispmsg").back(), "移行を中断しました。");
    }
}

TEST(ConvApp, ReportsWriteHexTraceAndTaggedUserLines) {
    TempDir dir;
    AppRun run(dir.Path());
    ASSERT_EQ(run.app.Init(kLabel), 0);
    ConvApp& app = run.app;
    app.ReportError(2, "MakeConvEToKiv/convcom/X", 12, true, "the/path", "warn %d", 7);
    app.ReportError(-3, "src", 5, true, nullptr, nullptr);
    app.ReportError(-1012, "src", 6, false, nullptr, "a\r\nb");
    app.ReportError(1, "src", 7, false, nullptr, "hidden");
    app.ReportError(0, nullptr, 0, true, nullptr, "plain");
    const std::string longText(6000, 'x');
    app.ReportError(-1, "src", 8, false, nullptr, "%s", longText.c_str());

    std::vector<std::string> trace = Trace(dir / "conv/log/sch_trace.log");
    // A report longer than a log line is cut between two bytes and still decodes.
    const std::string cut = trace.back();
    trace.pop_back();
    EXPECT_EQ(cut.rfind("[src:8] [ret=-1]  [msg=xxx", 0), 0u);
    EXPECT_EQ(cut.size(), 4095u);
    std::vector<std::string> tail(trace.end() - 5, trace.end());
    EXPECT_EQ(tail[0], "[MakeConvEToKiv/convcom/X:12] [ret=1]  [msg=warn 7] [detail=the/path]");
    EXPECT_EQ(tail[1], "[src:5] [ret=-3] ");  // no text: ends in a blank
    EXPECT_EQ(tail[2], "[src:6] [ret=-1012]  [msg=a\nb]");  // CR dropped, LF kept
    EXPECT_EQ(tail[3], "[src:7] [ret=1]  [msg=hidden]");
    EXPECT_EQ(tail[4], "plain");

    std::vector<std::string> log = UserLog(dir.Path());
    std::vector<std::string> userTail(log.end() - 2, log.end());
    EXPECT_EQ(userTail, (std::vector<std::string>{"[WARN] warn 7", "[INFO] plain"}));
    EXPECT_EQ(app.StatusWord(), -1);  // the last non-zero code; plain messages leave it alone
    app.End();
}

TEST(ConvApp, GatheredTraceTextLongerThanALogLineStillDecodes) {
    TempDir dir;
    AppRun run(dir.Path());
    ASSERT_EQ(run.app.Init(kLabel), 0);
    // Three short lines put the long one at an odd offset of the gathered text.
    for (int i = 0; i < 3; ++i) comTrace("%s", std::string(200, 'a').c_str());
    comTrace("%s", std::string(5000, 'b').c_str());
    run.app.ReportError(-1, "src", 9, false, nullptr, nullptr);
    run.app.ReportError(-2, "src", 10, false, nullptr, nullptr);

    std::vector<std::string> trace = Trace(dir / "conv/log/sch_trace.log");
    ASSERT_GE(trace.size(), 3u);
    EXPECT_EQ(trace.back(), "[src:10] [ret=-2] ");
    EXPECT_EQ(trace[trace.size() - 2], "[src:9] [ret=-1] ");
    const std::string gathered = trace[trace.size() - 3];
    EXPECT_EQ(gathered.rfind(std::string(200, 'a') + "\n", 0), 0u);
    EXPECT_EQ(gathered.back(), 'b');  // cut inside the long line, between two bytes
    run.app.End();
}

// The notes of the base library (a failed copy, a time that doesn't convert)
// land in the trace log in both modes, before and after a report, encoded as
// the reports are; the program's end leaves no log set.
TEST(ConvApp, BaseLibraryNotesLandDecodableInTheTraceLog) {
    for (const char* mode : {"create", "clean"}) {
        SCOPED_TRACE(mode);
        TempDir dir;
        const std::string trace = dir.Path() + (std::string(mode) == "create" ? "/conv/log/sch_trace.log"
                                                                              : "/conv/log/sch_clean_trace.log");
        {
            AppRun run(dir.Path(), mode);
            ASSERT_EQ(run.app.Init(kLabel), 0);
            char date[16] = {}, time[16] = {};
            EXPECT_EQ(LocalToUtc("2004x", "1200", date, time), 1);
            run.app.ReportError(-1, "src", 9, true, nullptr, "text");
            const std::string missing = dir.Path() + "/no-such-file";
            EXPECT_EQ(comFileCopy(missing.c_str(), (dir.Path() + "/copy").c_str(), false), 0);
            const std::vector<std::string> reports = Trace(trace);
            ASSERT_EQ(reports.size(), 3u);
            EXPECT_EQ(reports[0], "error utc time[2004x][1200]");
            EXPECT_EQ(reports[1], "[src:9] [ret=-1]  [msg=text]");
            EXPECT_EQ(reports[2].rfind("copy file:open(O_RDONLY) path[" + missing + "] errno[", 0), 0u);
            run.app.End();
        }
        EXPECT_STREQ(comLogGetPath(), "");
    }
}

// Tolerated, traced failures between two reports cost constant time each: the
// gathered text keeps only what the trace log will write of it.
TEST(ConvApp, ManyTracedFailuresStayCheapAndWriteTheSameLine) {
    TempDir dir;
    AppRun run(dir.Path());
    ASSERT_EQ(run.app.Init(kLabel), 0);
    // What is held never grows past what one flush can write, however many
    // failures are traced: each append then costs the same.
    std::size_t held = 0;
    for (int i = 0; i < 50000; ++i) {
        comTrace("cut failed [%d] %s", i, std::string(90, 'x').c_str());
        held = std::max(held, std::strlen(GetErrorDetail()));
    }
    EXPECT_LT(held, 2 * CMSioObjApp::kErrorDetailKeep);
    run.app.ReportError(-1, "src", 9, false, nullptr, nullptr);
    const std::vector<std::string> trace = Trace(dir / "conv/log/sch_trace.log");
    ASSERT_GE(trace.size(), 2u);
    const std::string gathered = trace[trace.size() - 2];
    EXPECT_EQ(gathered.rfind("cut failed [0] " + std::string(90, 'x') + "\ncut failed [1] ", 0), 0u);
    EXPECT_EQ(trace.back(), "[src:9] [ret=-1] ");
    run.app.End();
}

TEST(ConvApp, FunctionStartedWithoutLabelDropsTheLastSummary) {
    TempDir dir;
    {
        AppRun run(dir.Path());
        ASSERT_EQ(run.app.Init(kLabel), 0);
        run.app.SetFunction("スケジュール、設備予約", false);
        run.app.PutMessage("スケジュール", 6, 4, 0);
        run.app.SetFunction("", true);  // an empty label is no label
        run.app.End();
    }
    EXPECT_EQ(StatusValues(dir / "conv/sch.sts", "dispmsg"),
              (std::vector<std::string>{
                  "スケジュール、設備予約機能の移行を終了しました。スケジュールは4件移行しました。(成功：4 失敗：0)",
                  "スケジュール、設備予約機能の移行を終了しました。"}));
}

TEST(ConvApp, StartRotatesLogsAndCleanModeHasNoUserLog) {
    TempDir dir;
    WriteFile(dir / "conv/log/sch.log", "run 2\n");
    WriteFile(dir / "conv/log/sch_back.log", "run 1\n");
    WriteFile(dir / "conv/log/sch_clean_trace.log", "clean 2\n");
    WriteFile(dir / "conv/log/sch_clean_trace_back.log", "clean 1\n");
    {
        AppRun run(dir.Path(), "clean");
        ASSERT_EQ(run.app.Init(kLabel), 0);
        EXPECT_STREQ(run.app.LogPath(), "");
        run.app.ReportError(-5, "src", 1, true, nullptr, "only traced");
        run.app.End();
    }
    EXPECT_EQ(ReadFile(dir / "conv/log/sch_clean_trace_back.log"), "clean 2\n");
    EXPECT_EQ(ReadFile(dir / "conv/log/sch.log"), "run 2\n");  // the create logs are left alone
    EXPECT_EQ(Trace(dir / "conv/log/sch_clean_trace.log").back(), "[src:1] [ret=-5]  [msg=only traced]");
    EXPECT_EQ(StatusValues(dir / "conv/sch_clean.sts", "status"), std::vector<std::string>{"3"});

    {
        AppRun run(dir.Path(), "create");
        ASSERT_EQ(run.app.Init(kLabel), 0);
        run.app.End();
    }
    EXPECT_EQ(ReadFile(dir / "conv/log/sch_back.log"), "run 2\n");
}

TEST(ConvApp, BusyStatusLockIsRetriedThreeTimesThenFails) {
    TempDir dir;
    MakeDirs(dir / "conv/log");
    // A second process holds the lock until told to let go.
    int toChild[2], fromChild[2];
    ASSERT_EQ(pipe(toChild), 0);
    ASSERT_EQ(pipe(fromChild), 0);
    pid_t pid = fork();
    if (pid == 0) {
        NUioObjList list;
        list.SetPath((dir / "conv/sch.sts").c_str(), nullptr);
        list.AddValue("status", "1", nullptr);
        NUFileIO io;
        char c = io.WriteFile(&list, true) == 0 ? 'y' : 'n';
        (void)!write(fromChild[1], &c, 1);
        (void)!read(toChild[0], &c, 1);
        _exit(0);
    }
    char ready = 0;
    ASSERT_EQ(read(fromChild[0], &ready, 1), 1);
    ASSERT_EQ(ready, 'y');

    comSleepFunc previous = comSetSleepFunction(CountSleep);
    g_sleepsOfOneSecond = 0;
    {
        AppRun run(dir.Path());
        run.app.ReadArguments();
        run.app.SetupLogFiles();
        EXPECT_EQ(run.app.InitStatusFile(), -17);
    }
    comSetSleepFunction(previous);
    EXPECT_EQ(g_sleepsOfOneSecond, 3);

    char go = 'x';
    (void)!write(toChild[1], &go, 1);
    waitpid(pid, nullptr, 0);
}

TEST(ConvApp, OverlongPathsFailTheStartWithoutOverflow) {
    // A work root far beyond the 1,023 bytes of a path: neither the status file
    // nor the logs can be named, so the start fails and no file is written
    // anywhere else.
    TempDir dir;
    std::string deep = dir.Path();
    while (deep.size() < 3000) deep += "/" + std::string(200, 'd');
    std::vector<std::string> values = RunArgs(deep, "create", "1");
    Args args(values);
    StandInApp app(args.Argc(), args.Argv(), "sch");
    EXPECT_EQ(app.Init(kLabel), -1);
    app.End();
    EXPECT_STREQ(app.TracePath(), "");  // a cut path would name another file
    EXPECT_TRUE(std::filesystem::is_empty(dir.Path()));
}
