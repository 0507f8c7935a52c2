// Tests of the name-value list and the list-backed record object.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "base/NUNVList.h"
#include "base/NUioObj.h"

namespace {

// Every name (names) or value of the list in order; "<null>" for none.
std::vector<std::string> Column(const NUNVList& list, bool names) {
    std::vector<std::string> out;
    for (int i = 0; i < list.GetCount(); ++i) {
        const char* text = nullptr;
        EXPECT_EQ(names ? list.GetNameAt(i, &text) : list.GetValueAt(i, &text), 0);
        out.push_back(text ? text : "<null>");
    }
    return out;
}
std::vector<std::string> Names(const NUNVList& list) { return Column(list, true); }
std::vector<std::string> Values(const NUNVList& list) { return Column(list, false); }

void Fill(NUNVList& list, std::initializer_list<std::pair<const char*, const char*>> entries) {
    for (const auto& [name, value] : entries) ASSERT_EQ(list.AddText(name, value), 0) << name;
}

}  // namespace

// Past the first block of 128 entries nothing is lost or reordered.
TEST(NUNVListTest, KeepsOrderAcrossGrowth) {
    NUNVList list;
    std::vector<std::string> names;
    for (int i = 0; i < 129; ++i) names.push_back(std::string("n").append(std::to_string(i)));
    for (const std::string& name : names) ASSERT_EQ(list.AddText(name.c_str(), "v"), 0);
    EXPECT_EQ(Names(list), names);
    NUNVList none(0);  // a capacity of 0 still grows
    EXPECT_EQ(none.AddText("a", "v"), 0);
}

TEST(NUNVListTest, RepeatedNamesAndLookups) {
    NUNVList list;
    Fill(list, {{"a", "1"}, {"abc", "2"}, {"a", "3"}});
    const char* value = nullptr;
    EXPECT_EQ(list.FindExact("a", &value), 1);
    EXPECT_STREQ(value, "1");
    EXPECT_EQ(list.FindExact("ABC", &value), 0);
    EXPECT_EQ(list.FindNoCase("ABC", &value), 1);
    EXPECT_STREQ(value, "2");
    EXPECT_EQ(list.FindExact(nullptr, &value), 1);  // null name: the first entry
    EXPECT_STREQ(value, "1");
    EXPECT_EQ(list.FindExact("a", nullptr), -5);

    EXPECT_EQ(list.SetByName("a", "x", 2), 2);
    EXPECT_EQ(Values(list), (std::vector<std::string>{"x", "2", "x"}));
    EXPECT_EQ(list.SetByName(nullptr, "y", 2), 3);
    EXPECT_EQ(Values(list), (std::vector<std::string>{"y", "y", "y"}));
}

TEST(NUNVListTest, InsertAndDeleteKeepOrder) {
    NUNVList list;
    Fill(list, {{"b", "2"}, {"d", "4"}});
    EXPECT_EQ(list.Insert("a", "1", 2, 0, false), 0);
    EXPECT_EQ(list.Insert("c", "3", 2, 2, false), 0);
    EXPECT_EQ(list.Insert("e", "5", 2, 4, false), 0);
    EXPECT_EQ(list.Insert("x", "9", 2, 6, false), -5);
    EXPECT_EQ(list.Insert("x", "9", 2, -1, false), -5);
    EXPECT_EQ(Names(list), (std::vector<std::string>{"a", "b", "c", "d", "e"}));

    EXPECT_EQ(list.DeleteAt(2), 0);
    EXPECT_EQ(list.GetCount(), 4);
    EXPECT_EQ(Names(list), (std::vector<std::string>{"a", "b", "d", "e"}));
    const char* name = nullptr;
    EXPECT_EQ(list.GetNameAt(4, &name), -7);  // the freed last slot is empty
    EXPECT_EQ(list.DeleteAt(4), -7);

    list.AddText("b", "again");
    EXPECT_EQ(list.DeleteByName("b"), 2);
    EXPECT_EQ(Names(list), (std::vector<std::string>{"a", "d", "e"}));
    EXPECT_EQ(list.DeleteByName(nullptr), 3);
    EXPECT_EQ(list.GetCount(), 0);
}

