// Entry of the database tests: one PostgreSQL cluster is started before the first
// test and stopped after the last, whatever the tests' outcome.
#include <gtest/gtest.h>

#include <string>

#include "PgCluster.h"

namespace {

class ClusterEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        std::string error;
        // Enough connections for every test; the "too many clients" test fills the rest.
        if (!TestCluster().Start(30, &error)) FAIL() << "cannot start the test cluster: " << error;
    }
    void TearDown() override { TestCluster().Stop(); }
};

}  // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new ClusterEnvironment);
    return RUN_ALL_TESTS();
}
