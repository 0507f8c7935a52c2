// The operators' inspector run as a program on flat-store files written here:
// its JSON lines, its reports on stderr and its exit status.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "base/comEncoding.h"

using namespace testsupport;

namespace {

std::string Inspector() {
    std::string binary = CONVSCH_BINARY;
    return binary.substr(0, binary.rfind('/') + 1) + "convsch-inspect";
}

struct Result {
    int status = -1;
    std::string out;
    std::string err;
};

class InspectTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(Exists(Inspector())) << "build the convsch-inspect target first"; }

    std::string Put(const std::string& name, const std::string& utf8) {
        WriteFile(dir / name, Euc(utf8));
        return dir / name;
    }
    Result Inspect(const std::string& arguments) {
        // Built by appends: a chain of operator+ on a literal trips g++ 12's
        // -Wrestrict false positive at -O3.
        std::string command = "'";
        for (const std::string& part : {Inspector(), std::string("' "), arguments, std::string(" >'"),
                                        std::string(dir / "stdout"), std::string("' 2>'"),
                                        std::string(dir / "stderr"), std::string("'")})
            command += part;
        const int rc = std::system(command.c_str());
        return {WIFEXITED(rc) ? WEXITSTATUS(rc) : -1, ReadFile(dir / "stdout"), ReadFile(dir / "stderr")};
    }

    TempDir dir;
};

TEST_F(InspectTest, PrintsEachRecordAsJsonPairs) {
    const std::string file =
        Put("schedule",
            "# 予定\nobject 101\nevent=会議\nmemo=議題は\"次\"の\\とおり\n\t1. 振り返り\n"
            "place=\nobject dates\ndate=20240108\ndate=20240115\nend\nend\n"
            "object 102\nevent=外出\nend\n");
    const Result r = Inspect("'" + file + "'");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(
        r.out,
        "[[\"ID\",\"101\"],[\"event\",\"会議\"],[\"memo\",\"議題は\\\"次\\\"の\\\\とおり\\n1. 振り返り\"],"
        "[\"place\",null],[\"dates\",[\"20240108\",\"20240115\"]]]\n"
        "[[\"ID\",\"102\"],[\"event\",\"外出\"]]\n");
    EXPECT_EQ(r.err, "");
}

TEST_F(InspectTest, IndexReportsAMissingRecordAndGoesOn) {
    const std::string index = Put("data/user/index", "yamada=1\nsato=2\n_lastid=2\n");
    Put("data/user/1/info", "object 1\nName=山田 太郎\nend\n");
    const Result r = Inspect("--index '" + index + "'");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "[[\"ID\",\"1\"],[\"Name\",\"山田 太郎\"]]\n");
    EXPECT_EQ(r.err, "WARN [ret=1] ファイルの読み込みに失敗しました。ファイル[" + dir.Path() +
                         "/data/user//2/info]errno[2]エラー詳細[No such file or directory]\n");
}

TEST_F(InspectTest, FailedReadsEndWithStatusOne) {
    const std::string bad = Put("bad", "object abc\nName=x\nend\n");
    Result r = Inspect("'" + bad + "'");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "WARN [ret=1] 値[abc]が不正です。ファイル[" + bad + "]\n" +
                         "WARN [ret=1] ファイルの読み込みに失敗しました。ファイル[" + bad + "]\n");

    const std::string index = Put("agenda/index", "5=x\n_lastid=abc\n");
    r = Inspect("--id-index '" + index + "'");
    EXPECT_EQ(r.status, 1);
    ASSERT_FALSE(Lines(r.err).empty());
    EXPECT_EQ(Lines(r.err)[0], "ERR [ret=-31] ファイルのレコード取得に失敗しました。 [detail=" + index + "]");

    EXPECT_EQ(Inspect("").status, 2);
    EXPECT_EQ(Inspect("--bogus '" + bad + "'").status, 2);
}

TEST_F(InspectTest, ReadsItemAndWordLists) {
    const std::string admin = Put("admin", "admin=3\nadmin=x\n");
    Result r = Inspect("--items '" + admin + "'");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "[[\"ID\",\"3\"]]\n");
    EXPECT_EQ(r.err, "WARN [ret=1] 値[x]が不正です。ファイル[" + admin + "]\n");

    r = Inspect("--words '" + Put("place", "place=本社\nplace=\n") + "'");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "[[\"ITEM\",\"本社\"]]\n[[\"ITEM\",null]]\n");
}

}  // namespace
