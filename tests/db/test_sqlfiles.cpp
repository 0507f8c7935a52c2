// The shipped stage-B queries: each begins exactly with "SELECT " (the
// connection takes anything else for a command), each main query has a count
// file, each count file belongs to a query, and all of them run against the
// shipped working schema.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "PgCluster.h"
#include "TestSupport.h"

using namespace testsupport;
namespace fs = std::filesystem;

namespace {

const std::string kSource = CONV_SOURCE_DIR;

bool EndsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// The queries of the members that share a target table are named
// "<table>_<module>" and share the table's count file.
std::string CountFileOf(const std::string& name, const std::set<std::string>& names) {
    if (names.count(name + "_count")) return name + "_count";
    for (const char* module : {"_Schedule", "_Plant", "_Agenda", "_Visitor"}) {
        if (EndsWith(name, module)) {
            const std::string table = name.substr(0, name.size() - std::string(module).size());
            if (names.count(table + "_count")) return table + "_count";
        }
    }
    return "";
}

}  // namespace

TEST(ShippedQueries, BeginWithSelectHaveCountFilesAndRunOnTheWorkingSchema) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(kSource + "/sql/sch")) {
        const std::string file = entry.path().filename();
        if (!EndsWith(file, ".sql") || file.rfind("clean_", 0) == 0) continue;
        names.insert(file.substr(0, file.size() - 4));
    }
    ASSERT_FALSE(names.empty());

    PgCluster& pg = TestCluster();
    std::string error;
    ASSERT_TRUE(pg.CreateDatabase("sqlfiles_ent", &error)) << error;
    ASSERT_TRUE(pg.Exec("sqlfiles_ent", ReadFile(kSource + "/schema/ent.sql"), &error)) << error;

    std::set<std::string> usedCounts;
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const std::string text = ReadFile(kSource + "/sql/sch/" + name + ".sql");
        EXPECT_EQ(text.rfind("SELECT ", 0), 0u);
        PgCluster::Rows rows;
        EXPECT_TRUE(pg.Query("sqlfiles_ent", text, &rows, &error)) << error;
        if (EndsWith(name, "_count")) {
            EXPECT_EQ(rows.size(), 1u);
            continue;
        }
        const std::string count = CountFileOf(name, names);
        EXPECT_FALSE(count.empty()) << "no count file";
        usedCounts.insert(count);
    }
    for (const std::string& name : names) {
        if (EndsWith(name, "_count")) {
            EXPECT_TRUE(usedCounts.count(name)) << name << " counts no query";
        }
    }
}
