// Tests of the sticky tag of a schedule: field limits, position, and the body
// rendered through the installation's template.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cxiosch/CiofSchedule.h"
#include "MakeConvLib/cxiosch/ZioTagSchUser.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"
#include "TestSupport.h"

namespace {

TEST(SchTag, FieldsLimitsAndPosition) {
    ZioTagSchUser tag;
    EXPECT_EQ(tag.TagLeft(3), 96);
    EXPECT_EQ(tag.TagTop(3), 96);
    EXPECT_EQ(tag.TagLeft(100), 3200 % 580);
    ASSERT_EQ(tag.SetField("X", "15"), 0);
    EXPECT_EQ(tag.TagLeft(3), 15);
    EXPECT_EQ(tag.SetField("nosuch", "1"), -70);
    EXPECT_NE(tag.SetField("width", "abc"), 0);

    const std::string longTitle(130, 'a');
    ASSERT_EQ(tag.SetField("title", longTitle.c_str()), 0);
    EXPECT_EQ(std::string(tag.title.GetStr()), std::string(125, 'a') + "..");

    // A body cut inside a tag or an entity loses the broken tail.
    const std::string inTag = std::string(3995, 'b') + "<span class=\"x\">";
    ASSERT_EQ(tag.SetField("body", inTag.c_str()), 0);
    EXPECT_EQ(std::string(tag.body.GetStr()), std::string(3995, 'b') + "..");
    const std::string inEntity = std::string(3996, 'c') + "&amp;&amp;";
    ASSERT_EQ(tag.SetField("body", inEntity.c_str()), 0);
    EXPECT_EQ(std::string(tag.body.GetStr()), std::string(3996, 'c') + "..");

    tag.Clear();
    EXPECT_TRUE(tag.x.IsEmpty());
    EXPECT_STREQ(tag.width.GetStr(), "320");
    EXPECT_STREQ(tag.height.GetStr(), "240");
}

// An installation root with the shipped message files and a template that
// shows each parameter between bars.
class SchTagBody : public ::testing::Test {
protected:
    void SetUp() override {
        const std::filesystem::path shipped = std::filesystem::path(CONV_SOURCE_DIR) / "examples/target/local";
        std::filesystem::copy(shipped, root.Path() + "/local", std::filesystem::copy_options::recursive);
        testsupport::MakeDirs(root.Path() + "/page/template/cgi/tag");
        testsupport::WriteFile(root.Path() + "/page/template/cgi/tag/schedule.html",
                               "$date$|$event$$eventbr$|$place$$placebr$|$iconno$|$memo$");
        ASSERT_EQ(CreateSettings(), 0);
        ASSERT_EQ(LoadSettings(root.Path().c_str()), 0);
        for (const char* name : {"com", "com_locale", "sch"}) ASSERT_EQ(LoadMessageFile(name), 0) << name;
    }
    void TearDown() override { ReleaseSettings(); }

    static void Fill(CiofSchedule& s, const char* start, const char* end, const char* startTime,
                     const char* endTime, const char* repeat) {
        ASSERT_EQ(s.startDate.SetStr(start), 0);
        ASSERT_EQ(s.endDate.SetStr(end), 0);
        ASSERT_EQ(s.startTime.SetStr(startTime), 0);
        ASSERT_EQ(s.endTime.SetStr(endTime), 0);
        ASSERT_EQ(s.repeat.SetStr(repeat), 0);
    }

