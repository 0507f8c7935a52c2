// Tests of record file reading and writing, and of the lock file between
// processes.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "base/NUFileIO.h"
#include "base/NUioObj.h"
#include "base/comClock.h"
#include "base/comLog.h"

namespace {

namespace fs = std::filesystem;
using testsupport::ReadFile;
using testsupport::WriteFile;

// Records the reader's calls, and can take lines and sections over.
class RecordingObj : public NUioObj {
public:
    explicit RecordingObj(std::string path) : path_(std::move(path)) {}
    int NUioObjGetPath(std::string& out) override {
        out = path_;
        return 0;
    }
    int ParseLine(char* line, std::string& section) override {
        if (line[0] == '[') {
            section.assign(line + 1, std::strcspn(line + 1, "]"));
            return 1;
        }
        return std::strcmp(line, "abort") == 0 ? -31 : 0;
    }
    int AddValue(const char* name, const char* value, const char* section) override {
        calls.push_back(std::string("V:") + section + "|" + name + "|" + value);
        return 0;
    }
    int GetItem(int index, const char** name, const char** value, std::string& section) override {
        if (index >= static_cast<int>(items.size())) return -20;
        *name = items[index].name;
        *value = items[index].value;
        section = items[index].section;
        return 0;
    }
    int AddContinuation(const char* line) override {
        calls.push_back(std::string("C:") + line);
        return 0;
    }

    struct Item {
        const char* section;
        const char* name;
        const char* value;
    };
    std::vector<Item> items;
    std::vector<std::string> calls;

private:
    std::string path_;
};

std::vector<unsigned> g_sleeps;
void RecordSleep(unsigned seconds) { g_sleeps.push_back(seconds); }

class NUFileIOTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_sleeps.clear();
        oldSleep = comSetSleepFunction(RecordSleep);
        unlocked.SetNoLock(true);
    }
    void TearDown() override { comSetSleepFunction(oldSleep); }

    std::unique_ptr<NUioObjList> NewList() {
        auto list = std::make_unique<NUioObjList>();
        list->SetPath(file.c_str(), nullptr);
        return list;
    }

    testsupport::TempDir temp;
    fs::path dir = temp.Path();
    fs::path file = dir / "rec";
    comSleepFunc oldSleep = nullptr;
    NUFileIO io;        // takes the lock file
    NUFileIO unlocked;  // goes without one
};

}  // namespace

TEST_F(NUFileIOTest, WritesTheRecordFormatByteForByte) {
    RecordingObj obj(file);
    obj.items = {{"", "crlf", "a\r\nb"},        {"", "null", nullptr},
                 {"", nullptr, "skipped"},      {"sec", "named", "v"},
                 {"", "multi", "x\ny\n"},       {"", "lonecr", "a\rb"}};
    ASSERT_EQ(io.WriteFile(&obj, false), 0);
    EXPECT_EQ(ReadFile(file), "crlf=a\n\tb\nnull=\n[sec]named=v\nmulti=x\n\ty\n\t\nlonecr=a\rb\n");
    EXPECT_FALSE(fs::exists(file.string() + ".bk"));

    io.SetSeparator(':');
    obj.items = {{"", "k", "v"}};
    ASSERT_EQ(io.WriteFile(&obj, false), 0);
    EXPECT_EQ(ReadFile(file), "k:v\n");
}

TEST_F(NUFileIOTest, RoundTripsMultiLineValues) {
    auto out = NewList();
    out->AddValue("crlf", "a\r\nb", "");
    out->AddValue("lines", "one\ntwo\n  three", "");
    out->AddValue("blanks", "x  ", "");
    out->AddValue("lines", "again", "");
    ASSERT_EQ(io.WriteFile(out.get(), false), 0);

    auto in = NewList();
    ASSERT_EQ(io.ReadFile(in.get(), false), 0);
    ASSERT_EQ(in->GetCount(), 4);
    EXPECT_STREQ(in->GetValue("crlf"), "a\nb");
    EXPECT_STREQ(in->GetValue("blanks"), "x");
    std::vector<const char*> lines;
    ASSERT_EQ(in->GetValues("lines", lines), 2);
    EXPECT_STREQ(lines[0], "one\ntwo\n  three");
    EXPECT_STREQ(lines[1], "again");
}

