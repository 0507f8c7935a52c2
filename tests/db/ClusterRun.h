// A run of the application on one database of the test cluster, for the tests of
// the table writers: the run's directories under a temporary root, the database
// made anew with the test's tables, and the user log read back without stamps.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "PgCluster.h"
#include "TestSupport.h"
#include "database/CdDBConnection.h"

// The application with its working connection on ent and its target connection
// on kiv (on ent as well when kiv is empty).
class ClusterApp : public ConvApp {
public:
    ClusterApp(int argc, char** argv, std::string ent, std::string kiv = "")
        : ConvApp(argc, argv, "sch"), ent_(std::move(ent)), kiv_(kiv.empty() ? ent_ : std::move(kiv)) {}
    int32_t OpenDatabases() override {
        int32_t ret = CreateConnections();
        const PgCluster& pg = TestCluster();
        for (auto [c, db] : {std::pair{entConnection_.get(), &ent_}, std::pair{kivConnection_.get(), &kiv_}}) {
            if (ret == 0)
                ret = c->Connect(pg.User().c_str(), pg.Password().c_str(), pg.Host().c_str(), db->c_str(),
                                 pg.PortText().c_str(), -1);
        }
        return ret;
    }

private:
    std::string ent_;
    std::string kiv_;
};

class ClusterRunTest : public ::testing::Test {
protected:
    ClusterRunTest(const char* db, std::string tables)
        : db_(db),
          tables_(std::move(tables)),
          args_(testsupport::RunArgs(dir_.Path(), "create", TestCluster().PortText())),
          app_(args_.Argc(), args_.Argv(), db) {}

    void SetUp() override {
        testsupport::MakeDirs(dir_ / "conv/log");
        std::string error;
        ASSERT_TRUE(TestCluster().CreateDatabase(db_, &error)) << error;
        ASSERT_TRUE(TestCluster().Exec(db_, tables_, &error)) << error;
        ASSERT_EQ(app_.Init("label"), 0);
        kiv_ = app_.KivConnection();
    }
    void TearDown() override { app_.End(); }

    void Sql(const std::string& sql) {
        std::string error;
        ASSERT_TRUE(TestCluster().Exec(db_, sql, &error)) << error;
    }
    std::string Value(const std::string& sql) { return TestCluster().QueryValue(db_, sql).value_or("<null>"); }

    std::vector<std::string> UserLog() const { return testsupport::LogLines(dir_ / "conv/log/sch.log"); }
    bool UserLogHas(const std::string& line) const {
        const std::vector<std::string> log = UserLog();
        return std::find(log.begin(), log.end(), line) != log.end();
    }

    const char* db_;
    std::string tables_;
    testsupport::TempDir dir_;
    testsupport::Args args_;
    ClusterApp app_;
    CdDBConnection* kiv_ = nullptr;
};
