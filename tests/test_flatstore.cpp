// Reading the flat store: record files, indexes, item and word lists, and the
// application's index cache and id lookups, on EUC-JP files written here.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdCom.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "TestSupport.h"
#include "base/comEncoding.h"

using namespace testsupport;

namespace {

// A record as "name=value:type" texts; null as (null), a list as [a|b].
std::vector<std::string> Dump(const ConvRow* record) {
    std::vector<std::string> out;
    if (!record) return out;
    for (const auto& item : *record) {
        std::string value;
        if (item->type == kRowTypeList) {
            value = "[";
            for (std::size_t k = 0; k < item->list.size(); ++k) value += (k ? "|" : "") + item->list[k];
            value += "]";
        } else {
            value = item->HasValue() ? *item->value : "(null)";
        }
        out.push_back(item->name + "=" + value + ":" + std::to_string(item->type));
    }
    return out;
}

using Records = std::vector<std::vector<std::string>>;

Records All(const ConvStdCom& reader) {
    Records out;
    for (std::size_t i = 0; i < reader.RecordCount(); ++i) out.push_back(Dump(reader.GetRecord(i)));
    return out;
}

class FlatStoreTest : public ::testing::Test {
protected:
    FlatStoreTest() : args(RunArgs(dir.Path(), "create", "1")), app(args.Argc(), args.Argv(), "sch") {
        MakeDirs(dir / "conv/log");
        app.ReadArguments();
        app.SetupPaths();
        app.SetupLogFiles();
    }
    std::string Store(const std::string& relative) const { return dir / ("store/" + relative); }
    void Put(const std::string& relative, const std::string& utf8) { WriteFile(Store(relative), Euc(utf8)); }
    std::string UserLog() const { return ReadFile(dir / "conv/log/sch.log"); }
    bool UserLogHas(const std::string& text) const { return UserLog().find(text) != std::string::npos; }

    TempDir dir;
    Args args;
    ConvAppStd app;
};

TEST_F(FlatStoreTest, RecordFileGivesItsItemsExactly) {
    const std::vector<std::string> lines = {
        "# 予定の一覧",
        "object 12 ",
        "Name   =山田 太郎",
        "objects=1",
        "empty=",
        "memo=一行目",
        "\t二行目",
        " #note=not a field",
        "text=a # b\t# cut here",
        "blanks=末尾  ",
        "cr=前\r後",
        "object abc",
        "file=a.txt",
        "file=予定.txt",
        "end",
        "after=x",
        "line without separator",
        "end",
        "object 13",
        "end",
    };
    std::string content;
    for (const std::string& line : lines) content += line + "\r\n";
    Put("data/user/1/schedule", content);

    ConvStdCom com(&app, Store("data/user/1/schedule").c_str());
    ASSERT_EQ(com.Read(), 0);
    EXPECT_EQ(All(com), (Records{{"ID=12:1", "Name=山田 太郎:0", "objects=1:0", "empty=(null):0", "memo=一行目\n二行目:0",
                                  "text=a # b:0", "blanks=末尾  :0", "cr=前\r後:0", "abc=[a.txt|予定.txt]:9", "after=x:0"},
                                 {"ID=13:1"}}));
    EXPECT_FALSE(com.IsFailed());
    EXPECT_EQ(app.StatusWord(), 0);
}

TEST_F(FlatStoreTest, BadContentFailsTheRead) {
    struct Case {
        const char* content;
        int code;
        const char* logged;  // in the user log, or null
    } cases[] = {
        {"a=1\nobject 1\nend\n", -1, nullptr},
        {"object\nkey=value\nend\n", -1, nullptr},
        {"object\t5\nkey=value\nend\n", -1, nullptr},  // only a blank makes an object line
        {"object abc\nkey=value\nend\n", -31, "値[abc]が不正です。ファイル["},
        {"object 山田\n", -31, "値[山田]が不正です。"},
        {"object 1\nobject dates\nd=20240101\n\t20240102\nend\nend\n", -31,
         "ファイルの読み込みに失敗しました。"},
    };
    int n = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.content);
        const std::string name = "bad" + std::to_string(n++);
        Put(name, c.content);
        ConvStdCom com(&app, Store(name).c_str());
        EXPECT_EQ(com.Read(), c.code);
        // Only the tolerated code marks the reader and warns.
        EXPECT_EQ(com.IsFailed(), c.code == -31);
        if (c.logged) {
            EXPECT_TRUE(UserLogHas(c.logged));
        }
    }
}