TEST_F(NUFileIOTest, ReadsCommentsAndContinuations) {
    WriteFile(file,
             "\tno entry yet\n"
             "# comment\n"
             "a#b=c\n"
             "a #b=c\n"
             "x\t#y=z\n"
             "note=value # note\n"
             "tab=value\t# cut\n"
             "\tnext line\t# kept\n"
             "no separator\n"
             "crlf = v\r\n"
             "\t\r\n"
             "hash=#1\n");
    auto list = NewList();
    EXPECT_EQ(io.ReadFile(list.get(), false), -16);  // there is no lock file
    ASSERT_EQ(unlocked.ReadFile(list.get(), false), 0);
    std::vector<std::string> got;
    for (int i = 0; i < list->GetCount(); ++i) {
        const char* name = nullptr;
        const char* value = nullptr;
        std::string section;
        list->GetItem(i, &name, &value, section);
        got.push_back(std::string(name) + "=" + value);
    }
    EXPECT_EQ(got, (std::vector<std::string>{"a#b=c", "note=value # note",
                                             "tab=value\nnext line\t# kept", "crlf= v\n",
                                             "hash=#1"}));
}

// A reader that keeps values as they stand sees exactly where comments are cut.
TEST_F(NUFileIOTest, TrimValueHookSeesEveryValue) {
    struct RawIO : NUFileIO {
        char* TrimValue(char* text) override { return text; }
    };
    WriteFile(file, "k  = v \t# note\r\n\t cont  \r\nn=a#b \r\n");
    auto list = NewList();
    RawIO io;
    io.SetNoLock(true);
    ASSERT_EQ(io.ReadFile(list.get(), false), 0);
    EXPECT_STREQ(list->GetValue("k"), " v \n cont  \r");
    EXPECT_STREQ(list->GetValue("n"), "a#b \r");
}

TEST_F(NUFileIOTest, LongLineArrivesAsValueThenContinuation) {
    std::string value(2995, 'x');
    value[2041] = 'y';  // the last byte of the first 2047-byte piece
    WriteFile(file, "long=" + value + "\n\tnext\n");
    RecordingObj obj(file);
    ASSERT_EQ(unlocked.ReadFile(&obj, false), 0);
    ASSERT_EQ(obj.calls.size(), 3u);
    EXPECT_EQ(obj.calls[0], "V:|long|" + value.substr(0, 2042));
    EXPECT_EQ(obj.calls[1], "C:" + value.substr(2042));
    EXPECT_EQ(obj.calls[2], "C:\nnext");

    auto list = NewList();
    ASSERT_EQ(unlocked.ReadFile(list.get(), false), 0);
    EXPECT_EQ(list->GetValue("long"), value + "\nnext");
}

// A line's end is its LF: a NUL before it makes the line bad, never part of the next.
TEST_F(NUFileIOTest, LineWithNulIsBadAndStaysApart) {
    struct NulObj : RecordingObj {
        using RecordingObj::RecordingObj;
        int BadLine(const char* line, std::size_t length) override {
            calls.push_back("B" + std::to_string(ReadLineNumber()) + ":" + std::string(line, length));
            return 0;
        }
    };
    const std::string nul(1, '\0');
    WriteFile(file, "a=1\nname=ab" + nul + "cd\nkana=x\n" + std::string(3000, '\0') + "z=9\n\tcont\n" +
                        std::string(2100, 'q') + nul + "\nlast=2");
    NulObj obj(file);
    ASSERT_EQ(unlocked.ReadFile(&obj, false), 0);
    EXPECT_EQ(obj.calls, (std::vector<std::string>{"V:|a|1", "B2:name=ab" + nul + "cd", "V:|kana|x",
                                                   "B4:" + std::string(3000, '\0') + "z=9", "C:\ncont",
                                                   "B6:" + std::string(2100, 'q') + nul, "V:|last|2"}));
    // By default the file is refused as broken.
    auto list = NewList();
    EXPECT_EQ(unlocked.ReadFile(list.get(), false), -31);
}

TEST_F(NUFileIOTest, ParseLineSetsSectionsAndAborts) {
    WriteFile(file, "top=1\n[s1]\nin=2\n");
    RecordingObj obj(file);
    ASSERT_EQ(unlocked.ReadFile(&obj, false), 0);
    EXPECT_EQ(obj.calls, (std::vector<std::string>{"V:|top|1", "V:s1|in|2"}));

    WriteFile(file, "a=1\nabort\nb=2\n");
    WriteFile(file.string() + ".lk", "");
    obj.calls.clear();
    EXPECT_EQ(io.ReadFile(&obj, false), -31);
    EXPECT_EQ(obj.calls, (std::vector<std::string>{"V:|a|1"}));
    EXPECT_FALSE(io.IsLocked());
}

