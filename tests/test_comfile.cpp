// Tests of the file and directory helpers and of the debug log lines they write.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "base/comFile.h"
#include "base/comLog.h"

namespace {

namespace fs = std::filesystem;
using testsupport::ReadFile;
using testsupport::WriteFile;

class ComFileTest : public ::testing::Test {
protected:
    void SetUp() override { comLogSetPath(logFile.c_str(), oldLog); }
    void TearDown() override { comLogSetPath(oldLog, nullptr); }

    // The log's text with the time stamp of every entry checked and removed;
    // the log is emptied for the next step.
    std::string TakeLog() {
        std::string text = ReadFile(logFile), out;
        fs::remove(logFile);
        for (std::size_t pos = 0; pos < text.size();) {
            std::size_t end = text.find('\n', pos);
            end = end == std::string::npos ? text.size() : end + 1;
            std::string entry = testsupport::StripStamp(text.substr(pos, end - pos));
            if (entry.empty()) ADD_FAILURE() << "no time stamp at: " << text.substr(pos);
            out += entry;
            pos = end;
        }
        return out;
    }

    testsupport::TempDir temp;
    fs::path dir = temp.Path();
    fs::path logFile = dir / "debug.log";
    char oldLog[1024] = {};
};

}  // namespace

TEST_F(ComFileTest, CopyOverwritesAndFailsExclusively) {
    std::string data(10000, 'd');
    data[4096] = 'e';
    WriteFile(dir / "src", data);
    WriteFile(dir / "dst", std::string(20000, 'o'));
    std::string src = (dir / "src").string(), dst = (dir / "dst").string();

    EXPECT_EQ(comFileCopy(src.c_str(), dst.c_str(), false), 1);
    EXPECT_EQ(ReadFile(dst), data);
    EXPECT_EQ(TakeLog(), "");

    EXPECT_EQ(comFileCopy(src.c_str(), dst.c_str(), true), 0);
    EXPECT_EQ(TakeLog(), "copy file:open(O_WRONLY) path[" + dst + "] errno[17]\r\n");
    EXPECT_EQ(ReadFile(dst), data);

    std::string missing = (dir / "missing").string();
    EXPECT_EQ(comFileCopy(missing.c_str(), dst.c_str(), false), 0);
    EXPECT_EQ(TakeLog(), "copy file:open(O_RDONLY) path[" + missing + "] errno[2]\r\n");
}

TEST_F(ComFileTest, DirCreateAllMakesTheParentsOfAFile) {
    std::string file = (dir / "a" / "b" / "c.txt").string();
    EXPECT_EQ(comDirCreateAll(file.c_str()), 0);
    EXPECT_TRUE(comIsDir((dir / "a" / "b").c_str()));
    EXPECT_FALSE(comFileExists(file.c_str()));
    EXPECT_EQ(TakeLog(), "");

    // An existing directory is a failure here.
    errno = 0;
    EXPECT_EQ(comDirCreateAll(file.c_str()), -1);
    EXPECT_EQ(errno, EEXIST);
    std::string ab = (dir / "a" / "b").string();
    EXPECT_EQ(TakeLog(), "mkdir[" + ab + "] errno=[17]\n" + "dircreateall:dircreate path[" + ab +
                             "] ret[-1] errno[17]\r\n");

    EXPECT_EQ(comDirCreateAll("c.txt"), -1);
    EXPECT_EQ(TakeLog(), "dircreate dir empty\r\n");

    // A failure below a missing level is reported by each level on its way up.
    fs::create_directory_symlink(dir / "nowhere", dir / "dangle");
    std::string dangle = (dir / "dangle").string();
    std::string under = dangle + "/x/y.txt";
    EXPECT_EQ(comDirCreateAll(under.c_str()), -1);
    EXPECT_EQ(TakeLog(), "mkdir[" + dangle + "] errno=[17]\n" + "dircreateall:dircreate path[" +
                             dangle + "] ret[-1] errno[17]\r\n" +
                             "dircreateall:dircreateall path[" + dangle +
                             "/x] ret[-1] errno[17]\r\n");
}

