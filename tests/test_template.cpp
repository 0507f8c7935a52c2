// Tests of the template engine: placeholders, escapes, ranges, buffer and print
// modes, tag case folding and the load failures.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <string>

#include "TestSupport.h"
#include "base/NUNVList.h"
#include "base/NUTemplateToOutput.h"

namespace {

// Print mode without touching standard output.
class CapturingTemplate : public NUTemplateToOutput {
public:
    std::string printed;
    int Print(std::string_view text) override {
        printed.append(text);
        return 0;
    }
};

struct Param {
    const char* name;
    const char* value;
    int mode;
};

// Expands `text` in buffer mode with the given parameters; the result or "rc=<code>".
std::string Expand(const char* text, std::initializer_list<Param> params = {}) {
    NUTemplateToOutput tpl;
    tpl.SetTemplateText(text, true);
    for (const Param& p : params) EXPECT_EQ(tpl.AddParam(p.name, p.value, p.mode), 0) << p.name;
    const int rc = tpl.ExpandTemplate();
    if (rc != 0) return "rc=" + std::to_string(rc);
    return tpl.GetResult();
}

std::string Escape(const char* value, int mode) {
    std::string out;
    EXPECT_EQ(NUTemplateToOutput::EscapeText(value, mode, out), 0);
    return out;
}

}  // namespace

TEST(TemplatePlaceholder, ReplacesKnownNamesAndKeepsTheRest) {
    EXPECT_EQ(Expand("[$a$]", {{"a", "x", 0}}), "[x]");
    EXPECT_EQ(Expand("[$a$]"), "[$a$]");
    EXPECT_EQ(Expand("a$b\nc", {{"b", "B", 0}}), "a$b\nc");
    EXPECT_EQ(Expand("$a$b$", {{"a", "x", 0}}), "xb$");
    EXPECT_EQ(Expand("$z$$a$", {{"a", "x", 0}}), "$z$x");
    // The closing mark has to be on the same line.
    EXPECT_EQ(Expand("$a\n$a$", {{"a", "x", 0}}), "$a\nx");
    // A value is not expanded a second time.
    EXPECT_EQ(Expand("$a$", {{"a", "<$b$>", 0}, {"b", "no", 0}}), "<$b$>");
    // The first of repeated names counts; a null value is empty.
    EXPECT_EQ(Expand("$a$|$n$", {{"a", "1", 0}, {"a", "2", 0}, {"n", nullptr, 0}}), "1|");
    EXPECT_EQ(Expand("制限は$limit$文字です", {{"limit", "10", 0}}), "制限は10文字です");

    NUTemplateToOutput tpl;
    EXPECT_EQ(tpl.AddParam(nullptr, "v", 0), kTplBadArgument);
    EXPECT_EQ(tpl.AddParam("", "v", 0), kTplBadArgument);
    EXPECT_EQ(tpl.AddDateParam("d", "20130105"), 0);
    EXPECT_EQ(tpl.AddDateParam("bad", "2013a105"), kTplBadArgument);
    tpl.SetTemplateText("$d$ $bad$", true);
    ASSERT_EQ(tpl.ExpandTemplate(), 0);
    EXPECT_STREQ(tpl.GetResult(), "2013-01-05 $bad$");
}

TEST(TemplatePlaceholder, LanguageNames) {
    NUNVList lang;
    ASSERT_EQ(lang.AddText("save", "保存"), 0);
    NUTemplateToOutput tpl;
    tpl.SetTemplateText("$LLsave$/$LLdelete$/$LL$", true);
    ASSERT_EQ(tpl.ExpandTemplate(), 0);
    EXPECT_STREQ(tpl.GetResult(), "save/delete/");
    tpl.ClearResult();
    tpl.SetLangList(&lang);
    ASSERT_EQ(tpl.ExpandTemplate(), 0);
    EXPECT_STREQ(tpl.GetResult(), "保存/delete/");
}