TEST_F(NUFileIOTest, ReportsMissingFilesAndBadTargets) {
    auto list = NewList();
    EXPECT_EQ(unlocked.ReadFile(list.get(), false), -16);  // no data file

    fs::create_directory(file);
    EXPECT_EQ(unlocked.WriteFile(list.get(), false), -11);
    fs::remove(file);
    fs::create_directory(file.string() + ".bk");
    EXPECT_EQ(unlocked.WriteFile(list.get(), false), -10);
    fs::remove(file.string() + ".bk");

    // The lock file's directories are created as needed.
    NUioObjList nested;
    nested.SetPath("rec", (dir / "x" / "y").c_str());
    nested.AddValue("k", "v", "");
    EXPECT_EQ(unlocked.WriteFile(&nested, false), 0);
    EXPECT_EQ(ReadFile(dir / "x" / "y" / "rec"), "k=v\n");
}

TEST_F(NUFileIOTest, KeepLockHoldsTheLockAcrossWrites) {
    auto list = NewList();
    list->AddValue("status", "1", "");
    ASSERT_EQ(io.WriteFile(list.get(), true), 0);
    EXPECT_TRUE(io.IsLocked());

    // Without a relock the removed lock file stays away.
    fs::remove(file.string() + ".lk");
    list->SetValue("status", "2");
    ASSERT_EQ(io.WriteFile(list.get(), true), 0);
    EXPECT_FALSE(fs::exists(file.string() + ".lk"));
    EXPECT_EQ(ReadFile(file), "status=2\n");

    list->SetValue("status", "0");
    ASSERT_EQ(io.WriteFile(list.get(), false), 0);
    EXPECT_TRUE(fs::exists(file.string() + ".lk"));
    EXPECT_FALSE(io.IsLocked());
    EXPECT_EQ(ReadFile(file), "status=0\n");
}

// The child takes the write lock and holds it until the parent lets it go.
TEST_F(NUFileIOTest, WriteLockOfAnotherProcessMakesReadersWait) {
    auto list = NewList();
    list->AddValue("k", "v", "");
    NUFileIO writer;
    ASSERT_EQ(writer.WriteFile(list.get(), false), 0);
    std::string lockLog = (dir / "lock.log").string();
    comNumberedLogSet(1, lockLog.c_str());

    int ready[2], release[2];
    ASSERT_EQ(pipe(ready), 0);
    ASSERT_EQ(pipe(release), 0);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        NUFileIO holder;
        char byte = holder.LockFile(list.get()) == 0 ? 'L' : 'F';
        (void)!write(ready[1], &byte, 1);
        (void)!read(release[0], &byte, 1);
        _exit(0);
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    ASSERT_EQ(byte, 'L');

    NUFileIO reader;
    auto in = NewList();
    EXPECT_EQ(reader.ReadFile(in.get(), false), -17);
    EXPECT_EQ(g_sleeps, (std::vector<unsigned>{2, 2}));  // three attempts, two waits
    EXPECT_EQ(reader.WriteFile(list.get(), false), -17);
    std::string log = ReadFile(lockLog);
    std::string fileLine = "\n                    FILE[" + file.string() + ".lk]\n";
    EXPECT_NE(log.find("RETRY[3] SLEEPTIME[2] LOCKMODE[0] ERRNO["), std::string::npos) << log;
    EXPECT_NE(log.find("RETRY[3] SLEEPTIME[2] LOCKMODE[1] ERRNO["), std::string::npos) << log;
    EXPECT_NE(log.find(fileLine), std::string::npos) << log;

    // A dirty read gets the contents after one attempt, and stays at one.
    g_sleeps.clear();
    EXPECT_EQ(reader.ReadFile(in.get(), true), -19);
    EXPECT_STREQ(in->GetValue("k"), "v");
    EXPECT_TRUE(g_sleeps.empty());
    EXPECT_EQ(reader.GetLockRetry(), 1);
    EXPECT_EQ(reader.GetLockSleep(), 0u);

    ASSERT_EQ(write(release[1], "x", 1), 1);
    int status = 0;
    waitpid(child, &status, 0);
    for (int fd : {ready[0], ready[1], release[0], release[1]}) close(fd);
    comNumberedLogReset();

    auto again = NewList();
    EXPECT_EQ(reader.ReadFile(again.get(), false), 0);
    EXPECT_STREQ(again->GetValue("k"), "v");
}
