#include <gtest/gtest.h>

#include "CommandTargets.h"
#include "References.h"
#include "StandInPlugin.h"

namespace workbench {
namespace {

using test_support::references;

class CommandTargetsTest : public testing::Test {
 protected:
  CommandTargets targets_;
  StandInPlugin* const plugin_ = new StandInPlugin;
  const base::ComPtr<IkvPlugin> owner_ = base::own<IkvPlugin>(plugin_);
};

TEST_F(CommandTargetsTest, EachCommandGetsAnIdOfItsOwn) { EXPECT_NE(targets_.add(plugin_), targets_.add(plugin_)); }

TEST_F(CommandTargetsTest, RunCallsTheTargetWithTheIdAndAnEmptyParameter) {
  const long id = targets_.add(plugin_);
  EXPECT_EQ(targets_.run(id), S_OK);
  EXPECT_EQ(plugin_->commands, std::vector<long>{id});
  EXPECT_EQ(plugin_->parameter_types, std::vector<VARTYPE>{VT_EMPTY});
}

TEST_F(CommandTargetsTest, RunReturnsTheTargetsFailure) {
  plugin_->hresult = RPC_E_SERVERFAULT;
  EXPECT_EQ(targets_.run(targets_.add(plugin_)), RPC_E_SERVERFAULT);
}

TEST_F(CommandTargetsTest, UnknownIdIsABadIndex) {
  EXPECT_EQ(targets_.run(CommandTargets::first_id), DISP_E_BADINDEX);
  EXPECT_EQ(targets_.run(0), DISP_E_BADINDEX);
}

TEST_F(CommandTargetsTest, RemovedCommandIsABadIndex) {
  const long id = targets_.add(plugin_);
  targets_.remove(id);
  EXPECT_EQ(targets_.run(id), DISP_E_BADINDEX);
}

TEST_F(CommandTargetsTest, ClearReleasesEveryTarget) {
  const ULONG before = references(plugin_);
  targets_.add(plugin_);
  targets_.add(plugin_);
  EXPECT_EQ(references(plugin_), before + 2);
  targets_.clear();
  EXPECT_EQ(references(plugin_), before);
}

TEST_F(CommandTargetsTest, TargetStaysAliveWhileItClearsTheTable) {
  const long id = targets_.add(plugin_);
  ULONG during = 0;
  plugin_->during_command = [&] {
    targets_.clear();
    during = references(plugin_);
  };
  const ULONG owned_by_test = 1;
  EXPECT_EQ(targets_.run(id), S_OK);
  EXPECT_GT(during, owned_by_test);
  EXPECT_EQ(references(plugin_), owned_by_test);
}

TEST_F(CommandTargetsTest, LateBoundTargetIsCalledByName) {
  LateBoundPlugin late;
  const long id = targets_.add(&late);
  EXPECT_EQ(targets_.run(id), S_OK);
  EXPECT_EQ(late.commands, std::vector<long>{id});
  EXPECT_EQ(late.parameter_types, std::vector<VARTYPE>{VT_EMPTY});
  targets_.clear();
  EXPECT_EQ(late.references, 1u);
}

TEST_F(CommandTargetsTest, LateBoundTargetWithoutTheNameFails) {
  LateBoundPlugin late;
  late.knows_the_name = false;
  EXPECT_EQ(targets_.run(targets_.add(&late)), DISP_E_UNKNOWNNAME);
  targets_.clear();
}

TEST_F(CommandTargetsTest, LateBoundExceptionIsReturnedByItsCode) {
  LateBoundPlugin late;
  late.hresult = DISP_E_EXCEPTION;
  late.exception_code = E_ACCESSDENIED;
  EXPECT_EQ(targets_.run(targets_.add(&late)), E_ACCESSDENIED);
  targets_.clear();
}

}  // namespace
}  // namespace workbench
