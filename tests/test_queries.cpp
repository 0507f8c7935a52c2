// The shipped stage-B query files: the connection runs a statement as a query
// only when it begins with exactly "SELECT " or "select "; any other start (a
// comment, a line break, a byte order mark) would convert nothing, silently.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "TestSupport.h"

namespace fs = std::filesystem;

TEST(ShippedQueries, EveryQueryFileBeginsWithSelect) {
    const fs::path dir = fs::path(CONV_SOURCE_DIR) / "sql/sch";
    ASSERT_TRUE(fs::is_directory(dir));
    for (const auto& entry : fs::directory_iterator(dir)) {
        const std::string name = entry.path().filename().string();
        // The clean scripts are statement lists, not queries.
        if (entry.path().extension() != ".sql" || name.rfind("clean_", 0) == 0) continue;
        SCOPED_TRACE(name);
        const std::string text = testsupport::ReadFile(entry.path().string());
        EXPECT_TRUE(text.rfind("SELECT ", 0) == 0 || text.rfind("select ", 0) == 0);
    }
}
