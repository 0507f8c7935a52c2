// The readers behind convsch-report on the awkward lines real logs hold:
// texts with line feeds, keys whose values hold brackets or are named
// "detail", broken hex, repeated texts, and the wording of kept rows.
#include <gtest/gtest.h>

#include <string>

#include "MakeConvEToKiv/convreport/ConvReconcile.h"
#include "MakeConvEToKiv/convreport/ConvRunAccount.h"
#include "MakeConvEToKiv/convreport/ConvRunFiles.h"

namespace {

std::string Hex(const std::string& text) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    for (unsigned char c : text) {
        if (c == '\n') {
            out += '\n';
            continue;
        }
        out += digits[c >> 4];
        out += digits[c & 15];
    }
    return out;
}

TEST(RunFiles, StampsAndDurationsCrossMidnightAndMonthEnds) {
    const auto a = convrun::ParseStamp("2024/02/29 23:59:59.900");
    const auto b = convrun::ParseStamp("2024/03/01 00:00:00.150");
    ASSERT_TRUE(a && b);
    EXPECT_EQ(*b - *a, 250);
    EXPECT_FALSE(convrun::ParseStamp("2024/13/01 00:00:00.000"));
    EXPECT_FALSE(convrun::ParseStamp("2024/01/01 00:00:00"));
    EXPECT_FALSE(convrun::ParseStamp("2024-01-01 00:00:00.000"));
}

TEST(RunFiles, RowReportsKeepKeysWithBracketsBlanksAndEmptyValues) {
    auto r = convrun::ParseRowReport("TT_SCHEDULE [LOG_SCH_ID=7] [detail=a]b] [event=] [item=本社 3F] 重複エラーです。");
    ASSERT_TRUE(r);
    EXPECT_EQ(r->table, "TT_SCHEDULE");
    ASSERT_EQ(r->keys.size(), 4u);
    EXPECT_EQ(r->keys[1].second, "a]b");
    EXPECT_EQ(r->keys[2].second, "");
    EXPECT_EQ(r->keys[3].second, "本社 3F");
    EXPECT_EQ(r->reason, "重複エラーです。");
    // A table without keys, and a text that isn't a row's report.
    r = convrun::ParseRowReport("TM_SCH_SETTING 重複エラーです。");
    ASSERT_TRUE(r);
    EXPECT_TRUE(r->keys.empty());
    EXPECT_EQ(r->reason, "重複エラーです。");
    EXPECT_FALSE(convrun::ParseRowReport("データ件数の取得に失敗しました。"));
}

TEST(RunFiles, LogTextsWithLineFeedsStayOneReport) {
    const auto log = convrun::ParseUserLog(
        "2026/11/23 10:00:00.000 [WARN] first line\nsecond line\n2026/11/23 10:00:01.000 [INFO] next\n");
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].tag, "WARN");
    EXPECT_EQ(log[0].text, "first line\nsecond line");
    EXPECT_EQ(log[1].millis - log[0].millis, 1000);

    const std::string trace = "2026/11/23 10:00:00.000 " + Hex("[src/A:1] [ret=-1000006]  [msg=ERROR: dup\nDETAIL: x\n] [detail=INSERT]\n") +
                              "2026/11/23 10:00:00.001 " + Hex("[src/B:2] [ret=1]  [msg=T [detail=d] done]\n") +
                              "2026/11/23 10:00:00.002 zz-not-hex\n";
    const auto entries = convrun::ParseTraceLog(trace);
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].ret, -1000006);
    EXPECT_EQ(entries[0].source, "src/A:1");
    ASSERT_EQ(entries[0].splits.size(), 2u);
    EXPECT_EQ(entries[0].splits[1].first, "ERROR: dup\nDETAIL: x\n");
    EXPECT_EQ(entries[0].splits[1].second, "INSERT");
    EXPECT_EQ(entries[1].splits[0].first, "T [detail=d] done");  // a key named detail is no detail
    EXPECT_FALSE(entries[2].hasCode);
    EXPECT_EQ(entries[2].raw, "zz-not-hex");
}