TEST(TemplateEscape, ByMode) {
    EXPECT_EQ(Escape("<b>", 0), "<b>");
    EXPECT_EQ(Escape("a&b \"c\"", 1), "a&amp;b &quot;c&quot;");
    EXPECT_EQ(Escape("x\r\n  y", 1), "x\r\n  y");
    EXPECT_EQ(Expand("$v$", {{"v", "<i>&", 1}}), "&lt;i&gt;&amp;");
    EXPECT_EQ(Escape("a  b", 2), "a&nbsp; b");
    EXPECT_EQ(Escape("a   b", 2), "a&nbsp;&nbsp; b");
    EXPECT_EQ(Escape(" a", 2), " a");
    EXPECT_EQ(Escape("x\r\ny", 2), "x<br>\ny");
    EXPECT_EQ(Escape("x\t y", 2), "x\t&nbsp;y");
    // Multi-byte sequences pass whole, a cut one at the end too.
    EXPECT_EQ(Escape("日本 <語>", 2), "日本 &lt;語&gt;");
    EXPECT_EQ(Escape("a\xE6\x97", 2), "a\xE6\x97");
    EXPECT_EQ(Expand("$memo$", {{"memo", "1\n  2", 2}}), "1<br>\n&nbsp; 2");
}

// Lines count from 1 (0: the first or the last); marks narrow the lines further.
TEST(TemplateRange, ByLineAndMark) {
    const char* text = "head\n<!--S--> x\nbody $a$\n<!--E-->\ntail\n<!--S2-->\n";
    const struct { const char *start, *end; int first, last; const char* want; } cases[] = {
        {nullptr, nullptr, 2, 3, "<!--S--> x\nbody x\n"},
        {nullptr, nullptr, 5, 0, "tail\n<!--S2-->\n"},
        {nullptr, nullptr, 0, 1, "head\n"},
        {nullptr, nullptr, 3, 2, ""},
        {nullptr, nullptr, 6, 99, "<!--S2-->\n"},
        {"<!--S-->", "<!--E-->", 1, 0, "body x\n"},
        {"<!--S-->", nullptr, 1, 4, "body x\n<!--E-->\n"},
        {nullptr, "<!--E-->", 3, 0, "body x\n"},
        {nullptr, "<!--E-->", 4, 0, ""},
        {"<!--S-->", "<!--S", 1, 0, "body x\n<!--E-->\ntail\n"},
        {"<!--S2-->", "x", 1, 0, "rc=-57"},
        {"<!--X-->", "<!--E-->", 1, 0, "rc=-56"},
        {"x", nullptr, 1, 0, "rc=-56"},  // marks match at line starts only
    };
    for (const auto& c : cases) {
        NUTemplateToOutput tpl;
        tpl.SetTemplateText(text, true);
        ASSERT_EQ(tpl.AddParam("a", "x", 0), 0);
        ASSERT_EQ(tpl.SetStartMark(c.start), 0);
        ASSERT_EQ(tpl.SetEndMark(c.end), 0);
        tpl.SetFirstLine(c.first);
        tpl.SetLastLine(c.last);
        const int rc = tpl.ExpandTemplate();
        EXPECT_EQ(rc != 0 ? "rc=" + std::to_string(rc) : std::string(tpl.GetResult()), c.want)
            << (c.start ? c.start : "-") << " " << (c.end ? c.end : "-") << " " << c.first << ".." << c.last;
    }
}

TEST(TemplateBuffer, CollectsAcrossRunsAndKeepsParameters) {
    CapturingTemplate tpl;
    tpl.SetTemplateText("<b>$a$</b>", true);
    ASSERT_EQ(tpl.AddParam("a", "1", 0), 0);
    ASSERT_EQ(tpl.ExpandTemplate(), 0);
    ASSERT_EQ(tpl.ExpandTemplate(), 0);
    EXPECT_STREQ(tpl.GetResult(), "<b>1</b><b>1</b>");
    EXPECT_EQ(tpl.printed, "");

    char* taken = tpl.TakeResult();
    EXPECT_STREQ(taken, "<b>1</b><b>1</b>");
    std::free(taken);

    // Print mode writes through Print and collects nothing.
    tpl.SetTemplateText("<b>$a$</b>", false);
    ASSERT_EQ(tpl.ExpandTemplate(), 0);
    EXPECT_STREQ(tpl.GetResult(), "");
    EXPECT_EQ(tpl.printed, "<B>1</B>");
}