// A NUL byte makes its line bad content: reported with the line, the field left
// out, and nothing merged into a neighbour; `end` before a NUL still closes.
TEST_F(FlatStoreTest, LineWithNulIsReportedAndNeverMerged) {
    const std::string nul(1, '\0');
    WriteFile(Store("nul"), "object 1\nname=ab" + nul + "cd\nkana=x\nend" + nul + "\nobject 2\nName=b\nend\n");
    ConvStdCom com(&app, Store("nul").c_str());
    EXPECT_EQ(com.Read(), 0);
    EXPECT_EQ(All(com), (Records{{"ID=1:1", "kana=x:0"}, {"ID=2:1", "Name=b:0"}}));
    EXPECT_TRUE(com.IsFailed());
    EXPECT_EQ(app.StatusWord(), 1);
    EXPECT_TRUE(UserLogHas("[WARN] 値[name=ab\\0cd]が不正です。行[2]ファイル[" + Store("nul") + "]"));
    EXPECT_TRUE(UserLogHas("値[end\\0]が不正です。行[4]"));

    // A zero-filled block in an index (a crash remnant) hides no later entry.
    WriteFile(Store("data/user/index"), "a=5\n" + std::string(4096, '\0') + "\nb=6\n_lastid=6\n");
    ConvStdComIndex index(&app, Store("data/user/index").c_str(), false);
    EXPECT_EQ(index.Read(), 6);
    EXPECT_EQ(index.Ids(), (std::vector<int32_t>{5, 6}));
    EXPECT_TRUE(UserLogHas("行[2]ファイル[" + Store("data/user/index") + "]"));
}

// An id beyond 32 bits is bad content, never another record's id.
TEST_F(FlatStoreTest, IdsOutsideThirtyTwoBitsAreRefused) {
    Put("data/user/index", "a=1\nc=4294967297\nd=-4294967294\ne=99999999999999999999\nb=2\n_lastid=2\n");
    ConvStdComIndex values(&app, Store("data/user/index").c_str(), false);
    EXPECT_EQ(values.Read(), 2);
    EXPECT_EQ(values.Ids(), (std::vector<int32_t>{1, 2}));
    EXPECT_TRUE(UserLogHas("[WARN] 値[4294967297]が不正です。行[2]ファイル[" + Store("data/user/index") + "]"));
    EXPECT_TRUE(UserLogHas("値[-4294967294]が不正です。行[3]"));

    Put("data/agenda/index", "4294967301=a\n7=b\n_lastid=7\n");
    ConvStdComIDIndex keys(&app, Store("data/agenda/index").c_str(), false);
    EXPECT_EQ(keys.Read(), 7);
    EXPECT_EQ(keys.Ids(), (std::vector<int32_t>{7}));

    Put("data/group/index", "a=1\n_lastid=4294967296\n");
    ConvStdComIndex last(&app, Store("data/group/index").c_str(), true);
    EXPECT_EQ(last.Read(), -31);

    Put("big", "object 4294967297\nk=v\nend\n");
    ConvStdCom record(&app, Store("big").c_str());
    EXPECT_EQ(record.Read(), -31);
    EXPECT_EQ(record.RecordCount(), 0u);

    Put("admin", "1=4294967297\n2=3\n");
    ConvStdComItemIndex admins(&app, Store("admin").c_str());
    EXPECT_EQ(admins.Read(), 0);
    EXPECT_EQ(All(admins), (Records{{"ID=3:1"}}));
}

TEST_F(FlatStoreTest, MissingFileIsNoFailureButAnEmptyPathIs) {
    ConvStdCom missing(&app, Store("data/user/1/schacc").c_str());
    EXPECT_EQ(missing.Read(), 0);
    EXPECT_EQ(missing.RecordCount(), 0u);
    EXPECT_EQ(app.StatusWord(), 0);
    EXPECT_EQ(UserLog(), "");

    ConvStdCom noPath(&app, "");
    EXPECT_EQ(noPath.Read(), -11);
}

TEST_F(FlatStoreTest, LongValueArrivesWholeAcrossPieces) {
    // "memo=x" puts the 2,047-byte piece boundary inside a two-byte character.
    std::string kana;
    for (int i = 0; i < 1500; ++i) kana += "あ";
    Put("long", "object 1\nmemo=x" + kana + "\n\tend\n#" + std::string(3000, 'c') + "\nnext=1\nend\n");
    ConvStdCom com(&app, Store("long").c_str());
    ASSERT_EQ(com.Read(), 0);
    const ConvRow& record = *com.GetRecord(0);
    ASSERT_EQ(record.size(), 3u);  // the tail of the long comment line continues nothing
    const std::string memo = FindColumn(record, "memo");
    EXPECT_TRUE(memo == "x" + kana + "\nend") << memo.size() << " bytes";
    EXPECT_STREQ(FindColumn(record, "next"), "1");
}