TEST(RunAccountBuild, EqualReportsPairWithTheirOwnTraceLinesAndCauses) {
    const std::string log =
        "2026/11/23 10:00:00.000 [INFO] スケジュール 移行を開始します。\n"
        "2026/11/23 10:00:00.100 [WARN] TT_SCHEDULE [ID=1] 重複。\n"
        "2026/11/23 10:00:00.200 [WARN] TT_SCHEDULE [ID=1] 重複。\n"
        "2026/11/23 10:00:00.300 [WARN] TT_SCHEDULE [ID=1] [schedule]の値が桁数オーバーとなるため、[10]文字でカットして登録しました。\n"
        "2026/11/23 10:00:01.500 [INFO] スケジュール 3件移行が終了しました。(成功：1 失敗：2)\n"
        "2026/11/23 10:00:01.600 [INFO] スケジュール 移行が終了しました。\n"
        "2026/11/23 10:00:01.700 [WARN] 添付ファイルの複写に失敗しました。Name=[a] From=[b] To=[c] エラー詳細[x]\n";
    const std::string trace = "2026/11/23 10:00:00.100 " + Hex("[s:1] [ret=-1000006]  [msg=first cause] [detail=Q]\n") +
                              "2026/11/23 10:00:00.100 " + Hex("[s:2] [ret=1]  [msg=TT_SCHEDULE [ID=1] 重複。]\n") +
                              "2026/11/23 10:00:00.200 " + Hex("[s:2] [ret=1]  [msg=TT_SCHEDULE [ID=1] 重複。]\n") +
                              "2026/11/23 10:00:00.200 " + Hex("[s:1] [ret=-1000006]  [msg=second cause] [detail=Q]\n");
    const ConvRunAccount account = convrun::BuildAccount(std::string("status=0\n"), log, trace, false);
    ASSERT_EQ(account.steps.size(), 1u);
    const ConvStep& step = account.steps[0];
    EXPECT_EQ(step.stage, 'B');
    EXPECT_EQ(step.read, 3);
    EXPECT_EQ(step.written, 1);
    EXPECT_EQ(step.leftOut, 2);
    EXPECT_EQ(*step.endMillis - step.startMillis, 1600);
    ASSERT_EQ(step.notes.size(), 3u);
    EXPECT_EQ(step.notes[0].cause, "first cause");
    EXPECT_EQ(step.notes[1].ret, 1);
    EXPECT_EQ(step.notes[1].cause, "");  // the second cause comes after it: not its own
    EXPECT_EQ(step.notes[2].fate, ConvRowFate::KeptChanged);
    EXPECT_FALSE(step.notes[2].ret.has_value());
    ASSERT_EQ(account.outsideNotes.size(), 1u);
    EXPECT_EQ(account.outsideNotes[0].fate, ConvRowFate::FileMissing);
    EXPECT_EQ(convrun::DisplayWidth("ab予定ｱ"), 7u);
    // A refused number is reported as an error but leaves only its row out.
    EXPECT_EQ(convrun::FateOf("ERR", "T [ID=1] 数値型の項目に文字列が指定されたため、登録を行いませんでした。field=[a] value=[b]"),
              ConvRowFate::LeftOut);
    EXPECT_EQ(convrun::FateOf("ERR", "移行を中断しました。"), ConvRowFate::Failure);
}

