// The attachment row writer against the test cluster: the row goes in first and
// its file follows under the row's target name; a file that can't be copied
// leaves the row in place, as a warning or as an error that stops the table.
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "ClusterRun.h"
#include "MakeConvEToKiv/convcom/ConvDBEntryAttach.h"

using namespace testsupport;

namespace {

// A table whose rows name a file: "schedule/<bucket>/<id>/<filename>" in both trees.
class FileRowWriter : public ConvDBEntryAttach {
public:
    using ConvDBEntryAttach::ConvDBEntryAttach;
    int32_t GetFilePath(std::string& outPath, const ConvRow& row, char) override {
        const char* id = FindColumn(row, "id");
        const char* name = FindColumn(row, "filename");
        outPath.clear();
        if (!id || !name) return 0;
        outPath = "schedule/";
        app->AppendIdDir(outPath, id);
        outPath += name;
        return 0;
    }
};

class AttachEntryTest : public ClusterRunTest {
protected:
    AttachEntryTest()
        : ClusterRunTest("attach_entry_test",
                         "CREATE TABLE t_attach (SID_CORPORATE int NOT NULL, id int PRIMARY KEY,"
                         " filename varchar(100));") {}

    void SetUp() override {
        ClusterRunTest::SetUp();
        if (HasFatalFailure()) return;
        ASSERT_EQ(kiv_->SetTransactional(false), 0);
        app_.SetAbortInTransaction(true);
    }
    static ConvRow Row(const char* id, const char* fileName, const char* logTitle) {
        ConvRow row;
        AddColumn("sid_corporate", "1", 1, row);
        AddColumn("id", id, 1, row);
        AddColumn("filename", fileName, 0, row);
        if (logTitle) AddColumn("logtitle", logTitle, 0, row);
        return row;
    }
    std::string Source(const std::string& rest) const { return dir_ / ("store/file/1/schedule/1/" + rest); }
    std::string Target(const std::string& rest) const { return dir_ / ("target/file/1/schedule/1/" + rest); }
};

TEST_F(AttachEntryTest, RowGoesInAndItsFileFollowsUnderTheTargetName) {
    FileRowWriter writer(&app_, kiv_);
    writer.SetRenameToAttach(true);
    WriteFile(Source("7/7"), "seven");
    ConvRow row = Row("7", "7", "議事録");
    EXPECT_EQ(writer.Entry("t_attach", row), 0);
    // "logtitle" names the copy in reports; it is no column.
    EXPECT_EQ(writer.GetSql(), "INSERT INTO t_attach (sid_corporate,id,filename) VALUES (1,7,'attach00007')");
    EXPECT_EQ(Value("SELECT filename FROM t_attach WHERE id=7"), "attach00007");
    EXPECT_EQ(ReadFile(Target("7/attach00007")), "seven");
    EXPECT_EQ(app_.StatusWord(), 0);
}

TEST_F(AttachEntryTest, DiskFullIsAnErrorThatStopsTheTableWithTheRowWritten) {
    FileRowWriter writer(&app_, kiv_);
    WriteFile(Source("3/big.bin"), std::string(8192, 'b'));
    MakeDirs(Target("3"));
    ASSERT_EQ(symlink("/dev/full", Target("3/big.bin").c_str()), 0);
    ConvRow row = Row("3", "big.bin", "大きい");
    EXPECT_EQ(writer.Entry("t_attach", row), -80);
    EXPECT_EQ(Value("SELECT count(*) FROM t_attach WHERE id=3"), "1");
    EXPECT_TRUE(UserLogHas("[ERR] 添付ファイルの複写に失敗しました。Name=[大きい] From=[" + Source("3/big.bin") +
                           "] To=[" + Target("3/big.bin") + "] エラー詳細[No space left on device]"));
}

TEST_F(AttachEntryTest, RowThatIsNotWrittenCopiesNoFile) {
    FileRowWriter writer(&app_, kiv_);
    WriteFile(Source("4/a.txt"), "a");
    ConvRow first = Row("4", "a.txt", nullptr);
    ASSERT_EQ(writer.Entry("t_attach", first), 0);
    ASSERT_EQ(unlink(Target("4/a.txt").c_str()), 0);

    ConvRow again = Row("4", "a.txt", nullptr);
    EXPECT_EQ(writer.Entry("t_attach", again), 1);  // duplicate key, left out
    EXPECT_FALSE(Exists(Target("4/a.txt")));
}

}  // namespace
