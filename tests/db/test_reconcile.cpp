// The reconciliation over whole create runs of the example: a clean run leaves
// nothing unexplained, a target row deleted afterwards is named, and a record
// broken in a copy of the store is explained by the run's own report.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convreport/ConvReconcile.h"
#include "PgCluster.h"
#include "ShippedRun.h"
#include "TestSupport.h"

using namespace testsupport;

namespace {

const std::string kSource = CONV_SOURCE_DIR;


// One create run of a store into two fresh databases under a temporary root.
struct Migration {
    Migration(const std::string& name, const std::string& store) : ent(name + "_ent"), kiv(name + "_kiv") {
        PrepareShippedRun(dir.Path(), ent, kiv);
        EXPECT_EQ(system(("cp -r " + kSource + "/examples/target " + dir.Path() + "/target").c_str()), 0);
        args = ClusterRunArgs(dir.Path(), "create", store, dir / "target", ent, kiv);
        Args run(args);
        const ChildResult result = RunInChild(RunProgram, &run);
        EXPECT_EQ(result.status, 0) << result.out;
    }
    ConvReconcileResult Reconcile() const { return convrun::Reconcile(args, convrun::ReadAccount(dir.Path())); }

    TempDir dir;
    std::string ent, kiv;
    std::vector<std::string> args;
};

const ConvFamilyResult* Family(const ConvReconcileResult& result, const std::string& label) {
    for (const ConvFamilyResult& family : result.families)
        if (family.label == label) return &family;
    ADD_FAILURE() << "no family " << label;
    return nullptr;
}

std::string Unexplained(const ConvReconcileResult& result) {
    std::string out;
    for (const ConvFamilyResult& family : result.families)
        for (const ConvGap& gap : family.gaps)
            if (gap.because.empty()) out += family.label + ": " + gap.key + (gap.missing ? " missing" : " extra") + "\n";
    return out;
}

TEST(Reconcile, ExampleIsExplainedUntilATargetRowIsDeleted) {
    Migration run("recon_example", kSource + "/examples/store");
    ConvReconcileResult result = run.Reconcile();
    ASSERT_EQ(result.failure, "");
    EXPECT_EQ(result.Unexplained(), 0) << Unexplained(result) << convrun::FormatReconcile(result);

    // The example's faults are differences, each with its report.
    const ConvFamilyResult* users = Family(result, "ユーザースケジュール");
    ASSERT_NE(users, nullptr);
    EXPECT_EQ(users->explained, 2);  // 108 (bad date) and 202 (text in a number)
    const ConvFamilyResult* plants = Family(result, "設備マスター");
    ASSERT_NE(plants, nullptr);
    EXPECT_EQ(*plants->store, 3);
    EXPECT_EQ(*plants->working, 2);
    ASSERT_EQ(plants->gaps.size(), 1u);
    EXPECT_EQ(plants->gaps[0].key, "ID=3");
    EXPECT_NE(plants->gaps[0].because.find("ファイルの読み込みに失敗しました。"), std::string::npos);
    // Families that can't be compared say so instead of matching.
    const ConvFamilyResult* dates = Family(result, "スケジュール繰返日");
    ASSERT_NE(dates, nullptr);
    EXPECT_FALSE(dates->store || dates->working || dates->target);
    EXPECT_NE(dates->notCompared.find("not compared"), std::string::npos);

    // User 2's copy of schedule 110 and a facility vanish from the target.
    std::string error;
    ASSERT_TRUE(TestCluster().Exec(run.kiv,
                                   "DELETE FROM TT_SCHEDULE_OTHERTO WHERE ID = '000000000032' AND otherto_type = '1'"
                                   " AND SID_ASSIGN = 2; DELETE FROM TM_PLANT WHERE ID = 2",
                                   &error))
        << error;
    result = run.Reconcile();
    ASSERT_EQ(result.failure, "");
    EXPECT_EQ(result.Unexplained(), 2) << Unexplained(result);
    EXPECT_EQ(Unexplained(result), "ユーザースケジュール: SID_USER=2 ID=110 missing\n設備マスター: ID=2 missing\n");
    const std::string text = convrun::FormatReconcile(result);
    EXPECT_NE(text.find("unexplained differences: 2\n"), std::string::npos) << text;
    EXPECT_NE(text.find("working, not target   SID_USER=2 ID=110"), std::string::npos) << text;
}

TEST(Reconcile, ABrokenRecordIsExplainedByItsReport) {
    // User 3's only entry gets a month 13.
    TempDir copy;
    ASSERT_EQ(system(("cp -r " + kSource + "/examples/store " + copy.Path() + "/store").c_str()), 0);
    const std::string schedule = copy / "store/data/user/3/schedule";
    std::string text = ReadFile(schedule);
    const std::size_t at = text.find("startdate=20240701");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, 18, "startdate=20241301");
    WriteFile(schedule, text);

    Migration run("recon_broken", copy / "store");
    const ConvReconcileResult result = run.Reconcile();
    ASSERT_EQ(result.failure, "");
    EXPECT_EQ(result.Unexplained(), 0) << Unexplained(result);
    for (const char* label : {"ユーザースケジュール", "スケジュール"}) {
        const ConvFamilyResult* family = Family(result, label);
        ASSERT_NE(family, nullptr);
        bool found = false;
        for (const ConvGap& gap : family->gaps) {
            if (gap.key.find("ID=301") == std::string::npos) continue;
            found = true;
            EXPECT_FALSE(gap.toTarget);
            EXPECT_NE(gap.because.find("[WARN] TTPR_SCHEDULE [ID=301] [SID_USER=3]"), std::string::npos)
                << gap.because;
            EXPECT_NE(gap.because.find("開始日付[20241301]が不正"), std::string::npos) << gap.because;
        }
        EXPECT_TRUE(found) << label;
    }
}

}  // namespace