TEST_F(FlatStoreTest, IndexGivesItsOwnIdsAndFirstObjects) {
    Put("data/user/index", "# 利用者\nobject\nyamada=5\nsato=7\nend\n_lastid=9\n");
    Put("data/user/5/info", "object 1\nName=山田\nend\n");
    Put("data/user/7/info", "object 2\nName=佐藤\nend\nobject 3\nName=余分\nend\n");

    ConvStdComIndex index(&app, Store("data/user/index").c_str(), true);
    EXPECT_EQ(index.Read(), 9);
    EXPECT_EQ(All(index), (Records{{"ID=5:1", "Name=山田:0"}, {"ID=7:1", "Name=佐藤:0"}}));

    // One at a time: the id list first, then a record per call.
    ConvStdComIndex lazy(&app, Store("data/user/index").c_str(), false);
    ConvRow* record = nullptr;
    EXPECT_EQ(lazy.ReadNext(&record), -1);  // no id list yet
    EXPECT_EQ(lazy.Read(), 9);
    EXPECT_EQ(lazy.RecordCount(), 0u);
    EXPECT_EQ(lazy.ReadNext(&record), 1);
    EXPECT_EQ(Dump(record), (std::vector<std::string>{"ID=5:1", "Name=山田:0"}));
    EXPECT_EQ(lazy.ReadNext(&record), 1);
    EXPECT_EQ(lazy.ReadNext(&record), 0);
    EXPECT_FALSE(lazy.IsFailed());
}

TEST_F(FlatStoreTest, BrokenRecordsBehindAnIndexArePassedOver) {
    Put("data/user/index", "a=5\nb=6\nc=7\nd=8\n_lastid=8\n");
    Put("data/user/5/info", "object 5\nName=a\nend\n");
    Put("data/user/7/info", "object 7\nName=c\nend\n");
    Put("data/user/8/info", "object 8\nName=d\nobject dates\nd=1\n\t2\nend\nend\n");

    ConvStdComIndex index(&app, Store("data/user/index").c_str(), true);
    EXPECT_EQ(index.Read(), 8);
    EXPECT_EQ(All(index), (Records{{"ID=5:1", "Name=a:0"}, {"ID=7:1", "Name=c:0"}}));
    EXPECT_TRUE(index.IsFailed());
    EXPECT_EQ(app.StatusWord(), 1);
    EXPECT_TRUE(UserLogHas("[WARN] ファイルの読み込みに失敗しました。ファイル[" + Store("data/user//6/info") +
                           "]errno[2]エラー詳細[No such file or directory]"));
    EXPECT_TRUE(UserLogHas("ファイル[" + Store("data/user//8/info") + "]"));
}

TEST_F(FlatStoreTest, IndexFormsAndTheirLastId) {
    Put("data/agenda/index", "5=30\r\nabc=40\r\nend\r\n_lastid=12\r\n");
    ConvStdComIDIndex keys(&app, Store("data/agenda/index").c_str(), false);
    EXPECT_EQ(keys.Read(), 12);
    EXPECT_EQ(keys.Ids(), (std::vector<int32_t>{5, 0}));
    ConvStdComIndex values(&app, Store("data/agenda/index").c_str(), false);
    EXPECT_EQ(values.Read(), 12);
    EXPECT_EQ(values.Ids(), (std::vector<int32_t>{30, 40}));

    ConvStdComIndex missing(&app, Store("data/agenda/indexend").c_str(), true);
    EXPECT_EQ(missing.Read(), 0);
    EXPECT_TRUE(missing.Ids().empty());
    EXPECT_EQ(app.StatusWord(), 0);

    Put("data/group/index", "a=1\n_lastid=abc\n");
    ConvStdComIndex bad(&app, Store("data/group/index").c_str(), true);
    EXPECT_EQ(bad.Read(), -31);
    EXPECT_TRUE(UserLogHas("[ERR] ファイルのレコード取得に失敗しました。"));
}

