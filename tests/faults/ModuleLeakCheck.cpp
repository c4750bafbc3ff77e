#include "ModuleLeakCheck.h"

#include <gmock/gmock.h>

#include "Controls.h"
#include "HeapCheck.h"

namespace faults_test {

ModuleLeakCheck::ModuleLeakCheck(const module_test::Module& module)
    : module_(module), handles_(module.handle()), windows_(test_support::windows_of_this_thread()) {}

void ModuleLeakCheck::expect_none() const {
  EXPECT_EQ(S_OK, module_.can_unload());
  EXPECT_EQ(windows_, test_support::windows_of_this_thread()) << "a window is left";
  EXPECT_THAT(handles_.left(), testing::IsEmpty());
  EXPECT_TRUE(test_support::heaps_are_intact());
}

}  // namespace faults_test
