#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "Bstr.h"
#include "ExpectedReports.h"
#include "ImportProbe.h"
#include "ModulePath.h"
#include "RegistryHelper.h"
#include "TemporaryFolder.h"

ZD_IMPORT_PROBE(GetModuleFileNameW, ModuleFileNameProbe);
ZD_IMPORT_PROBE(GetFileVersionInfoSizeW, VersionSizeProbe);
ZD_IMPORT_PROBE(GetFileVersionInfoW, VersionProbe);
ZD_IMPORT_PROBE(VerQueryValueW, VersionQueryProbe);

namespace common_test {
namespace {

using namespace zd_common;
using test_support::take_reports;

std::vector<std::wstring> fields(const VersionRecord& record) {
  return {record.registry_company, record.registry_product, record.company_name, record.product_name,
          record.product_version,  record.file_description, record.file_version, record.legal_copyright};
}

const std::vector<std::wstring> nothing(8);

/// A copy of a program without resources, under a name with spaces and letters outside ASCII.
class VersionRecordOfFile : public testing::Test {
 protected:
  VersionRecordOfFile() { std::filesystem::copy_file(base::path_beside_program(L"bare_program.exe"), file); }

  /// Gives the file the version block that is this program's resource of that name.
  void set_block(const wchar_t* name) {
    HRSRC resource = FindResourceW(nullptr, name, RT_VERSION);
    ASSERT_NE(resource, nullptr);
    HANDLE update = BeginUpdateResourceW(file.c_str(), FALSE);
    ASSERT_NE(update, nullptr);
    ASSERT_TRUE(UpdateResourceW(update, RT_VERSION, MAKEINTRESOURCEW(VS_VERSION_INFO), 0,
                                LockResource(LoadResource(nullptr, resource)), SizeofResource(nullptr, resource)));
    ASSERT_TRUE(EndUpdateResourceW(update, FALSE));
  }

  VersionRecord read() const { return read_version_record_of(file.c_str()); }

  VersionRecord read(const wchar_t* block) {
    set_block(block);
    return read();
  }

  const test_support::TemporaryFolder folder{L"version"};
  const std::filesystem::path file = folder.path() / L"\u4E3B\u673A \u00FCber host.exe";
};

TEST_F(VersionRecordOfFile, HoldsTheSixTextsAndTwoCopies) {
  EXPECT_EQ(fields(read(L"ALL_TEXTS")),
            (std::vector<std::wstring>{L"Some Company", L"Some Product", L"Some Company", L"Some Product", L"1.2",
                                       L"\u6D4B\u8BD5", L"3.4", L"\u00A9"}));
}

TEST_F(VersionRecordOfFile, IsOfTheFirstTranslationOnly) {
  EXPECT_EQ(read(L"SECOND_LANGUAGE_FIRST").company_name, L"Spanish");
}

TEST_F(VersionRecordOfFile, LooksNowhereElseForWhatIsMissingInTheFirstTranslation) {
  const VersionRecord record = read(L"PRODUCT_IN_THE_SECOND_TRANSLATION");
  EXPECT_EQ(record.registry_company, L"Company");
  EXPECT_EQ(record.registry_product, L"");
}

TEST_F(VersionRecordOfFile, LeavesMissingTextsEmpty) {
  const VersionRecord record = read(L"FILE_VERSION_ONLY");
  EXPECT_EQ(record.file_version, L"3.4");
  EXPECT_EQ(record.company_name, L"");
  EXPECT_EQ(record.registry_company, L"");
}

TEST_F(VersionRecordOfFile, IsEmptyWithoutTranslation) { EXPECT_EQ(fields(read(L"NO_TRANSLATION")), nothing); }

TEST_F(VersionRecordOfFile, IsEmptyWhenTheTranslationHasNoTexts) {
  EXPECT_EQ(fields(read(L"TRANSLATION_WITHOUT_TEXTS")), nothing);
}

TEST_F(VersionRecordOfFile, IsEmptyWithoutVersionBlock) { EXPECT_EQ(fields(read()), nothing); }

TEST_F(VersionRecordOfFile, IsEmptyWhenTheBlockCannotBeRead) {
  VersionProbe version;
  version.fail(0, FALSE);
  EXPECT_EQ(fields(read(L"ALL_TEXTS")), nothing);
}

TEST_F(VersionRecordOfFile, IsEmptyWithoutFile) {
  EXPECT_EQ(fields(read_version_record_of((folder.path() / L"missing.exe").c_str())), nothing);
  EXPECT_EQ(fields(read_version_record_of(L"")), nothing);
}

/// What the system's query returns for one name of a block; for the others, what the block holds.
class QueriedVersionValue : public VersionRecordOfFile {
 protected:
  QueriedVersionValue() { set_block(L"ALL_TEXTS"); }