TEST_F(FlatStoreTest, RecordPathsByCase) {
    // The plain form, ".../<id>/info", shows in the reports of the index tests above.
    ConvStdCom com(&app, "/s/data/user/index");
    com.AddFileName("sch");
    com.AddFileName("acc");
    ASSERT_EQ(com.MakeRecordPath(12), 0);
    EXPECT_EQ(com.GetPath(), "/s/data/user//12/schacc");

    const bool ownSettings = GetSettingsObject() == nullptr;
    ASSERT_EQ(CreateSettings(), 0);
    com.SetHashedDirectory(true);
    ASSERT_EQ(com.MakeRecordPath(1234), 0);
    EXPECT_EQ(com.GetPath(), "/s/data/user//2//1234/schacc");
    if (ownSettings) ReleaseSettings();

    ConvStdCom byFile(&app, "/s/data/schedule/icon/index");
    byFile.SetIdIsFileName(true);
    ASSERT_EQ(byFile.MakeRecordPath(3), 0);
    EXPECT_EQ(byFile.GetPath(), "/s/data/schedule/icon//3");
}

TEST_F(FlatStoreTest, ItemAndWordListsTakeEachLine) {
    Put("admin", "object\r\nadmin=3\r\nnone=\r\nbad=x1\r\nadmin=12  \r\nend\r\n");
    ConvStdComItemIndex items(&app, Store("admin").c_str());
    EXPECT_EQ(items.Read(), 0);
    EXPECT_EQ(All(items), (Records{{"ID=3:1"}, {"ID=(null):1"}, {"ID=12:1"}}));
    EXPECT_TRUE(items.IsFailed());
    EXPECT_TRUE(UserLogHas("[WARN] 値[x1]が不正です。"));

    Put("place", "place=会議室\nplace=\nplace=大阪 支店 \n");
    ConvStdComStrIndex words(&app, Store("place").c_str());
    EXPECT_EQ(words.Read(), 0);
    EXPECT_EQ(All(words), (Records{{"ITEM=会議室:0"}, {"ITEM=(null):0"}, {"ITEM=大阪 支店 :0"}}));
}

TEST_F(FlatStoreTest, ExistsInIndexLooksUpEachListOnce) {
    Put("data/user/index", "a=7\nb=3\nc=12\n_lastid=12\n");
    Put("data/group/index", "_lastid=0\n");
    EXPECT_EQ(app.ExistsInIndex("3", "user"), 1);
    EXPECT_EQ(app.ExistsInIndex("4", "users"), 0);
    EXPECT_EQ(app.ExistsInIndex("3", "group"), 0);
    EXPECT_EQ(app.StatusWord(), 0);  // an empty index is no failure

    Put("data/user/index", "_lastid=0\n");
    EXPECT_EQ(app.ExistsInIndex("12", "user"), 1);  // not read again

    EXPECT_EQ(app.ExistsInIndex("0", "user"), -1099);
    EXPECT_EQ(app.ExistsInIndex("3", nullptr), -1099);
    EXPECT_EQ(app.ExistsInIndex("3", "plant"), -1109);
}

TEST_F(FlatStoreTest, GetIndexCachesOnlyWhatItCouldRead) {
    EXPECT_EQ(app.GetIndex("data/group/index", false), nullptr);
    EXPECT_EQ(app.GetIndex(nullptr, false), nullptr);

    Put("data/group/index", "g=4\ng=2\n_lastid=4\n");
    ConvStdComIndex* index = app.GetIndex("data/group/index", true);
    ASSERT_NE(index, nullptr);
    EXPECT_EQ(index->Ids(), (std::vector<int32_t>{4, 2}));
    EXPECT_TRUE(index->IsHashedDirectory());
    EXPECT_EQ(index->RecordCount(), 0u);  // the id list only
    EXPECT_EQ(app.GetIndex("data/group/index", false), index);
}

}  // namespace

TEST_F(FlatStoreTest, RandomBytesNeverBreakTheReader) {
    // Record-like noise: the line forms with stray EUC-JP lead bytes, CRs, TABs,
    // NULs and over-long lines. The reader may fail a file but must stay inside
    // its buffers (the sanitizer build checks that) and give a known code.
    const std::vector<std::string> pieces = {"object ", "object", "end", "\n", "\r\n", "\t", "=", "#", "1",
                                             "abc",     "\xa4",   "\xa4\xa2", "\x8e", "\x8f", std::string(1, '\0'),
                                             std::string(2100, 'z')};
    std::srand(7);
    for (int round = 0; round < 300; ++round) {
        std::string text;
        const int count = std::rand() % 40;
        for (int i = 0; i < count; ++i) text += pieces[static_cast<std::size_t>(std::rand()) % pieces.size()];
        WriteFile(Store("noise"), text);
        ConvStdCom com(&app, Store("noise").c_str());
        const int ret = com.Read();
        EXPECT_TRUE(ret == 0 || ret == -1 || ret == -31) << "round " << round << " gave " << ret;
    }
}
