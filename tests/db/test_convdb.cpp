// The table object, row writer and row reader against the test cluster: the
// continue rule, the reports of failed statements, statement building with
// literals and parameters, reading NULLs, and the row helpers.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "ClusterRun.h"
#include "MakeConvEToKiv/convcom/ConvDBEntry.h"
#include "MakeConvEToKiv/convcom/ConvDBRead.h"
#include "base/NUNVList.h"

using namespace testsupport;

namespace {

class ConvDBTest : public ClusterRunTest {
protected:
    ConvDBTest()
        : ClusterRunTest("convdb_test",
                         "CREATE TABLE t_item (SID_CORPORATE int NOT NULL, id int PRIMARY KEY, name varchar(20),"
                         " memo text, note text DEFAULT 'dflt', amount numeric, flag smallint);") {}

    bool UserLogHasStart(const std::string& start) const {
        const std::vector<std::string> log = UserLog();
        return std::any_of(log.begin(), log.end(), [&](const std::string& l) { return l.rfind(start, 0) == 0; });
    }
    bool TraceHas(const std::string& part) const {
        const TraceLog log = ReadTrace(app_.TracePath());
        EXPECT_TRUE(log.wellFormed);
        return std::any_of(log.reports.begin(), log.reports.end(),
                           [&](const std::string& r) { return r.find(part) != std::string::npos; });
    }