  void returns(std::wstring_view path, const void* value, UINT length) {
    query.replace([=, this](LPCVOID block, LPCWSTR asked, LPVOID* start, PUINT size) {
      if (asked != path) return query.original(block, asked, start, size);
      *start = const_cast<void*>(value);
      *size = length;
      return TRUE;
    });
  }

  static constexpr wchar_t company[] = L"\\StringFileInfo\\080404b0\\CompanyName";
  VersionQueryProbe query;
};

TEST_F(QueriedVersionValue, EndsAtTheLengthOfTheQuery) {
  returns(company, L"ABCDEF", 3);
  EXPECT_EQ(read().company_name, L"ABC");
  returns(company, L"ABCDEF", 0);
  EXPECT_EQ(read().company_name, L"");
  returns(company, nullptr, 0);
  EXPECT_EQ(read().company_name, L"");
}

TEST_F(QueriedVersionValue, EndsAtItsFirstNull) {
  returns(company, L"AB\0CD", 5);
  EXPECT_EQ(read().company_name, L"AB");
}

TEST_F(QueriedVersionValue, IsNoTranslationWhenItIsShorterThanTwoNumbers) {
  const WORD numbers[] = {0x0804, 0x04B0};
  for (const UINT bytes : {0U, 2U, 3U}) {
    returns(L"\\VarFileInfo\\Translation", numbers, bytes);
    EXPECT_EQ(fields(read()), nothing) << bytes;
  }
  returns(L"\\VarFileInfo\\Translation", numbers, 4);
  EXPECT_NE(fields(read()), nothing);
}

TEST(ComposedPath, ConsistsOfCompanyAndProductAsTheyAre) {
  base::OwnedBstr path;
  EXPECT_EQ(compose_registry_path(path.put(), L"A B", L"C"), 0);
  EXPECT_EQ(base::view_of(path.get()), L"SOFTWARE\\A B\\C");
  EXPECT_EQ(compose_registry_path(path.put(), L" \u516C\u53F8 ", L"a\\b%s\""), 0);
  EXPECT_EQ(base::view_of(path.get()), L"SOFTWARE\\ \u516C\u53F8 \\a\\b%s\"");
}

TEST(ComposedPath, HasNoLimitOfLength) {
  base::OwnedBstr path;
  EXPECT_EQ(compose_registry_path(path.put(), std::wstring(300, L'x'), std::wstring(300, L'y')), 0);
  EXPECT_EQ(SysStringLen(path.get()), 9U + 300 + 1 + 300);
}

TEST(ComposedPath, IsRefusedWithoutAnEmptyOutParameter) {
  EXPECT_EQ(compose_registry_path(nullptr, L"A", L"B"), E_POINTER);
  const base::OwnedBstr taken(base::create_bstr(L"taken"));
  BSTR path = taken.get();
  EXPECT_EQ(compose_registry_path(&path, L"A", L"B"), E_INVALIDARG);
  EXPECT_EQ(path, taken.get());
  EXPECT_EQ(base::view_of(path), L"taken");
}

TEST(ComposedPath, IsRefusedWithoutCompanyOrProduct) {
  BSTR path = nullptr;
  EXPECT_EQ(compose_registry_path(&path, L"", L"B"), 1812);
  EXPECT_EQ(compose_registry_path(&path, L"A", L""), 1812);
  EXPECT_EQ(path, nullptr);
  EXPECT_EQ(compose_registry_path(nullptr, L"", L""), E_POINTER) << "the out parameter is checked first";
}

constexpr char report[] = "ASSERT 00000714 | RegistryHelper.h:15 zd_common::ZDRegistryPath";

TEST(SettingsPath, IsTheExecutablesCompanyAndProduct) {
  EXPECT_EQ(std::wstring(ZDRegistryPath()), L"SOFTWARE\\A B\\C");
}

TEST(SettingsPath, ComesFromTheWholeVersionRecordOfTheExecutable) {
  EXPECT_EQ(fields(read_version_record()),
            (std::vector<std::wstring>{L"A B", L"C", L"A B", L"C", L"5.6.7", L"\u6D4B\u8BD5\u7A0B\u5E8F", L"1.2.3",
                                       L"\u00A9 tests"}));
}

TEST(SettingsPath, IsReadAgainAtEveryCall) {
  EXPECT_EQ(ZDRegistryPath().length(), 14U);
  {
    VersionSizeProbe probe;
    probe.fail(0, 0);
    EXPECT_EQ(ZDRegistryPath().length(), 0U);
    EXPECT_THAT(take_reports(), testing::ElementsAre(report));
  }
  EXPECT_EQ(ZDRegistryPath().length(), 14U);
}

TEST(SettingsPath, IsEmptyAfterOneReportWhenTheExecutableIsNotKnown) {
  ModuleFileNameProbe probe;
  for (const DWORD length : {0U, 1024U}) {
    probe.replace([&](HMODULE module, LPWSTR name, DWORD size) {
      if (module) return probe.original(module, name, size);
      EXPECT_EQ(size, 1024U);
      return length;
    });
    EXPECT_EQ(ZDRegistryPath().length(), 0U);
    EXPECT_THAT(take_reports(), testing::ElementsAre(report));
  }
}

/// The settings path of a host whose executable is a file of this version block, or of none.
class SettingsPathOfFile : public VersionRecordOfFile {
 protected:
  SettingsPathOfFile() {
    names.replace([this](HMODULE module, LPWSTR name, DWORD size) {
      if (module) return names.original(module, name, size);
      return static_cast<DWORD>(file.wstring().copy(name, size - 1));
    });
  }