    testsupport::TempDir root;
};

TEST_F(SchTagBody, OneDayWithEventPlaceIconsAndMemo) {
    CiofSchedule s;
    Fill(s, "20130101", "20130101", "0900", "1000", "");
    ASSERT_EQ(s.event.SetStr("会議"), 0);
    ASSERT_EQ(s.detail.SetStr("予算 <案>"), 0);
    ASSERT_EQ(s.place.SetStr("本社"), 0);
    ASSERT_EQ(s.other.SetStr("A室"), 0);
    ASSERT_EQ(s.memo.SetStr("a  b\nc"), 0);
    ASSERT_EQ(s.rank.SetStr("2"), 0);
    ASSERT_EQ(s.SetByColumn("visitor", "5"), 0);
    ZioTagSchUser tag;
    ASSERT_EQ(tag.BuildBody(&s, "http://x/", nullptr, nullptr, nullptr), 0);
    EXPECT_STREQ(tag.title.GetStr(), "会議");
    EXPECT_STREQ(tag.url.GetStr(), "http://x/");
    EXPECT_EQ(std::string(tag.body.GetStr()),
              "2013年01月01日(火) 09:00～10:00|予定：予算 &lt;案&gt;<br />|場所：本社 / A室<br />|"
              "<div title=\"[重要][来訪者]\"><span class=\"sch-ictype1-imp\">重要</span>"
              "<span class=\"sch-ictype1-visit\">来訪者</span></div>|a&nbsp; b<br>\nc");
}

TEST_F(SchTagBody, SpansRepeatsAndHour24) {
    CiofSchedule span;
    Fill(span, "20130101", "20130103", "0900", "1000", "");
    ASSERT_EQ(span.event.SetStr("--"), 0);
    ASSERT_EQ(span.detail.SetStr("出張"), 0);
    ASSERT_EQ(span.place.SetStr("--"), 0);
    ZioTagSchUser tag;
    ASSERT_EQ(tag.BuildBody(&span, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_STREQ(tag.title.GetStr(), "出張");
    EXPECT_EQ(std::string(tag.body.GetStr()), "2013年01月01日(火) 09:00～01/03 10:00||||");

    CiofSchedule weekly;
    Fill(weekly, "20130107", "20130331", "0900", "", "w");
    ASSERT_EQ(weekly.event.SetStr("朝会"), 0);
    ASSERT_EQ(weekly.iconNo.SetStr("3"), 0);
    ASSERT_EQ(tag.BuildBody(&weekly, nullptr, "morning", "朝", "20130101000000"), 0);
    const std::string body = tag.body.GetStr();
    EXPECT_EQ(body.substr(0, body.find('|')), "2013年01月07日(月)～03/31（繰り返し） 09:00");
    EXPECT_NE(body.find("<div title=\"[朝]\"><img src=\"zrefer.cgi?cmd=referdownload&item1=schedule"),
              std::string::npos)
        << body;
    EXPECT_NE(body.find("filename=morning.gif"), std::string::npos) << body;
    EXPECT_NE(body.find("&updtime=20130101000000\" alt=\"朝\" title=\"朝\" width=\"16\""), std::string::npos)
        << body;

    // A monthly entry kept in UTC form folds back; an end at midnight shows 24:00.
    CiofSchedule monthly;
    Fill(monthly, "20130110", "20131231", "1400", "2400", "m");
    ASSERT_EQ(tag.BuildBody(&monthly, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(std::string(tag.body.GetStr()), "2013年01月10日(木)～12/31（繰り返し） 14:00～24:00||||");

    CiofSchedule list;
    Fill(list, "20130110", "20130110", "", "", "r");
    ASSERT_EQ(tag.BuildBody(&list, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(std::string(tag.body.GetStr()), "2013年01月10日(木)～01/10（日付指定の繰り返し）||||");
}

TEST_F(SchTagBody, Failures) {
    ZioTagSchUser tag;
    EXPECT_EQ(tag.BuildBody(nullptr, nullptr, nullptr, nullptr, nullptr), -99);
    std::filesystem::remove(root.Path() + "/page/template/cgi/tag/schedule.html");
    CiofSchedule s;
    Fill(s, "20130101", "20130101", "0900", "1000", "");
    EXPECT_EQ(tag.BuildBody(&s, nullptr, nullptr, nullptr, nullptr), -6100600);
}

}  // namespace
