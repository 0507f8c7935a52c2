// Whole runs of the program over the shipped schemas and queries on the test
// cluster: both databases made anew from schema/, the run's root with its log
// directory and a copy of sql/sch, and the sixteen start arguments.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "PgCluster.h"
#include "TestSupport.h"

// Fails the calling test on any step; call it under ASSERT_NO_FATAL_FAILURE.
inline void PrepareShippedRun(const std::string& root, const std::string& ent, const std::string& kiv) {
    const std::string source = CONV_SOURCE_DIR;
    PgCluster& pg = TestCluster();
    std::string error;
    for (const std::string& db : {ent, kiv}) ASSERT_TRUE(pg.CreateDatabase(db, &error)) << error;
    ASSERT_TRUE(pg.Exec(ent, testsupport::ReadFile(source + "/schema/ent.sql"), &error)) << error;
    ASSERT_TRUE(pg.Exec(kiv, testsupport::ReadFile(source + "/schema/kiv.sql"), &error)) << error;
    testsupport::MakeDirs(root + "/conv/log");
    testsupport::MakeDirs(root + "/sql");
    ASSERT_EQ(std::system(("cp -r " + source + "/sql/sch " + root + "/sql/").c_str()), 0);
}

// The rows of a query on db, cells joined by "|", NULL as "-".
inline std::vector<std::string> RowLines(const std::string& db, const std::string& sql) {
    PgCluster::Rows rows;
    std::string error;
    EXPECT_TRUE(TestCluster().Query(db, sql, &rows, &error)) << error;
    std::vector<std::string> out;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (i) line += '|';
            line += row[i].value_or("-");
        }
        out.push_back(line);
    }
    return out;
}

// A run in mode over store and target, with both databases on the test cluster.
inline std::vector<std::string> ClusterRunArgs(const std::string& root, const std::string& mode,
                                               const std::string& store, const std::string& target,
                                               const std::string& ent, const std::string& kiv) {
    const PgCluster& pg = TestCluster();
    return {"convsch", root,          "1",       mode,          store, pg.Host(), pg.PortText(), pg.User(),
            pg.Password(), target, pg.Host(), pg.PortText(), pg.User(), pg.Password(), ent, kiv};
}
