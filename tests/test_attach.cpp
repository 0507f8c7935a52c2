// Attachment files without a database: source and target paths of both layouts,
// target names, the tolerant copy with its encoding fall-backs, the copy's report,
// and the renaming of file names by the attachment writer.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convcom/ConvDBEntryAttach.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "TestSupport.h"

using namespace testsupport;

namespace {

// 予定表.txt and 会議資料.pdf in the encodings the old server stored names in.
const std::string kScheduleUtf8 = "予定表.txt";
const std::string kScheduleEuc = "\xCD\xBD\xC4\xEA\xC9\xBD.txt";
const std::string kMinutesUtf8 = "会議資料.pdf";
const std::string kMinutesSjis = "\x89\xEF\x8B\x63\x8E\x91\x97\xBF.pdf";

// Applications whose databases stand in as opened.
class EntApp : public ConvApp {
public:
    using ConvApp::ConvApp;
    int32_t OpenDatabases() override { return 0; }
};
class StdApp : public ConvAppStd {
public:
    using ConvAppStd::ConvAppStd;
    int32_t OpenDatabases() override { return 0; }
};

// A run's directories under a temporary root, with an optional settings file.
template <class App>
struct AppRun {
    explicit AppRun(const std::string& root, const std::string& settings = "")
        : args(RunArgs(root, "create", "1")), app(args.Argc(), args.Argv(), "sch") {
        MakeDirs(root + "/conv/log");
        if (!settings.empty()) WriteFile(root + "/target/data/app", settings);
        ok = app.Init("添付") == 0;
    }
    ~AppRun() { app.End(); }
    Args args;
    App app;
    bool ok = false;
};

std::string Path(void (ConvApp::*append)(std::string&, const char*), ConvApp& app, std::string path, const char* id) {
    (app.*append)(path, id);
    return path;
}

// The source and the target root of the application's files.
std::string Roots(ConvApp& app) {
    std::string source, target;
    app.GetSourceFileRoot(source);
    app.GetTargetFileRoot(target);
    return source + " -> " + target;
}

std::vector<std::string> UserLog(const std::string& root) { return LogLines(root + "/conv/log/sch.log"); }

}  // namespace

TEST(AttachPaths, EnterpriseLayoutHasCorporateAndBucketDirectories) {
    TempDir dir;
    AppRun<EntApp> run(dir.Path());
    ASSERT_TRUE(run.ok);
    ConvApp& app = run.app;
    EXPECT_EQ(Roots(app), dir / "store/file/1/ -> " + dir / "target/file/1/");

    EXPECT_EQ(Path(&ConvApp::AppendUserDir, app, "", "1234"), "user/2/1234/");
    EXPECT_EQ(Path(&ConvApp::AppendUserDir, app, "schedule", "999"), "schedule/user/1/999/");
    EXPECT_EQ(Path(&ConvApp::AppendIdDir, app, "agenda/", "1234"), "agenda/2/1234/");
    EXPECT_EQ(Path(&ConvApp::AppendIdDir, app, "agenda/", "x9"), "agenda/1/x9/");  // not a number: bucket 1
    std::string plain = "plant";
    app.AppendNumberedDir(plain, "1234", false);
    EXPECT_EQ(plain, "plant/1234/");

    // Target names keep the last extension of the source name.
    auto name = [&](std::string path, int number, const std::string& fileName) {
        app.AppendAttachName(path, number, fileName.c_str());
        return path;
    };
    EXPECT_EQ(name("agenda/2/1234", 7, "report.txt"), "agenda/2/1234/attach00007.txt");
    EXPECT_EQ(name("", 100000, "a.tar.gz"), "attach100000.gz");
    EXPECT_EQ(name("x/", 12, "README"), "x/attach00012");
    // Only the first 255 bytes of the name are searched for the extension.
    EXPECT_EQ(name("", 1, std::string(255, 'n') + ".txt"), "attach00001");
}

TEST(AttachPaths, UnitZeroDropsTheBucketAndSettingsMoveTheTargetRoot) {
    TempDir dir;
    AppRun<EntApp> run(dir.Path(), "maxdir=0\ncid=3\ndbdirfile=" + dir.Path() + "/files\n");
    ASSERT_TRUE(run.ok);
    EXPECT_EQ(Roots(run.app), dir / "store/file/3/ -> " + dir / "files/3/");
    EXPECT_EQ(Path(&ConvApp::AppendUserDir, run.app, "", "1234"), "user/1234/");
}

