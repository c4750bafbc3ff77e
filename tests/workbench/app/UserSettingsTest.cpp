#include <windows.h>
#include <gtest/gtest.h>

#include "UserSettings.h"

namespace workbench {
namespace {

TEST(UserSettings, DefaultStoreLiesInTheUsersLocalApplicationData) {
  wchar_t folder[MAX_PATH] = L"";
  ASSERT_NE(GetEnvironmentVariableW(L"LOCALAPPDATA", folder, MAX_PATH), 0u);
  EXPECT_EQ(default_store(), std::filesystem::path(folder) / L"zdExpirationRules Project" / L"Workbench" / L"rules.db");
}

}  // namespace
}  // namespace workbench
