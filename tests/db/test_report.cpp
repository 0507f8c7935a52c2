// The account of real create runs: a clean one, one that leaves rows out, one
// that fails, and one cut short while running (with and without its lock).
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convreport/ConvRunAccount.h"
#include "PgCluster.h"
#include "ShippedRun.h"
#include "TestSupport.h"

using namespace testsupport;

namespace {

const std::string kSource = CONV_SOURCE_DIR;

// Holds the run's lock from another process, as a running convsch does.
class LockHolder {
public:
    explicit LockHolder(const std::string& path) {
        int ready[2], release[2];
        if (pipe(ready) != 0 || pipe(release) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            close(ready[0]);
            close(release[1]);
            const int fd = open(path.c_str(), O_RDWR | O_CREAT, 0666);
            struct flock range{};
            range.l_type = F_WRLCK;
            range.l_whence = SEEK_SET;
            const char ok = (fd >= 0 && fcntl(fd, F_SETLK, &range) == 0) ? '1' : '0';
            if (write(ready[1], &ok, 1) != 1) _exit(1);
            char c;
            while (read(release[0], &c, 1) > 0) {
            }
            _exit(0);
        }
        close(ready[1]);
        close(release[0]);
        release_ = release[1];
        char ok = '0';
        held_ = read(ready[0], &ok, 1) == 1 && ok == '1';
        close(ready[0]);
    }
    ~LockHolder() {
        if (release_ >= 0) close(release_);
        if (pid_ > 0) waitpid(pid_, nullptr, 0);
    }
    LockHolder(const LockHolder&) = delete;
    LockHolder& operator=(const LockHolder&) = delete;
    bool Held() const { return held_; }

private:
    pid_t pid_ = -1;
    int release_ = -1;
    bool held_ = false;
};

class RunAccount : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(PrepareShippedRun(dir.Path(), kEnt, kKiv));
        PgCluster& pg = TestCluster();
        std::string error;
        WriteFile(dir / "store/data/user/index", "_lastid=0\n");
        ASSERT_TRUE(pg.Exec(kEnt,
                            "INSERT INTO TM_INDEX (SID_MODULE, SUBCODE, lastid) VALUES (1, '001', 60), (3, '001', 4);"
                            "INSERT INTO TMPR_SCH_EVENT (SID_USER, ID, ITEM) VALUES (5, 1, '会議'), (5, 2, 'it''s');",
                            &error))
            << error;
    }

    int Create() {
        Args args(ClusterRunArgs(dir.Path(), "create", dir / "store", kSource + "/examples/target", kEnt, kKiv));
        return RunInChild(RunProgram, &args).status;
    }

    static const ConvStep* Find(const ConvRunAccount& account, char stage, const std::string& label) {
        for (const ConvStep& step : account.steps)
            if (step.stage == stage && step.label == label) return &step;
        return nullptr;
    }

    static constexpr const char* kEnt = "report_ent";
    static constexpr const char* kKiv = "report_kiv";
    TempDir dir;
};