    static ConvRow Row(std::initializer_list<std::tuple<const char*, const char*, uint32_t>> items) {
        ConvRow row;
        for (const auto& [name, value, type] : items) AddColumn(name, value, type, row);
        return row;
    }
    // A row as "name=value:type" items, "name:type" for NULL.
    static std::string Text(const ConvRow& row) {
        std::string out;
        for (const auto& item : row)
            out += (out.empty() ? "" : " ") + item->name + (item->HasValue() ? "=" + *item->value : "") + ":" +
                   std::to_string(item->type);
        return out;
    }
};

TEST_F(ConvDBTest, DuplicateKeyRowIsSkippedAndTheNextRowGoesIn) {
    ASSERT_EQ(kiv_->SetTransactional(false), 0);
    app_.SetAbortInTransaction(true);
    ConvDBEntry writer(&app_, kiv_);
    writer.AddKey("ID", "");

    auto row = [](const char* id) { return Row({{"sid_corporate", "1", 1}, {"id", id, 1}, {"name", "x", 0}}); };
    ConvRow first = row("1"), again = row("1"), next = row("2");
    EXPECT_EQ(writer.Entry("t_item", first), 0);
    EXPECT_EQ(writer.Entry("t_item", again), 1);
    EXPECT_EQ(writer.Entry("t_item", next), 0);
    EXPECT_EQ(Value("SELECT count(*) FROM t_item"), "2");

    EXPECT_TRUE(UserLogHas("[WARN] t_item [ID=1] 重複エラーが発生しましたが処理を続行しました。"));
    // The technical report carries the server's text and the statement.
    EXPECT_TRUE(TraceHas("[ret=-1000006]  [msg=2601:[23505]:"));
    EXPECT_TRUE(TraceHas("[detail=INSERT INTO t_item (sid_corporate,id,name) VALUES (1,1,'x')]"));

    // With noContinue the same failure stops the table.
    writer.SetNoContinue(true);
    ConvRow third = row("2");
    EXPECT_EQ(writer.Entry("t_item", third), -1012);
    EXPECT_TRUE(UserLogHas("[ERR] t_item [ID=2] 重複エラーが発生したため処理を中断しました。"));
}

// A row is named only by its own values, and a row with nothing to write is
// left out with a warning instead of sending a statement that can't parse.
TEST_F(ConvDBTest, RowsAreNamedByTheirOwnKeysAndEmptyRowsAreLeftOut) {
    ASSERT_EQ(kiv_->SetTransactional(false), 0);
    ConvDBEntry writer(&app_, kiv_);
    writer.AddKey("ID", "");
    writer.AddKey("NAME", "");

    ConvRow five = Row({{"sid_corporate", "1", 1}, {"id", "5", 1}, {"name", "five", 0}});
    EXPECT_EQ(writer.Entry("t_item", five), 0);
    ConvRow noId = Row({{"sid_corporate", "1", 1}, {"name", "anon", 0}});  // id is NOT NULL
    EXPECT_EQ(writer.Entry("t_item", noId), 1);
    EXPECT_TRUE(UserLogHasStart("[WARN] t_item [ID=] [NAME=anon] 必須エラー"));

    ConvRow empty = Row({{"id", nullptr, 1}});  // "2=" in an item list
    EXPECT_EQ(writer.Entry("t_item", empty), 1);
    EXPECT_TRUE(UserLogHas("[WARN] t_item [ID=] [NAME=] 登録する値がないため、スキップしました。"));
    writer.SetSourceFile("/store/data/group/nogroup/agenda/admin");
    EXPECT_EQ(writer.Entry("t_item", empty), 1);
    EXPECT_TRUE(UserLogHas(
        "[WARN] t_item [ID=] [NAME=] 登録する値がないため、スキップしました。ファイル[/store/data/group/nogroup/agenda/admin]"));
    writer.SetUpdateMode(true);
    EXPECT_EQ(writer.Entry("t_item", empty), 1);
    EXPECT_EQ(Value("SELECT count(*) FROM t_item"), "1");
}

TEST_F(ConvDBTest, ContinueRuleFollowsTransactionAndPhase) {
    ConvDB db(&app_, kiv_);
    db.SetTitle("t_item");
    const char* dup = "INSERT INTO t_item (SID_CORPORATE, id) VALUES (1, 5)";
    Sql("INSERT INTO t_item (SID_CORPORATE, id) VALUES (1, 5)");

    // Within a transaction: forgiven before the main conversions, fatal after.
    ASSERT_TRUE(kiv_->IsTransactional());
    app_.SetAbortInTransaction(false);
    EXPECT_EQ(db.Exec(dup), 1);
    kiv_->Rollback(0);
    app_.SetAbortInTransaction(true);
    EXPECT_EQ(db.Exec(dup), -1012);
    EXPECT_TRUE(UserLogHas("[ERR] t_item 重複エラーが発生したため処理を中断しました。"));
    kiv_->Rollback(0);

    // In auto-commit a unique violation is always stepped over; an undefined column
    // only before the main conversions; a syntax error never.
    ASSERT_EQ(kiv_->SetTransactional(false), 0);
    EXPECT_EQ(db.Exec(dup), 1);
    const char* undefinedColumn = "UPDATE t_item SET nosuch=1";
    app_.SetAbortInTransaction(false);
    EXPECT_EQ(db.Exec(undefinedColumn), 1);
    app_.SetAbortInTransaction(true);
    EXPECT_EQ(db.Exec(undefinedColumn), -1017);
    app_.SetAbortInTransaction(false);
    EXPECT_EQ(db.Exec("INSERT INTO t_item VALUS (1)"), -1016);
    // The server's text follows, over several lines.
    EXPECT_TRUE(UserLogHasStart(
        "[ERR] t_item データベースエラーが発生したため処理を中断しました。(err[-1016] status[170] msg[[42601]:ERROR:"));

    EXPECT_EQ(db.Exec(nullptr), -1099);
    EXPECT_EQ(db.Exec(""), -1099);
}

TEST_F(ConvDBTest, QuotesAndBackslashesArriveUnchanged) {
    ASSERT_EQ(kiv_->SetTransactional(false), 0);
    ConvDBEntry writer(&app_, kiv_);
    const std::string tricky = R"(O'Brien \n \\ '' \' end)";
    ConvRow row = Row({{"sid_corporate", "1", 1},
                       {"id", "1", 1},
                       {"name", "a'b\\c", 0},
                       {"memo", tricky.c_str(), 2},
                       {"note", nullptr, 0},  // no value: the column is left out
                       {"amount", "", 1}});   // an empty value is no value
    row.push_back(std::make_unique<ConvRowItem>("flag", std::string(), kRowTypeNumber));  // written as NULL
    EXPECT_EQ(writer.Entry("t_item", row), 0);
    EXPECT_EQ(writer.GetSql(), "INSERT INTO t_item (sid_corporate,id,name,memo,flag) VALUES (1,1,'a''b\\c',$1,NULL)");
    EXPECT_EQ(Value("SELECT name FROM t_item WHERE id=1"), "a'b\\c");
    EXPECT_EQ(Value("SELECT memo FROM t_item WHERE id=1"), tricky);
    EXPECT_EQ(Value("SELECT note FROM t_item WHERE id=1"), "dflt");
    EXPECT_EQ(Value("SELECT flag FROM t_item WHERE id=1"), "<null>");

    // A nested list is never a column; eight parameters fit, a ninth doesn't.
    ConvRow wide = Row({{"sid_corporate", "1", 1}, {"id", "2", 1}});
    AddColumn("dates", nullptr, kRowTypeList, wide);
    wide.back()->list = {"20240101"};
    for (int i = 0; i < 8; ++i) AddColumn("memo", "m", kRowTypeLong, wide);
    EXPECT_EQ(writer.CollectColumns("t_item", wide), 0);
    EXPECT_EQ(writer.GetParamCount(), 8);
    AddColumn("note", "n", kRowTypeLong, wide);
    EXPECT_EQ(writer.Entry("t_item", wide), -1099);
    EXPECT_TRUE(TraceHas("[text count=8]"));
}

// A writer whose UPDATE condition is set per row (Clear empties it with the statement).
class WhereWriter : public ConvDBEntry {
public:
    using ConvDBEntry::ConvDBEntry;
    int32_t BeforeCollect() override {
        AddWhere(where.c_str());
        return 0;
    }
    std::string where;
};

TEST_F(ConvDBTest, UpdateCarriesCorporateConditionAndMissingRowIsReported) {
    ASSERT_EQ(kiv_->SetTransactional(false), 0);
    app_.SetAbortInTransaction(true);
    Sql("INSERT INTO t_item (SID_CORPORATE, id, name) VALUES (1, 1, 'old'), (2, 1000, 'other')");
    WhereWriter writer(&app_, kiv_);
    writer.AddKey("id", "");
    writer.SetUpdateMode(true);

    ConvRow row = Row({{"name", "new", 0}, {"amount", "12.5", 1}, {"id", "1", 1}});
    writer.where = "id=1";
    EXPECT_EQ(writer.Entry("t_item", row), 0);
    EXPECT_EQ(writer.GetSql(), "UPDATE t_item SET name='new',amount=12.5,id=1 WHERE SID_CORPORATE=1 AND id=1");
    EXPECT_EQ(Value("SELECT name || ' ' || amount FROM t_item WHERE id=1"), "new 12.5");

    // Without a condition of its own the corporate one still holds.
    ConvRow all = Row({{"name", "all", 0}});
    writer.where.clear();
    EXPECT_EQ(writer.Entry("t_item", all), 0);
    EXPECT_EQ(Value("SELECT name FROM t_item WHERE id=1000"), "other");

    ConvRow missing = Row({{"id", "99", 1}, {"name", "x", 0}});
    writer.where = "id=99";
    EXPECT_EQ(writer.Entry("t_item", missing), 1);
    EXPECT_TRUE(UserLogHas("[WARN] t_item [id=99] 該当レコードなしエラーが発生しましたが処理を続行しました。"));
}

TEST_F(ConvDBTest, ReaderKeepsNullApartFromEmptyText) {
    Sql("CREATE TABLE r (id int, name varchar(10), memo text, amount numeric, data bytea);"
        "INSERT INTO r VALUES (1, NULL, '', 3.50, 'x'), (2, 'b', NULL, NULL, NULL);");
    ConvDBRead reader(&app_, app_.EntConnection());
    ASSERT_EQ(reader.OpenQuery("select id, name, memo, amount from r order by id"), 0);

    // Integers and varchar are quoted literals on the way out.
    ASSERT_EQ(reader.Fetch(), 1);
    EXPECT_EQ(Text(reader.Row()), "id=1:0 name:0 memo=:2 amount=3.50:1");
    ASSERT_EQ(reader.Fetch(), 1);
    EXPECT_EQ(Text(reader.Row()), "id=2:0 name=b:0 memo:2 amount:1");
    EXPECT_EQ(reader.Fetch(), 0);
    EXPECT_TRUE(reader.Row().empty());
    EXPECT_EQ(reader.Fetch(), 0);

    ASSERT_EQ(reader.OpenTable("r where id > 5"), 0);
    EXPECT_EQ(reader.Fetch(), 0);

    // bytea can't be read; a failing query is reported and returned.
    ASSERT_EQ(reader.OpenQuery("select data from r"), 0);
    EXPECT_EQ(reader.Fetch(), -1008);
    EXPECT_EQ(reader.OpenQuery("select nosuch from r"), 1);  // forgiven before the main conversions
    app_.SetAbortInTransaction(true);
    EXPECT_EQ(reader.OpenQuery("select nosuch from r"), -1017);
}

TEST_F(ConvDBTest, CutToLengthCutsOnCharacterBoundaryAndWarns) {
    ConvDB db(&app_, kiv_);
    db.SetTitle("t_item");
    db.AddKey("id", "7");
    std::string out;
    EXPECT_EQ(db.CutToLength("name", "あいうえおか", 5, out), 0);
    EXPECT_EQ(out, "あいうえお");
    EXPECT_TRUE(
        UserLogHas("[WARN] t_item [id=7] [name]の値が桁数オーバーとなるため、[5]文字でカットして登録しました。"));

    // A four-byte character counts two and is not split.
    EXPECT_EQ(db.CutToLength("name", "a\xF0\xA0\x80\x8B" "b", 2, out), 0);
    EXPECT_EQ(out, "a");

    const size_t before = UserLog().size();
    EXPECT_EQ(db.CutToLength("name", "あいう", 3, out), 0);
    EXPECT_EQ(out, "あいう");
    EXPECT_EQ(UserLog().size(), before);
}

TEST_F(ConvDBTest, MakeUniqueFileNameNumbersRepeatedNames) {
    ConvDB db(&app_, kiv_);
    db.SetTitle("TT_ATTACH");
    NUNVList used, seen;
    used.AddText("a(2).txt", "5");
    auto unique = [&](const char* name, std::size_t limit) {
        std::string out;
        EXPECT_EQ(db.MakeUniqueFileName(name, limit, out, used, seen), 0);
        return out;
    };
    EXPECT_EQ(unique("a.txt", 255), "a.txt");
    EXPECT_EQ(unique("a.txt", 255), "a(1).txt");
    EXPECT_EQ(unique("a.txt", 255), "a(3).txt");  // a(2).txt is taken
    EXPECT_TRUE(UserLogHas("[WARN] TT_ATTACH ファイル名が重複するため、変更して登録しました。 [a.txt]->[a(3).txt]"));

    // The extension survives a cut; stem and number give way.
    EXPECT_EQ(unique("報告書類.pdf", 7), "報告書類.pdf");
    EXPECT_EQ(unique("報告書類.pdf", 7), "報告書.pdf");
}

TEST_F(ConvDBTest, ScriptFileRunsLinesAndStopsAtFailure) {
    MakeDirs(dir_ / "sql/sch");
    WriteFile(dir_ / "sql/sch/setup.sql",
              "-- comment\n\nINSERT INTO t_item (SID_CORPORATE, id) VALUES (1, 1)\r\n"
              "INSERT INTO t_item (SID_CORPORATE, id) VALUES (1, 2)\n");
    WriteFile(dir_ / "sql/sch/broken.sql", "DELETE FROM t_item WHERE id=1\nDELET FROM t_item\nDELETE FROM t_item\n");
    ConvDB db(&app_, kiv_);
    ASSERT_EQ(kiv_->SetTransactional(false), 0);
    EXPECT_EQ(db.ExecScriptFile("setup"), 0);
    EXPECT_EQ(Value("SELECT count(*) FROM t_item"), "2");
    EXPECT_EQ(db.ExecScriptFile("broken"), -1016);
    EXPECT_EQ(Value("SELECT count(*) FROM t_item"), "1");
    EXPECT_TRUE(UserLogHasStart("[ERR] ファイルからのSQL発行に失敗しました。 sql[DELET FROM t_item] (err[-1016] status[170]"));
    EXPECT_EQ(db.ExecScriptFile("missing"), -1021);

    // The report of a long failing line is cut as a whole at 1023 bytes, and a
    // character that the cut would split is left out.
    const std::string head = "DELET " + std::string(957, 'x');
    std::string longLine = head;
    for (int i = 0; i < 100; ++i) longLine += "あ";
    WriteFile(dir_ / "sql/sch/long.sql", longLine + "\n");
    EXPECT_EQ(db.ExecScriptFile("long"), -1016);
    EXPECT_EQ(UserLog().back(), "[ERR] ファイルからのSQL発行に失敗しました。 sql[" + head);
}

TEST_F(ConvDBTest, NormalizeCreateUpdateTimesShiftsToUtc) {
    ConvRow one = Row({{"cretime", "20240301085959", 0}});
    EXPECT_EQ(NormalizeCreateUpdateTimes(one, "cretime", "updtime"), 0);
    EXPECT_EQ(Text(one), "cretime=20240229235959:0 updtime=20240229235959:0");

    ConvRow both = Row({{"cretime", "20230101090000", 0}, {"UPDTIME", "20231231235959", 0}});
    EXPECT_EQ(NormalizeCreateUpdateTimes(both, "cretime", "updtime"), 0);
    EXPECT_EQ(Text(both), "cretime=20230101000000:0 UPDTIME=20231231145959:0");

    ConvRow none = Row({{"cretime", "", 0}});
    EXPECT_EQ(NormalizeCreateUpdateTimes(none, "cretime", "updtime"), 0);
    const std::string now = FindColumn(none, "cretime");
    EXPECT_TRUE(IsDigits(now, 14) && now.rfind("20", 0) == 0);
    EXPECT_EQ(FindColumn(none, "updtime"), now);

    ConvRow bad = Row({{"updtime", "2024xx01000000", 0}});
    EXPECT_EQ(NormalizeCreateUpdateTimes(bad, "cretime", "updtime"), 1);
}

TEST_F(ConvDBTest, RowHelpersAndKeyTexts) {
    ConvRow row = Row({{"Name", "a", 0}, {"name", "b", 1}});
    EXPECT_EQ(FindColumn(row, "NAME"), std::string("a"));
    SetColumn("name", "c", 1, row);  // the item of that name and type
    SetColumn("name", "d", 2, row);  // no item of that type: appended
    EXPECT_EQ(Text(row), "Name=a:0 name=c:1 name=d:2");

    ConvRow stopped;
    EXPECT_EQ(AddCorporateColumn(Row({{"id", "3", 1}, {"x", nullptr, 0}, {"y", "1", 0}}), stopped), -1109);
    EXPECT_EQ(Text(stopped), "sid_corporate=1:1 id=3:1");

    // Keys are ordered by their bytes; row keys are looked up without regard to case.
    ConvDB db(&app_, kiv_);
    db.AddKey("b", "2");
    db.AddKey("B", "1");
    db.AddKey("a", "x");
    std::string text;
    db.AppendKeys(text);
    EXPECT_EQ(text, " [B=1] [a=x] [b=2]");
    text.clear();
    db.AppendRowKeys(Row({{"A", "from row", 0}}), text);
    EXPECT_EQ(text, " [B=] [a=from row] [b=]");
}

}  // namespace