TEST(AttachPaths, FlatStoreHasNeitherCorporateNorBucketDirectories) {
    TempDir dir;
    AppRun<StdApp> run(dir.Path());
    ASSERT_TRUE(run.ok);
    ConvApp& app = run.app;  // through the base, as the writers call it
    EXPECT_EQ(Roots(app), dir / "store/file/ -> " + dir / "target/file/1/");
    EXPECT_EQ(Path(&ConvApp::AppendUserDir, app, "", "1234"), "user/1234/");
    EXPECT_EQ(Path(&ConvApp::AppendIdDir, app, "agenda", "1234"), "agenda/1234/");
}

TEST(AttachCopy, FindsNamesStoredInEucJpAndShiftJis) {
    TempDir dir;
    WriteFile(dir / ("src/" + kScheduleEuc), "euc");
    WriteFile(dir / ("src/" + kMinutesSjis), "sjis");

    // A directory target takes the UTF-8 name of the argument; missing
    // directories are created.
    ASSERT_EQ(CopyFileTolerant((dir / ("src/" + kScheduleUtf8)).c_str(), (dir / "out/a/b/").c_str()), 0);
    EXPECT_EQ(ReadFile(dir / ("out/a/b/" + kScheduleUtf8)), "euc");
    EXPECT_FALSE(Exists(dir / ("out/a/b/" + kScheduleEuc)));

    // The Shift_JIS form is found second; a named target keeps its name.
    ASSERT_EQ(CopyFileTolerant((dir / ("src/" + kMinutesUtf8)).c_str(), (dir / "out/attach00001.pdf").c_str()), 0);
    EXPECT_EQ(ReadFile(dir / "out/attach00001.pdf"), "sjis");
}

