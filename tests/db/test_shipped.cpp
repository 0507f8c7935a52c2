// The files that ship with the program work together: both schemas load, and
// a clean run with the shipped clean scripts empties what a migration fills.
#include <gtest/gtest.h>

#include "PgCluster.h"
#include "ShippedRun.h"
#include "TestSupport.h"

using namespace testsupport;

namespace {

const std::string kSource = CONV_SOURCE_DIR;

}  // namespace

TEST(Shipped, SchemasLoadAndShippedCleanScriptsRunLineByLine) {
    PgCluster& pg = TestCluster();
    std::string error;
    ASSERT_TRUE(pg.CreateDatabase("shipped_ent", &error)) << error;
    ASSERT_TRUE(pg.CreateDatabase("shipped_kiv", &error)) << error;
    ASSERT_TRUE(pg.Exec("shipped_ent", ReadFile(kSource + "/schema/ent.sql"), &error)) << error;
    ASSERT_TRUE(pg.Exec("shipped_kiv", ReadFile(kSource + "/schema/kiv.sql"), &error)) << error;
    // A row of the migration in each database.
    ASSERT_TRUE(pg.Exec("shipped_ent", "INSERT INTO TTPR_SCHEDULE (SID_CORPORATE, SID_USER, ID) VALUES (1, 5, 101)", &error))
        << error;
    const std::string settingsBefore =
        pg.QueryValue("shipped_kiv", "SELECT count(*) FROM TM_SCH_SETTING").value_or("<none>");

    TempDir dir;
    MakeDirs(dir / "conv/log");
    MakeDirs(dir / "sql");
    ASSERT_EQ(system(("cp -r " + kSource + "/sql/sch " + dir.Path() + "/sql/").c_str()), 0);
    Args args(ClusterRunArgs(dir.Path(), "clean", dir / "store", kSource + "/examples/target", "shipped_ent",
                             "shipped_kiv"));
    ChildResult r = RunInChild(RunProgram, &args);
    EXPECT_EQ(r.status, 0);
    TraceLog trace = ReadTrace(dir / "conv/log/sch_clean_trace.log");
    for (const std::string& report : trace.reports) ADD_FAILURE() << report;

    EXPECT_EQ(pg.QueryValue("shipped_ent", "SELECT count(*) FROM TTPR_SCHEDULE").value_or("<none>"), "0");
    EXPECT_EQ(pg.QueryValue("shipped_kiv", "SELECT count(*) FROM TM_SCH_SETTING").value_or("<none>"),
              settingsBefore);
}
