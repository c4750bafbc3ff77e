#include <windows.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <string>

#include "ExpectedReports.h"
#include "ModulePath.h"
#include "Owned.h"
#include "ResourceMgr.h"
#include "TemporaryFolder.h"
#include "string_t.h"

namespace {

using resource_string::resourse_2_string_impl;
using test_support::take_reports_without_lines;
using testing::ElementsAre;

constexpr LANGID simplified_chinese = 2052;
constexpr int strings_in_block = 16;

const char* const missing_string = "ASSERT length > 0 | string_t.cpp:* resourse_2_string_impl";

/// Every text of the module's string table, to the character.
std::map<int, std::wstring> table() {
  std::map<int, std::wstring> texts = {{100, L"zdExpirationRules"},
                                       {101, L"名称"},
                                       {102, L"该规则由于正在应用于商品源设置中，因而不能删除："},
                                       {103, L"到期规则"},
                                       {104, L"是否删除到期规则\"%s\"？"},
                                       {105, L"编辑到期规则"},
                                       {106, L"添加到期规则"},
                                       {107, L"新规则"},
                                       {108, L"交易日"},
                                       {109, L"日历日"},
                                       {141, L"上月"},
                                       {142, L"当月"},
                                       {143, L"下月"},
                                       {144, L"星期日"},
                                       {145, L"星期一"},
                                       {146, L"星期二"},
                                       {147, L"星期三"},
                                       {148, L"星期四"},
                                       {149, L"星期五"},
                                       {150, L"星期六"},
                                       {151, L"名称只允许包括数字，字母和空格。"},
                                       {152, L"名称不能为空。"},
                                       {153, L"该名称的到期规则已存在。"},
                                       {154, L"最新价"},
                                       {155, L"或者"},
                                       {156, L"前一个"},
                                       {157, L"下一个"},
                                       {158, L"交易日"}};
  for (int day = 1; day <= 31; ++day) texts[109 + day] = L"第" + std::to_wstring(day);
  return texts;
}

TEST(ModuleStrings, AreTheTableToTheCharacter) {
  const auto texts = table();
  ASSERT_EQ(59u, texts.size());
  for (const auto& [id, text] : texts) EXPECT_EQ(text, resourse_2_string_impl(id)) << id;
}

TEST(ModuleStrings, AreInSimplifiedChineseAndInNoOtherLanguage) {
  HMODULE module = base::module_instance();
  for (int id = 100; id <= 158; id += strings_in_block) {
    const auto* const block = MAKEINTRESOURCEW(id / strings_in_block + 1);
    EXPECT_NE(nullptr, FindResourceExW(module, MAKEINTRESOURCEW(6), block, simplified_chinese)) << id;
    EXPECT_EQ(nullptr,
              FindResourceExW(module, MAKEINTRESOURCEW(6), block, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)))
        << id;
  }
}

TEST(ModuleStrings, ThatAreMissingAreAssertedAndEmpty) {
  // Beside the table in one of its blocks, in a block that does not exist, and no identifier at all.
  for (const int id : {99, 159, 10000, 0, -1}) {
    EXPECT_EQ(L"", resourse_2_string_impl(id)) << id;
    EXPECT_THAT(take_reports_without_lines(), ElementsAre(missing_string)) << id;
  }
}

TEST(ModuleStrings, AreOfAnyLength) {
  const std::wstring text = resourse_2_string_impl(5000);
  ASSERT_EQ(4095u, text.size());
  EXPECT_EQ(std::wstring(4094, L'x') + L'y', text);
}

TEST(ModuleStrings, ComeFromAnotherModuleByItsHandle) {
  const base::LoadedModule shared(LoadLibraryW(L"zdCommonRes.DLL"));
  ASSERT_TRUE(shared);
  EXPECT_FALSE(resourse_2_string_impl(4028, shared.get()).empty());
  EXPECT_EQ(L"", resourse_2_string_impl(100, shared.get()));
  EXPECT_THAT(take_reports_without_lines(), ElementsAre(missing_string));
}

TEST(SharedModule, ThatIsMissingIsAssertedAtEveryUse) {
  {
    const zd_common_res::CCommonRes missing(L"no such module.dll");
    EXPECT_THAT(take_reports_without_lines(), ElementsAre("ASSERT hInstance | ResourceMgr.cpp:* CCommonRes"));
    for (int use = 0; use < 2; ++use) {
      EXPECT_EQ(nullptr, missing.instance());
      EXPECT_THAT(take_reports_without_lines(), ElementsAre("ASSERT hInstance | ResourceMgr.cpp:* instance"));
    }
  }
  EXPECT_THAT(take_reports_without_lines(), testing::IsEmpty()) << "there is nothing to free";
}

/// A copy of the shared module, which nothing else has loaded.
class SharedModuleCopy : public testing::Test {
 protected:
  SharedModuleCopy() { std::filesystem::copy_file(base::path_beside_program(L"zdCommonRes.DLL"), file_); }

  test_support::TemporaryFolder folder_;
  std::filesystem::path file_ = folder_.path() / L"copy.dll";
};

TEST_F(SharedModuleCopy, IsHeldByItsHolder) {
  ASSERT_EQ(nullptr, GetModuleHandleW(file_.c_str()));
  {
    const zd_common_res::CCommonRes shared(file_.c_str());
    EXPECT_EQ(GetModuleHandleW(file_.c_str()), shared.instance());
    EXPECT_NE(nullptr, shared.instance());
  }
  EXPECT_EQ(nullptr, GetModuleHandleW(file_.c_str()));
}

TEST_F(SharedModuleCopy, ThatCannotBeFreedIsAsserted) {
  {
    const zd_common_res::CCommonRes shared(file_.c_str());
    FreeLibrary(shared.instance());
  }
  EXPECT_THAT(take_reports_without_lines(),
              ElementsAre("ASSERT ::FreeLibrary(hInstance) | ResourceMgr.cpp:* ~CCommonRes"));
}

TEST(SharedStrings, AreLoadedFromTheModuleBesideTheProgramAndKeepIt) {
  EXPECT_EQ(L"到期规则(&R)", zd_common_res::GetString(4028));
  EXPECT_NE(nullptr, GetModuleHandleW(L"zdCommonRes.DLL"));
  EXPECT_FALSE(zd_common_res::GetString(4033).empty());
  EXPECT_FALSE(zd_common_res::GetString(4052).empty());
}

TEST(SharedStrings, ThatAreMissingAreAssertedAndEmpty) {
  // 103 is a string of this module, which must not stand in.
  for (const unsigned int id : {1U, 103U}) {
    EXPECT_EQ(L"", zd_common_res::GetString(id));
    EXPECT_THAT(take_reports_without_lines(), ElementsAre(missing_string));
  }
}

}  // namespace