// A server whose literals still take backslash escapes: the connection turns that
// off for itself, so every value arrives exactly as it was quoted.
class ConvDBOldLiteralsTest : public ClusterRunTest {
protected:
    ConvDBOldLiteralsTest()
        : ClusterRunTest("convdb_oldliterals",
                         "CREATE TABLE t_text (id int PRIMARY KEY, memo text);"
                         "ALTER DATABASE convdb_oldliterals SET standard_conforming_strings = off;") {}
};

TEST_F(ConvDBOldLiteralsTest, TrickyValuesRoundTripWithTheServerSettingOff) {
    EXPECT_EQ(TestCluster().QueryValue("convdb_oldliterals", "SHOW standard_conforming_strings").value_or(""), "off");
    ASSERT_EQ(kiv_->SetTransactional(false), 0);
    ConvDBEntry writer(&app_, kiv_);
    std::string big(3 * 1024 * 1024, 'x');
    for (std::size_t i = 0; i < big.size(); i += 997) big[i] = "\\'$-/*"[i % 6];
    const std::vector<std::string> values = {
        R"(\',(select current_user || chr(33)))--)",
        "ends in a backslash\\",
        R"(\\ \n \x41 \101 '' \')",
        "$1 $2 $$ $tag$ x $tag$",
        "-- a comment\n/* and another */ ;",
        "E'\\n' U&'\\0041'",
        big,
    };
    for (std::size_t i = 0; i < values.size(); ++i) {
        SCOPED_TRACE(i);
        const std::string id = std::to_string(i + 1);
        ConvRow row;
        AddColumn("id", id.c_str(), kRowTypeNumber, row);
        AddColumn("memo", values[i].c_str(), kRowTypeText, row);
        ASSERT_EQ(writer.Entry("t_text", row), 0);
        EXPECT_TRUE(Value("SELECT memo = " + std::string("$q$") + values[i] + "$q$ FROM t_text WHERE id=" + id) ==
                    "t");
    }
    EXPECT_EQ(Value("SELECT count(*) FROM t_text"), std::to_string(values.size()));
}