  std::wstring path() {
    const _bstr_t path = ZDRegistryPath();
    return path.length() ? std::wstring(path) : std::wstring();
  }

  ModuleFileNameProbe names;
};

TEST_F(SettingsPathOfFile, IsItsCompanyAndProduct) {
  set_block(L"ALL_TEXTS");
  EXPECT_EQ(path(), L"SOFTWARE\\Some Company\\Some Product");
}

TEST_F(SettingsPathOfFile, IsEmptyAfterOneReportWithoutVersionBlock) {
  EXPECT_EQ(path(), L"");
  EXPECT_THAT(take_reports(), testing::ElementsAre(report));
}

TEST_F(SettingsPathOfFile, IsEmptyAfterOneReportWithoutTranslationCompanyOrProduct) {
  for (const wchar_t* block : {L"NO_TRANSLATION", L"NO_COMPANY", L"NO_PRODUCT", L"EMPTY_COMPANY"}) {
    set_block(block);
    EXPECT_EQ(path(), L"");
    EXPECT_THAT(take_reports(), testing::ElementsAre(report));
  }
}

TEST(SettingsPath, HoldsAValueNameOfAnotherPlugIn) { EXPECT_STREQ(ShowDailyLimitCtrl, L"ShowDailyLimitCtrl"); }

}  // namespace
}  // namespace common_test
