// Tests of the rich text of agenda topics: the merge of memo lines into the
// frame's markers, the line reader and the HTML escapes under it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "MakeConvLib/cxiocom/MergeRichText.h"
#include "base/comHtml.h"

namespace {

// The merge as the batch runs it; "<none>" for no text, "rc=<code>" on failure.
std::string Merge(const char* memo, const char* format, bool byLines = true) {
    char* out = nullptr;
    const int rc = MergeRichText(memo, format, byLines, &out);
    if (rc != 0) return "rc=" + std::to_string(rc);
    if (!out) return "<none>";
    std::string text = out;
    std::free(out);
    return text;
}

TEST(RichText, PlainMemoIsOneDivUnescaped) {
    EXPECT_EQ(Merge("a\nb", ""), "<div>a<br />b</div>");
    EXPECT_EQ(Merge("a\r\nb", nullptr), "<div>a<br />b</div>");
    EXPECT_EQ(Merge("<b> & x", "<BR><BR>"), "<div><b> & x</div>");
    EXPECT_EQ(Merge("", ""), "<none>");
    EXPECT_EQ(Merge(nullptr, "<BR>"), "<none>");
}

TEST(RichText, LinesGoIntoMarkers) {
    EXPECT_EQ(Merge("x y", "<p>$text$</p>"), "<p>x&nbsp;y</p>");
    EXPECT_EQ(Merge("", "<p>$text$</p>"), "<p>&nbsp;</p>");
    EXPECT_EQ(Merge("a", "<BR><BR>$text$"), "a");
    EXPECT_EQ(Merge("a", "<br>$text$"), "<br>a");
    EXPECT_EQ(Merge("a\nb", "<p>$text$</p><p>$text$</p>"), "<p>a</p><p>b</p>");
    EXPECT_EQ(Merge("a\r\nb", "<p>$text$</p><p>$text$</p>"), "<p>a</p><p>b</p>");
    EXPECT_EQ(Merge("<a href=\"x\">'&'</a>", "<p>$text$</p>"),
              "<p>&#60;a&nbsp;href=&#34;x&#34;&#62;'&#38;'&#60;/a&#62;</p>");
    // Only the exact marker counts.
    EXPECT_EQ(Merge("a", "<p>$TEXT$</p>"), "<p>$TEXT$</p>a");
}

TEST(RichText, SurplusLinesFollowAndSurplusMarkersStay) {
    EXPECT_EQ(Merge("a\nb", "<b>F</b>"), "<b>F</b>ab");
    EXPECT_EQ(Merge("a\nb\nc", "<p>$text$</p>"), "<p>a</p>bc");
    EXPECT_EQ(Merge("a", "<p>$text$</p><p>$text$</p>"), "<p>a</p><p>$text$</p>");
    // A trailing line feed ends the memo.
    EXPECT_EQ(Merge("a\n", "<p>$text$</p><p>$text$</p>"), "<p>a</p><p>$text$</p>");
}

TEST(RichText, EmptyLinesGiveOneSpaceInASlotOnly) {
    EXPECT_EQ(Merge("   ", "<p>$text$</p>"), "<p>&nbsp;</p>");
    EXPECT_EQ(Merge("a\n\t \nb", "<p>$text$</p><p>$text$</p><p>$text$</p>"),
              "<p>a</p><p>&nbsp;</p><p>b</p>");
    // Beyond the markers an empty line leaves nothing.
    EXPECT_EQ(Merge("a\n \nb", "<p>$text$</p>"), "<p>a</p>b");
}

TEST(RichText, LineBreaksInsideALine) {
    char* line = nullptr;
    EXPECT_EQ(TakeTextLine("a\v\nb\nc", &line, false), 4);
    EXPECT_STREQ(line, "a\nb");
    std::free(line);
    EXPECT_EQ(TakeTextLine("a\v\nb\nc", &line, true), 4);
    EXPECT_STREQ(line, "a<br>\nb");
    std::free(line);
    EXPECT_EQ(TakeTextLine("\v\vx", &line, false), 3);
    EXPECT_STREQ(line, "\vx");
    std::free(line);
    EXPECT_EQ(TakeTextLine(nullptr, &line, true), -99);
    EXPECT_EQ(TakeTextLine("a", nullptr, true), -99);

    EXPECT_EQ(Merge("a\v\nb\nc", "<p>$text$</p><p>$text$</p>"), "<p>a<br>\nb</p><p>c</p>");
    // Not by lines: the whole memo into the first marker.
    EXPECT_EQ(Merge("a\nb", "<p>$text$</p><p>$text$</p>", false), "<p>a<br>\nb</p><p>$text$</p>");
}

TEST(HtmlEscape, EntitiesLinksAndReverse) {
    auto escape = [](const char* text, bool links, bool breaks, bool named) {
        char* out = comHtmlEscape(text, links, breaks, false, named, false);
        std::string s = out ? out : "<null>";
        std::free(out);
        return s;
    };
    EXPECT_EQ(escape("<\"&'>\r\n ", false, false, false), "&#60;&#34;&#38;'&#62;\n ");
    EXPECT_EQ(escape("<\"&'>\r\n ", false, true, true), "&lt;&quot;&amp;&apos;&gt;<br>\n&nbsp;");
    EXPECT_EQ(escape(nullptr, false, false, false), "<null>");
    EXPECT_EQ(escape("see http://a.b/c?d=1&e=2 now", true, false, false),
              "see <a href=\"http://a.b/c?d=1&#38;e=2\" target=\"new\">http://a.b/c?d=1&#38;e=2</a> now");
    EXPECT_EQ(escape("mailto:x@y.z", true, false, false), "<a href=\"mailto:x@y.z\">mailto:x@y.z</a>");
    EXPECT_EQ(escape("  a\tb", true, false, false), "&nbsp; a\tb");
    EXPECT_EQ(escape("a\t b", true, false, false), "a\t&nbsp;b");
    char* kept = comHtmlEscape("http://a/b\ncd", true, false, false, false, true);
    EXPECT_STREQ(kept, "<a href=\"http://a/bcd\" target=\"new\">http://a/bcd</a>");
    std::free(kept);

    EXPECT_EQ(comHtmlUnescape(std::string_view("&lt;&#60;&gt;&#62;&amp;&#38;&quot;&#34;&nbsp;&apos;&x;")),
              "<<>>&&\"\" '&x;");
    EXPECT_EQ(comUrlEncode("schedule/icon/3 x", 2), "schedule/icon/3%20x");
    EXPECT_EQ(comUrlEncode("a/b", 0), "a%2Fb");
}

}  // namespace