TEST(NUNVListTest, ValueBlocksAndOwnership) {
    NUNVList list;
    // A length shorter than the text copies that many bytes, still terminated.
    EXPECT_EQ(list.AddEntry("cut", "abcdef", 3), 0);
    // A null value stays none; a borrowed block is freed by the list.
    EXPECT_EQ(list.AddEntry("none", nullptr, 0), 0);
    char* borrowed = static_cast<char*>(std::malloc(6));
    std::memcpy(borrowed, "owned", 6);
    EXPECT_EQ(list.AddBorrowed("borrowed", borrowed), 0);
    const char* value = nullptr;
    list.GetValueAt(2, &value);
    EXPECT_EQ(value, borrowed);
    EXPECT_EQ(Values(list), (std::vector<std::string>{"abc", "<null>", "owned"}));

    auto copy = list.Clone();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(Values(*copy), Values(list));
    copy->GetValueAt(2, &value);
    EXPECT_NE(value, borrowed);
}

TEST(NUNVListTest, SortsByValue) {
    NUNVList list;
    Fill(list, {{"1", "beta"}, {"2", "Alpha"}, {"3", "alpha"}});
    list.SortByName();
    EXPECT_EQ(Names(list), (std::vector<std::string>{"2", "3", "1"}));

    NUNVList numbers;
    Fill(numbers, {{"a", "10"}, {"b", "9"}, {"c", "-1"}});
    numbers.SortByNumber();
    EXPECT_EQ(Values(numbers), (std::vector<std::string>{"-1", "9", "10"}));
}

TEST(NUioObjListTest, SetPathJoinsAndLimits) {
    struct Case {
        const char* file;
        const char* dir;
        const char* path;  // empty: refused
    } cases[] = {{"a.txt", "dir/", "dir/a.txt"}, {"a.txt", "dir", "dir/a.txt"},
                 {"a.txt", "", "a.txt"},         {"a.txt", nullptr, "a.txt"},
                 {nullptr, "dir", ""}};
    for (const auto& c : cases) {
        NUioObjList obj;
        EXPECT_EQ(obj.SetPath(c.file, c.dir), c.path[0] ? 0 : -1);
        std::string path;
        EXPECT_EQ(obj.NUioObjGetPath(path), c.path[0] ? 0 : -11);
        EXPECT_EQ(path, c.path);
    }

    NUioObjList obj;
    std::string name(1023, 'n');
    EXPECT_EQ(obj.SetPath(name.c_str(), nullptr), 0);
    name += 'n';
    EXPECT_EQ(obj.SetPath(name.c_str(), nullptr), -1);
    EXPECT_EQ(obj.SetPath(std::string(1017, 'n').c_str(), "dir/"), 0);  // 4 + 1017 + 1 = 1022
    EXPECT_EQ(obj.SetPath(std::string(1019, 'n').c_str(), "dir/"), -1);
}

TEST(NUioObjListTest, RecordsValuesAndContinuations) {
    NUioObjList obj;
    EXPECT_EQ(obj.AddContinuation("\norphan"), -7);
    const char* name = nullptr;
    const char* value = nullptr;
    std::string section = "kept";
    EXPECT_EQ(obj.GetItem(0, &name, &value, section), -20);
    EXPECT_EQ(obj.AddValue(nullptr, "x", ""), -1);

    EXPECT_EQ(obj.AddValue("key", "one", "ignored"), 0);
    EXPECT_EQ(obj.AddValue("other", "x", ""), 0);
    EXPECT_EQ(obj.AddValue("key", "two", ""), 0);
    EXPECT_EQ(obj.AddContinuation("\nmore"), 0);
    EXPECT_EQ(obj.AppendToName("key", "+"), 0);
    EXPECT_EQ(obj.AppendToName("missing", "+"), -7);

    std::vector<const char*> found;
    EXPECT_EQ(obj.GetValues("key", found), 2);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_STREQ(found[0], "one+");
    EXPECT_STREQ(found[1], "two\nmore");
    std::vector<const char*> untouched{"sentinel"};
    EXPECT_EQ(obj.GetValues("KEY", untouched), 0);
    EXPECT_EQ(untouched.size(), 1u);

    EXPECT_EQ(obj.GetItem(1, &name, &value, section), 0);
    EXPECT_STREQ(name, "other");
    EXPECT_STREQ(value, "x");
    EXPECT_EQ(section, "kept");
    EXPECT_EQ(obj.GetItem(3, &name, &value, section), -20);

    // SetValue replaces every entry of the name, or appends one.
    EXPECT_EQ(obj.SetValue("key", "same"), 0);
    EXPECT_EQ(obj.SetValue("new", "v"), 0);
    EXPECT_EQ(obj.GetValues("key", found), 2);
    EXPECT_STREQ(found[1], "same");
    EXPECT_EQ(obj.Find("new"), 3);
}
