// Tests of the settings object: defaults, the keys of data/app, the date switch
// of the log names, the directory bucket and the trace buffer.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cmsbase/comTrace.h"
#include "TestSupport.h"
#include "base/comLog.h"
#include "base/comTime.h"

namespace {

class SettingsTest : public ::testing::Test {
protected:
    void SetUp() override {
        comLogSetPath(nullptr, savedLog);
        ASSERT_EQ(CreateSettings(), 0);
    }
    void TearDown() override {
        ReleaseSettings();
        comLogSetPath(savedLog, nullptr);
    }
    void WriteApp(const std::string& text) { testsupport::WriteFile(root + "/data/app", text); }

    testsupport::TempDir temp;
    std::string root = temp.Path();
    char savedLog[1024] = {};
};

TEST_F(SettingsTest, NoObjectGivesSafeAnswers) {
    ReleaseSettings();
    EXPECT_EQ(GetSettingsObject(), nullptr);
    EXPECT_EQ(LoadSettings(root.c_str()), -99);
    EXPECT_EQ(comTrace("x"), -99);
    EXPECT_EQ(GetCorporateId(), 0);
    EXPECT_STREQ(GetFileDir(), "");
    NUString bucket;
    GetDirBucket(1234, bucket, true);
    EXPECT_TRUE(bucket.IsEmpty());
}

TEST_F(SettingsTest, KeysOfTheFileAreHonoured) {
    WriteApp("cid=2\ndbdirfile=/var/x\ndbdirdata=/var/d/\ndbdirmaildata=C:\\mail\\\ndocroot=/r/\n"
             "dbpooled=true\nsqltrace=1\nretrycnt=99999999999\nunknownkey=7\ncid=3\n");
    ASSERT_EQ(LoadSettings(root.c_str()), 0);
    EXPECT_EQ(GetCorporateId(), 3);  // last wins
    EXPECT_STREQ(GetFileDir(), "/var/x/");
    EXPECT_STREQ(GetDataDir(), "/var/d/");
    EXPECT_STREQ(GetMailDataDir(), "C:\\mail\\");
    EXPECT_STREQ(GetDocRoot(), "/r/");
    EXPECT_STREQ(GetImageRoot(), "/r/images/");
    EXPECT_TRUE(GetDbPooled());
    EXPECT_TRUE(GetSqlTrace());
    EXPECT_EQ(GetRetryCount(), 2147483647);
    EXPECT_EQ(GetDirUnit(), 1000);
    EXPECT_STREQ(GetSettingsObject()->GetValue("unknownkey"), "7");
}

TEST_F(SettingsTest, DirBucket) {
    ASSERT_EQ(LoadSettings(root.c_str()), 0);
    NUString bucket;
    GetDirBucket(1234, bucket, true);
    EXPECT_STREQ(bucket.GetStr(), "2/");
    GetDirBucket(999, bucket, false);
    EXPECT_STREQ(bucket.GetStr(), "1");
    char small[2];
    GetDirBucket(1234, small, sizeof small, true);
    EXPECT_STREQ(small, "2");

    WriteApp("maxdir=0\n");
    ASSERT_EQ(LoadSettings(root.c_str()), 0);
    GetDirBucket(1234, bucket, true);
    EXPECT_TRUE(bucket.IsEmpty());
    WriteApp("maxdir=-1\n");
    ASSERT_EQ(LoadSettings(root.c_str()), 0);
    GetDirBucket(-2147483647 - 1, bucket, false);
    EXPECT_STREQ(bucket.GetStr(), "2147483649");
}

TEST_F(SettingsTest, LogNamesNeedTodaysDate) {
    char today[16] = {};
    comTimeNowDate(today, true);
    const std::string pid = std::to_string(getpid());
    const std::string errlog = root + "/err_" + today + ".log";
    WriteApp("errlogfname=" + errlog + "\ntracefname=" + root + "/tr_" + today + ".txt.old\ntimelog=" + root +
             "/time.txt\n");
    ASSERT_EQ(LoadSettings(root.c_str()), 0);
    EXPECT_EQ(std::string(GetErrorLogName()), errlog);
    EXPECT_EQ(std::string(comLogGetPath()), errlog);
    EXPECT_EQ(std::string(GetTraceName()), root + "/tr_" + today + "." + pid + ".txt");
    EXPECT_EQ(std::string(GetTimeLogName()), root + "/time." + pid + ".txt");

    ReleaseSettings();
    comLogSetPath(nullptr, nullptr);
    ASSERT_EQ(CreateSettings(), 0);
    WriteApp("errlogfname=" + root + "/err_19990101.log\ntracefname=" + root + "/tr.txt\n");
    ASSERT_EQ(LoadSettings(root.c_str()), 0);
    EXPECT_STREQ(GetErrorLogName(), "");
    EXPECT_STREQ(comLogGetPath(), "");
    EXPECT_STREQ(GetTraceName(), "");
}

TEST_F(SettingsTest, UnreadableFileKeepsDefaultsAndTraces) {
    std::filesystem::create_directories(root + "/data");
    std::filesystem::create_symlink("app", root + "/data/app");  // a loop: fails for root as well
    EXPECT_EQ(LoadSettings(root.c_str()), -11008);
    EXPECT_EQ(GetCorporateId(), 1);
    EXPECT_EQ(std::string(GetFileDir()), root + "/file/");
    const std::string trace = GetErrorDetail();
    const std::string expected = comTraceEncode("[" + root + "/data/app] iret=[-10] errno[40]", 100000);
    EXPECT_NE(trace.find(expected), std::string::npos) << trace;
    EXPECT_EQ(trace.back(), '\n');
}

TEST_F(SettingsTest, TraceEncodingAndLimits) {
    EXPECT_EQ(comTrace("a\r\nb%d", 7), 0);
    EXPECT_STREQ(GetErrorDetail(), "61\n6237\n");
    EXPECT_EQ(comTrace("%s", "\xff"), 0);
    EXPECT_STREQ(GetErrorDetail(), "61\n6237\nff\n");
    ClearErrorDetail();
    EXPECT_STREQ(GetErrorDetail(), "");

    const std::string longText(9000, 'x');
    EXPECT_EQ(comTrace("%s", longText.c_str()), 0);
    std::string expected;
    for (int i = 0; i < 7999; ++i) expected += "78";  // the text is cut at 7,999 bytes
    EXPECT_EQ(std::string(GetErrorDetail()), expected + "\n");

    EXPECT_EQ(comTraceEncode("abc", 5), "6162");
    EXPECT_EQ(comTraceEncode("\n\n\n", 2), "\n\n");
}

}  // namespace