TEST(AttachCopy, MissingNameIsTriedWithoutItsLastExtension) {
    TempDir dir;
    WriteFile(dir / "src/report", "plain");
    WriteFile(dir / "src/a.tar", "tar");
    WriteFile(dir / "v2", "not this one");
    MakeDirs(dir / "src/tree");

    ASSERT_EQ(CopyFileTolerant((dir / "src/report.txt").c_str(), (dir / "out/").c_str()), 0);
    EXPECT_EQ(ReadFile(dir / "out/report.txt"), "plain");
    ASSERT_EQ(CopyFileTolerant((dir / "src/a.tar.gz").c_str(), (dir / "out/x").c_str()), 0);
    EXPECT_EQ(ReadFile(dir / "out/x"), "tar");

    // Only a dot in the file's own name is cut, never one of a directory.
    errno = 0;
    EXPECT_EQ(CopyFileTolerant((dir / "v2.d/readme").c_str(), (dir / "out/y").c_str()), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(Exists(dir / "out/y"));
    // A name that leads to a directory isn't copied as an empty file.
    EXPECT_EQ(CopyFileTolerant((dir / "src/tree.gz").c_str(), (dir / "out/z").c_str()), -1);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_FALSE(Exists(dir / "out/z"));
}

TEST(AttachCopy, ReportsWarningForMissingAndErrorForDiskFull) {
    TempDir dir;
    const std::string from = dir / "store/file/1/schedule/1/5/";
    const std::string to = dir / "target/file/1/";
    {
        AppRun<EntApp> run(dir.Path());
        ASSERT_TRUE(run.ok);
        ConvApp& app = run.app;
        WriteFile(from + "data.bin", std::string(10000, 'd'));

        EXPECT_EQ(app.CopyAttachFile("schedule/1/5/data.bin", "schedule/abc/", "資料"), 0);
        EXPECT_EQ(ReadFile(to + "schedule/abc/data.bin").size(), 10000u);
        EXPECT_EQ(app.StatusWord(), 0);

        EXPECT_EQ(app.CopyAttachFile("schedule/1/5/gone.txt", "schedule/abc/", "消えた"), 1);
        EXPECT_EQ(app.StatusWord(), 1);
        // A target directory blocked by a file is a warning as well.
        WriteFile(to + "blocker", "");
        EXPECT_EQ(app.CopyAttachFile("schedule/1/5/data.bin", "blocker/sub/x", "塞がれた"), 1);

        // Disk full: the target is a link to /dev/full; the failed copy removes
        // the link, not the device.
        ASSERT_EQ(symlink("/dev/full", (to + "full").c_str()), 0);
        EXPECT_EQ(app.CopyAttachFile("schedule/1/5/data.bin", "full", "満杯"), -80);
        EXPECT_EQ(app.StatusWord(), -80);
        EXPECT_FALSE(Exists(to + "full"));
        EXPECT_TRUE(Exists("/dev/full"));
    }
    const std::vector<std::string> log = UserLog(dir.Path());
    auto has = [&](const std::string& line) { return std::find(log.begin(), log.end(), line) != log.end(); };
    EXPECT_TRUE(has("[WARN] 添付ファイルの複写に失敗しました。Name=[消えた] From=[" + from + "gone.txt] To=[" + to +
                    "schedule/abc/] エラー詳細[No such file or directory]"));
    EXPECT_TRUE(has("[WARN] 添付ファイルの複写に失敗しました。Name=[塞がれた] From=[" + from + "data.bin] To=[" + to +
                    "blocker/sub/x] エラー詳細[Not a directory]"));
    EXPECT_TRUE(has("[ERR] 添付ファイルの複写に失敗しました。Name=[満杯] From=[" + from + "data.bin] To=[" + to +
                    "full] エラー詳細[No space left on device]"));
}

// A stored name that leads out of the store's tree reads nothing there: it is a
// missing file to the report, and the row goes on.
TEST(AttachCopy, StoredNameLeavingTheTreeIsRefusedLikeAMissingFile) {
    TempDir dir;
    const std::string from = dir / "store/file/1/";
    const std::string to = dir / "target/file/1/";
    WriteFile(dir / "secret", "outside");
    WriteFile(from + "schedule/1/5/ok.txt", "inside");
    {
        AppRun<EntApp> run(dir.Path());
        ASSERT_TRUE(run.ok);
        ConvApp& app = run.app;
        EXPECT_EQ(app.CopyAttachFile("schedule/1/5/../../../../../../secret", "schedule/a/", "外"), 1);
        EXPECT_EQ(app.CopyAttachFile((dir / "secret").c_str(), "schedule/b/", "絶対"), 1);
        EXPECT_EQ(app.CopyAttachFile("schedule/1/5/..", "schedule/c/", "親"), 1);
        // A dot or two inside a name is no step upward.
        WriteFile(from + "schedule/1/5/..x..", "dots");
        EXPECT_EQ(app.CopyAttachFile("schedule/1/5/..x..", "schedule/d/", "点"), 0);
        EXPECT_EQ(app.CopyAttachFile("schedule/1/5/./ok.txt", "schedule/e/", "内"), 0);
    }
    EXPECT_FALSE(Exists(to + "schedule/a/secret"));
    EXPECT_FALSE(Exists(to + "schedule/b/secret"));
    EXPECT_EQ(ReadFile(to + "schedule/d/..x.."), "dots");
    EXPECT_EQ(ReadFile(to + "schedule/e/ok.txt"), "inside");
    const std::vector<std::string> log = UserLog(dir.Path());
    auto has = [&](const std::string& line) { return std::find(log.begin(), log.end(), line) != log.end(); };
    EXPECT_TRUE(has("[WARN] 添付ファイルの複写に失敗しました。Name=[外] From=[" + from +
                    "schedule/1/5/../../../../../../secret] To=[" + to +
                    "schedule/a/] エラー詳細[No such file or directory]"));
}

TEST(AttachCopy, ReadTextFileReadsPastOnePiece) {
    TempDir dir;
    std::string text;
    for (int i = 0; i < 3000; ++i) text += "line " + std::to_string(i) + "\n";
    ASSERT_GT(text.size(), 8191u * 2);
    WriteFile(dir / "t.txt", text);
    std::string out = "old";
    EXPECT_EQ(ReadTextFile((dir / "t.txt").c_str(), out), 0);
    EXPECT_EQ(out, text);
    EXPECT_EQ(ReadTextFile((dir / "none").c_str(), out), -1);
    EXPECT_EQ(out, "");
}

TEST(AttachNames, ShortNumericStemsBecomeAttachNames) {
    TempDir dir;
    Args args(RunArgs(dir.Path(), "create", "1"));
    EntApp app(args.Argc(), args.Argv(), "sch");
    ConvDBEntryAttach writer(&app, nullptr);

    const std::pair<std::string, std::string> cases[] = {
        {"7", "attach00007"},
        {"12.txt", "attach00012.txt"},
        {"attach00012.txt", "attach00012.txt"},
        {"123456.txt", "123456.txt"},  // a six-character stem stays
        {"ab.doc", "attach00000.doc"},  // not a number: 0
        {"1.2.3", "attach00001.3"},     // the extension is behind the last dot
        {"", ""},
    };
    for (const auto& [in, out] : cases) {
        std::string name = in;
        EXPECT_EQ(writer.NormalizeFileName(name), 0);
        EXPECT_EQ(name, out) << in;
    }

    auto path = [&](std::string p) {
        EXPECT_EQ(writer.NormalizePath(p), 0);
        return p;
    };
    EXPECT_EQ(path("schedule/1/12.txt"), "schedule/1/attach00012.txt");
    EXPECT_EQ(path("schedule/1/"), "schedule/1/");
    EXPECT_EQ(path("5"), "attach00005");
}