// What explains a difference: a left-out row of the named table whose keys
// agree, or a report naming the file the key was read from; never a row that
// was kept, a report of another owner kind, or nothing at all.
TEST(Reconcile, DifferencesAreExplainedOnlyByReportsThatNameThem) {
    const std::string log =
        "2026/11/23 10:00:00.000 [INFO] ユーザースケジュール 移行の前準備を開始します。\n"
        "2026/11/23 10:00:00.100 [WARN] TTPR_SCHEDULE [ID=108] [SID_USER=1] 開始日付[20240231]が不正ですが処理を続行しました。\n"
        "2026/11/23 10:00:00.200 [WARN] TTPR_SCHEDULE [ID=109] [SID_USER=1] [memo]の値が桁数オーバーとなるため、[10]文字でカットして登録しました。\n"
        "2026/11/23 10:00:00.300 [WARN] ファイルの読み込みに失敗しました。ファイル[/s/data/user//3/schedule]errno[2]\n"
        "2026/11/23 10:00:00.350 [WARN] TTPR_SCHEDULE [SID_USER=1] [ID=108] 添付ファイルの登録に失敗しました。\n"
        "2026/11/23 10:00:00.400 [INFO] ユーザースケジュール 移行の前準備が終了しました。\n"
        "2026/11/23 10:00:01.000 [INFO] スケジュール 移行を開始します。\n"
        "2026/11/23 10:00:01.100 [WARN] TT_SCHEDULE_OTHERTO [LOG_KBN=2] [LOG_SCH_ID=110] [LOG_TID=1] 重複。\n"
        "2026/11/23 10:00:01.200 [INFO] スケジュール 移行が終了しました。\n";
    const ConvRunAccount account = convrun::BuildAccount(std::string("status=2\n"), log, std::nullopt, false);
    const std::vector<std::string> names = {"SID_USER", "ID"};
    const std::vector<ConvStoreKey> store = {{{"1", "107"}, "/s/u1"}, {{"1", "108"}, "/s/u1"},
                                             {{"1", "109"}, "/s/u1"}, {{"2", "108"}, "/s/u2"},
                                             {{"3", "301"}, "/s/data/user//3/schedule"}, {{"1", "110"}, "/s/u1"}};
    const std::vector<ConvKey> working = {{"1", "107"}, {"1", "110"}, {"4", "401"}};
    const std::vector<ConvKey> target = {{"1", "107"}};
    const std::vector<ConvNoteRule> storeRules = {{{"TTPR_SCHEDULE"}, {{"SID_USER"}, {"ID"}}, {}}};
    const std::vector<ConvNoteRule> targetRules = {
        {{"TT_SCHEDULE_OTHERTO"}, {{"LOG_TID"}, {"LOG_SCH_ID"}}, {{"LOG_KBN", "1"}}}};
    ConvFamilyResult result;
    convrun::CompareFamily(names, store, working, target, storeRules, targetRules, account, result);

    EXPECT_EQ(result.store, 6);
    EXPECT_EQ(result.working, 3);
    EXPECT_EQ(result.target, 1);
    std::vector<std::string> explained, unexplained;
    for (const ConvGap& gap : result.gaps) {
        const std::string line = std::string(gap.toTarget ? "B " : "A ") + (gap.missing ? "-" : "+") + gap.key;
        (gap.because.empty() ? unexplained : explained).push_back(line);
    }
    // 108 of user 1 by its row, 301 by its file; 109 was written (cut), 108 of
    // user 2 is another row, 110's report is about a group's copy, and 401
    // came from nowhere.
    EXPECT_EQ(explained, (std::vector<std::string>{"A -SID_USER=1 ID=108", "A -SID_USER=3 ID=301"}));
    EXPECT_EQ(unexplained, (std::vector<std::string>{"A -SID_USER=1 ID=109", "A -SID_USER=2 ID=108",
                                                     "A +SID_USER=4 ID=401", "B -SID_USER=1 ID=110",
                                                     "B -SID_USER=4 ID=401"}));
    EXPECT_EQ(result.explained, 2);
    EXPECT_EQ(result.unexplained, 5);
    // Of two reports that explain a key, the run's first is shown.
    for (const ConvGap& gap : result.gaps)
        if (gap.key == "SID_USER=1 ID=108") {
            EXPECT_NE(gap.because.find("開始日付"), std::string::npos) << gap.because;
        }

    // A side that isn't compared counts nothing and compares nothing.
    ConvFamilyResult partial;
    convrun::CompareFamily(names, store, working, std::nullopt, storeRules, targetRules, account, partial);
    EXPECT_FALSE(partial.target.has_value());
    EXPECT_EQ(partial.unexplained, 3);

    EXPECT_EQ(convrun::FromBase36("00000000002t"), "101");
    EXPECT_EQ(convrun::FromBase36("000000000032"), "110");
    EXPECT_EQ(convrun::FromBase36("0000-0"), "0000-0");
}

}  // namespace