TEST_F(RunAccount, FinishedRunsGiveEveryStepAndEveryLeftOutRowWithItsKeys) {
    ASSERT_EQ(Create(), 0);
    ConvRunAccount account = convrun::ReadAccount(dir.Path());
    EXPECT_EQ(account.status.status, "0");
    EXPECT_FALSE(account.lockHeld);
    EXPECT_FALSE(account.aborted);
    ASSERT_FALSE(account.steps.empty());
    // Stage A first, then stage B, numbered within each, every step done.
    EXPECT_EQ(account.steps.front().stage, 'A');
    EXPECT_EQ(account.steps.front().label, "スケジュール共通設定");
    EXPECT_EQ(account.steps.back().stage, 'B');
    EXPECT_EQ(account.steps.back().label, "索引マスター（来訪者管理）");
    EXPECT_TRUE(std::is_partitioned(account.steps.begin(), account.steps.end(),
                                    [](const ConvStep& s) { return s.stage == 'A'; }));
    for (const ConvStep& step : account.steps) {
        EXPECT_EQ(step.state, ConvStepState::Done) << step.label;
        EXPECT_TRUE(step.notes.empty()) << step.label;
        ASSERT_TRUE(step.endMillis.has_value()) << step.label;
        EXPECT_GE(*step.endMillis, step.startMillis) << step.label;
        if (step.stage == 'A') {
            EXPECT_FALSE(step.read.has_value()) << step.label;  // stage A counts nothing
        }
    }
    EXPECT_TRUE(Find(account, 'B', "設備アクセス権ユーザー ")) << "the label keeps its trailing blank";
    const ConvStep* events = Find(account, 'B', "個人スケジュール予定マスター");
    ASSERT_NE(events, nullptr);
    EXPECT_EQ(events->read, 2);
    EXPECT_EQ(events->written, 2);
    EXPECT_EQ(events->leftOut, 0);

    // The second run over the same target leaves every row out as a duplicate.
    ASSERT_EQ(Create(), 0);
    account = convrun::ReadAccount(dir.Path());
    EXPECT_EQ(account.status.status, "2");
    events = Find(account, 'B', "個人スケジュール予定マスター");
    ASSERT_NE(events, nullptr);
    EXPECT_EQ(events->read, 2);
    EXPECT_EQ(events->written, 0);
    EXPECT_EQ(events->leftOut, 2);
    ASSERT_EQ(events->notes.size(), 2u);
    const ConvStepNote& note = events->notes[0];
    EXPECT_EQ(note.tag, "WARN");
    EXPECT_EQ(note.fate, ConvRowFate::LeftOut);
    ASSERT_TRUE(note.row.has_value());
    EXPECT_EQ(note.row->table, "TMPR_SCH_EVENT");
    const std::vector<std::pair<std::string, std::string>> keys = {{"SID_USER", "5"}, {"item", "会議"}};
    EXPECT_EQ(note.row->keys, keys);
    EXPECT_EQ(note.row->reason, "重複エラーが発生しましたが処理を続行しました。");
    EXPECT_EQ(note.ret, 1);
    EXPECT_NE(note.cause.find("duplicate key"), std::string::npos) << note.cause;
    EXPECT_EQ(events->notes[1].row->keys[1].second, "it's");

    // The index steps share one count of all modules, so none closes with a
    // count: its numbers are unknown, its row isn't.
    const ConvStep* index = Find(account, 'B', "索引マスター（スケジュール）");
    ASSERT_NE(index, nullptr);
    EXPECT_FALSE(index->read.has_value());
    EXPECT_FALSE(index->leftOut.has_value());
    ASSERT_EQ(index->notes.size(), 1u);
    EXPECT_EQ(index->notes[0].row->table, "TM_INDEX");

    const std::string text = convrun::FormatAccount(account);
    EXPECT_NE(text.find("status   2 (ended with warnings"), std::string::npos) << text;
    EXPECT_NE(text.find("TMPR_SCH_EVENT [SID_USER=5] [item=会議]  重複エラーが発生しましたが処理を続行しました。  (ret=1)"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("reported rows: "), std::string::npos);
}

TEST_F(RunAccount, FailedRunShowsTheFailedStepAndItsError) {
    std::string error;
    ASSERT_TRUE(TestCluster().Exec(kEnt, "DROP TABLE TMPR_ACCESS_USER", &error)) << error;
    EXPECT_EQ(Create(), 253);
    const ConvRunAccount account = convrun::ReadAccount(dir.Path());
    EXPECT_EQ(account.status.status, "3");
    EXPECT_TRUE(account.aborted);
    ASSERT_FALSE(account.steps.empty());
    const ConvStep& last = account.steps.back();
    EXPECT_EQ(last.label, "ユーザーアクセス権ユーザー");
    EXPECT_EQ(last.state, ConvStepState::Failed);
    const auto err = std::find_if(last.notes.begin(), last.notes.end(), [](const ConvStepNote& n) {
        return n.text == "データ件数の取得に失敗しました。";
    });
    ASSERT_NE(err, last.notes.end());
    EXPECT_EQ(err->fate, ConvRowFate::Failure);
    EXPECT_FALSE(err->row.has_value());
    EXPECT_LT(*err->ret, 0);
    const std::string text = convrun::FormatAccount(account);
    EXPECT_NE(text.find("FAILED"), std::string::npos) << text;
    EXPECT_NE(text.find("移行を中断しました。"), std::string::npos) << text;
}

// A run cut at the schedules' step, with one row left out and one counted so
// far: running while its lock is held, unfinished once the lock is gone.
TEST_F(RunAccount, RunStillGoingShowsHowFarItsStepIs) {
    ASSERT_EQ(Create(), 0);
    ASSERT_EQ(Create(), 0);  // the second run warns, so the cut log holds a warning
    const std::string logPath = dir / "conv/log/sch.log";
    std::string partial;
    bool cut = false;
    for (const std::string& line : Lines(ReadFile(logPath))) {
        partial += line + "\n";
        if (line.find("[WARN] TMPR_SCH_EVENT [SID_USER=5] [item=会議]") != std::string::npos) {
            cut = true;
            break;
        }
    }
    ASSERT_TRUE(cut);
    WriteFile(logPath, partial);
    WriteFile(dir / "conv/sch.sts",
              "status=1\nsdate=20261123100000\nedate=\n"
              "dispmsg=個人スケジュール予定マスター 2件中1件が移行済みです。\n");
    {
        LockHolder lock(dir / "conv/sch.sts.lk");
        ASSERT_TRUE(lock.Held());
        const ConvRunAccount account = convrun::ReadAccount(dir.Path());
        EXPECT_TRUE(account.lockHeld);
        const ConvStep& last = account.steps.back();
        EXPECT_EQ(last.label, "個人スケジュール予定マスター");
        EXPECT_EQ(last.state, ConvStepState::Running);
        EXPECT_FALSE(last.endMillis.has_value());
        EXPECT_EQ(last.progress, "個人スケジュール予定マスター 2件中1件が移行済みです。");
        ASSERT_EQ(last.notes.size(), 1u);
        EXPECT_EQ(last.notes[0].row->keys[1].second, "会議");
        for (std::size_t i = 0; i + 1 < account.steps.size(); ++i)
            EXPECT_EQ(account.steps[i].state, ConvStepState::Done) << account.steps[i].label;
        const std::string text = convrun::FormatAccount(account);
        EXPECT_NE(text.find("status   1 (running)"), std::string::npos) << text;
        EXPECT_NE(text.find("ended    -"), std::string::npos) << text;
        EXPECT_NE(text.find("2件中1件が移行済みです。"), std::string::npos) << text;
    }
    const ConvRunAccount stale = convrun::ReadAccount(dir.Path());
    EXPECT_FALSE(stale.lockHeld);
    EXPECT_EQ(stale.steps.back().state, ConvStepState::Unfinished);
    EXPECT_TRUE(stale.steps.back().progress.empty());
    EXPECT_NE(convrun::FormatAccount(stale).find("not closed"), std::string::npos);
}

}  // namespace