TEST_F(ComFileTest, DirDeleteRemovesTreesAndHonoursTheFilter) {
    EXPECT_EQ(comDirDelete(nullptr, nullptr, false), -9);
    EXPECT_EQ(comDirDelete("", nullptr, false), -9);
    EXPECT_EQ(comDirDelete((dir / "missing").c_str(), nullptr, false), 0);
    WriteFile(dir / "plain", "x");
    EXPECT_EQ(comDirDelete((dir / "plain").c_str(), nullptr, false), 0);
    EXPECT_FALSE(fs::exists(dir / "plain"));

    fs::path tree = dir / "tree";
    fs::create_directories(tree / "sub" / "deeper");
    WriteFile(tree / "keep.dat", "k");
    WriteFile(tree / "drop.txt", "d");
    WriteFile(tree / "sub" / "deeper" / "f", "f");
    // A link is removed as a link; what it points to stays.
    fs::create_directory(dir / "outside");
    WriteFile(dir / "outside" / "precious", "p");
    fs::create_directory_symlink(dir / "outside", tree / "link");

    std::set<std::string> seen;
    comDirFilter onlyText = [&](const char* name, int isFile, const struct stat& info) {
        seen.insert(std::string(name) + (isFile ? ":file" : ":dir"));
        EXPECT_EQ(isFile == 0, S_ISDIR(info.st_mode));
        return std::string(name).ends_with(".txt") || std::string(name) == "sub";
    };
    EXPECT_EQ(comDirDelete(tree.c_str(), onlyText, false), 0);
    EXPECT_EQ(seen, (std::set<std::string>{"keep.dat:file", "drop.txt:file", "sub:dir",
                                           "link:file"}));
    EXPECT_TRUE(fs::exists(tree / "keep.dat"));
    EXPECT_TRUE(fs::is_symlink(tree / "link"));
    EXPECT_FALSE(fs::exists(tree / "drop.txt"));
    EXPECT_FALSE(fs::exists(tree / "sub"));

    EXPECT_EQ(comDirDelete(tree.c_str(), nullptr, false), 0);
    EXPECT_FALSE(fs::exists(tree));
    EXPECT_TRUE(fs::exists(dir / "outside" / "precious"));
    EXPECT_EQ(TakeLog(), "");
}

TEST_F(ComFileTest, RenameReplacesFilesAndDirectoryTrees) {
    std::string from = (dir / "from").string(), to = (dir / "to").string();
    WriteFile(from, "new");
    WriteFile(to, "old");
    EXPECT_EQ(comFileRename(from.c_str(), to.c_str()), 0);
    EXPECT_EQ(ReadFile(to), "new");

    fs::create_directories(dir / "tree" / "sub");
    WriteFile(dir / "tree" / "sub" / "f", "f");
    std::string tree = (dir / "tree").string();
    EXPECT_EQ(comFileRename(to.c_str(), tree.c_str()), 0);
    EXPECT_EQ(ReadFile(tree), "new");
    EXPECT_EQ(TakeLog(), "rename unlink[" + tree + "] errno=[21]\n");

    errno = 0;
    EXPECT_EQ(comFileRename(from.c_str(), to.c_str()), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(TakeLog(), "");
}

namespace {

// One part of path, cut by fn into a buffer of exactly size bytes.
std::string Part(void (*fn)(const char*, char*, std::size_t), const char* path, std::size_t size = 64) {
    std::vector<char> out(size);
    fn(path, out.data(), size);
    return out.data();
}

}  // namespace

TEST(ComFilePathTest, CutsPathsIntoParts) {
    const struct { const char *path, *dirName, *baseName, *stem, *ext; } cases[] = {
        {"a/b/c.txt", "a/b", "c.txt", "a/b/c", ".txt"},
        {"c.txt", "", "c.txt", "c", ".txt"},
        {"a.b.c", "", "a.b.c", "a.b", ".c"},
        {".bashrc", "", ".bashrc", ".bashrc", ""},
        {"/x", "", "x", "/x", ""},
        {"C:name", "C:", "name", "C:name", ""},
        {"d:/dir\\file.e", "d:", "file.e", "d:/dir\\file", ".e"},
        {"", "", "", "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(Part(comDirName, c.path), c.dirName);
        EXPECT_EQ(Part(comBaseName, c.path), c.baseName);
        EXPECT_EQ(Part(comFileStem, c.path), c.stem);
        EXPECT_EQ(Part(comFileExt, c.path), c.ext);
    }
    EXPECT_EQ(Part(comDirName, "abcdef/x", 4), "abc");
    EXPECT_EQ(Part(comBaseName, "x/abcdef", 4), "abc");
    EXPECT_EQ(Part(comFileExt, "x.abcdef", 4), ".ab");
    EXPECT_FALSE(comIsDir(nullptr));
    EXPECT_FALSE(comFileExists(nullptr));
}