TEST(TemplateCaseFold, FoldsTagAndAttributeNamesOnly) {
    const struct { const char *in, *want; } cases[] = {
        {"<a href=\"x.html\">link</a>", "<A HREF=\"x.html\">link</A>"},
        {"<td class=left nowrap>cell</td>", "<TD CLASS=left NOWRAP>cell</TD>"},
        {"<img alt=\"a > b\" src=pic.gif>", "<IMG ALT=\"a > b\" SRC=pic.gif>"},
        {"<p title=\"日本\" lang=ja>日本語 text</p>", "<P TITLE=\"日本\" LANG=ja>日本語 text</P>"},
        {"1 < 2 and b", "1 < 2 AND B"},  // an unclosed "<" runs to the end
    };
    for (const auto& c : cases) {
        CapturingTemplate tpl;
        tpl.SetTemplateText(c.in, false);
        ASSERT_EQ(tpl.ExpandTemplate(), 0);
        EXPECT_EQ(tpl.printed, c.want) << c.in;
    }
    // Buffer mode folds nothing.
    EXPECT_EQ(Expand("<a href=x>y</a>"), "<a href=x>y</a>");
}

TEST(TemplateFile, LoadsAndReportsReadFailures) {
    testsupport::TempDir dir;
    const std::string file = dir / "t.html";
    testsupport::WriteFile(file, "<div>$date$</div>\n");
    NUTemplateToOutput tpl;
    EXPECT_EQ(tpl.ExpandTemplate(), kTplNoPath);

    ASSERT_EQ(tpl.SetTemplate(file.c_str(), true), 0);
    ASSERT_EQ(tpl.AddDateParam("date", "20010203"), 0);
    ASSERT_EQ(tpl.ExpandTemplate(), 0);
    EXPECT_STREQ(tpl.GetResult(), "<div>2001-02-03</div>\n");

    // The loaded text is kept until the next SetTemplate.
    testsupport::WriteFile(file, "changed");
    tpl.ClearResult();
    ASSERT_EQ(tpl.ExpandTemplate(), 0);
    EXPECT_STREQ(tpl.GetResult(), "<div>2001-02-03</div>\n");
    ASSERT_EQ(tpl.SetTemplate(file.c_str(), true), 0);
    tpl.ClearResult();
    ASSERT_EQ(tpl.ExpandTemplate(), 0);
    EXPECT_STREQ(tpl.GetResult(), "changed");

    ASSERT_EQ(tpl.SetTemplate((dir / "missing.html").c_str(), true), 0);
    EXPECT_EQ(tpl.ExpandTemplate(), kTplOpenFailed);
    ASSERT_EQ(tpl.SetTemplate(dir.Path().c_str(), true), 0);
    EXPECT_EQ(tpl.ExpandTemplate(), kTplReadFailed);
    // A sparse file: its size is checked before anything is read.
    const std::string big = dir / "big.html";
    testsupport::WriteFile(big, "");
    ASSERT_EQ(::truncate(big.c_str(), NUTemplateToOutput::kMaxTemplateBytes + 1), 0);
    ASSERT_EQ(tpl.SetTemplate(big.c_str(), true), 0);
    EXPECT_EQ(tpl.ExpandTemplate(), kTplTooLarge);

    const std::string longPath(NUTemplateToOutput::kPathSize, 'p');
    EXPECT_EQ(tpl.SetTemplate(longPath.c_str(), true), kTplBadArgument);
    EXPECT_EQ(tpl.ExpandTemplate(), kTplNoPath);
}
