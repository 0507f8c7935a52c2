// A two-stage run on the test cluster for the table conversions: a working and
// a target database made anew from the shipped schemas, a flat store written by
// the test under a temporary root, the shipped queries beside it, and the user
// log read back without stamps.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "PgCluster.h"
#include "ShippedRun.h"
#include "TestSupport.h"
#include "database/CdDBConnection.h"

// The two-stage application with its connections on the two test databases.
class StdClusterApp : public ConvAppStd {
public:
    StdClusterApp(int argc, char** argv, std::string ent, std::string kiv)
        : ConvAppStd(argc, argv, "sch"), ent_(std::move(ent)), kiv_(std::move(kiv)) {}
    int32_t OpenDatabases() override {
        int32_t ret = CreateConnections();
        const PgCluster& pg = TestCluster();
        if (ret == 0)
            ret = EntConnection()->Connect(pg.User().c_str(), pg.Password().c_str(), pg.Host().c_str(), ent_.c_str(),
                                           pg.PortText().c_str(), -1);
        if (ret == 0)
            ret = KivConnection()->Connect(pg.User().c_str(), pg.Password().c_str(), pg.Host().c_str(), kiv_.c_str(),
                                           pg.PortText().c_str(), -1);
        return ret;
    }

private:
    std::string ent_;
    std::string kiv_;
};

class StdRunTest : public ::testing::Test {
protected:
    explicit StdRunTest(const std::string& name)
        : ent_(name + "_ent"),
          kiv_(name + "_kiv"),
          args_(testsupport::RunArgs(dir_.Path(), "create", TestCluster().PortText())),
          app_(args_.Argc(), args_.Argv(), ent_, kiv_) {}

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(PrepareShippedRun(dir_.Path(), ent_, kiv_));
        testsupport::MakeDirs(dir_ / "store/data");
        ASSERT_EQ(app_.Init("label"), 0);
    }
    void TearDown() override { app_.End(); }

    // A flat-store file below the store's root, written as EUC-JP.
    void Store(const std::string& path, const std::string& utf8) {
        const std::string full = dir_ / ("store/" + path);
        testsupport::MakeDirs(full.substr(0, full.rfind('/')));
        testsupport::WriteFile(full, testsupport::Euc(utf8));
    }
    // Stage A of one conversion as the driver runs it.
    template <class Conv>
    int32_t RunA(Conv& conv) {
        int32_t ret = conv.OpenSource();
        return ret != 0 ? ret : conv.Convert();
    }
    void EntSql(const std::string& sql) {
        std::string error;
        ASSERT_TRUE(TestCluster().Exec(ent_, sql, &error)) << error;
    }
    std::string Ent(const std::string& sql) { return TestCluster().QueryValue(ent_, sql).value_or("<null>"); }
    std::string Kiv(const std::string& sql) { return TestCluster().QueryValue(kiv_, sql).value_or("<null>"); }
    // The rows of a query as "a|b|c" lines, in the query's order.
    std::string EntRows(const std::string& sql) { return Rows(ent_, sql); }
    std::string KivRows(const std::string& sql) { return Rows(kiv_, sql); }

    std::vector<std::string> UserLog() const { return testsupport::LogLines(dir_ / "conv/log/sch.log"); }
    // The user-log lines that contain text.
    std::vector<std::string> LogWith(const std::string& text) const {
        std::vector<std::string> out;
        for (const std::string& line : UserLog())
            if (line.find(text) != std::string::npos) out.push_back(line);
        return out;
    }
    bool LogHas(const std::string& text) const { return !LogWith(text).empty(); }

    std::string ent_;
    std::string kiv_;
    testsupport::TempDir dir_;
    testsupport::Args args_;
    StdClusterApp app_;

private:
    std::string Rows(const std::string& db, const std::string& sql) {
        // One text per row, so that a result compares as a whole.
        return TestCluster()
            .QueryValue(db, "SELECT coalesce(string_agg(line, E'\\n'), '') FROM (" + sql + ") AS q(line)")
            .value_or("<null>");
    }
};
