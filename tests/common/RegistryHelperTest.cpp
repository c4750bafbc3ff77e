#include <gmock/gmock.h>

#include <climits>
#include <cstring>
#include <filesystem>

#include "ChildProcess.h"
#include "ExpectedReports.h"
#include "ImportProbe.h"
#include "ModulePath.h"
#include "RegistryHelper.h"
#include "VersionBlocks.h"

ZD_IMPORT_PROBE(GetModuleFileNameW, ModuleFileNameProbe);
ZD_IMPORT_PROBE(GetFileVersionInfoSizeW, VersionSizeProbe);
ZD_IMPORT_PROBE(GetFileVersionInfoW, VersionProbe);

namespace common_test {
namespace {

using namespace zd_common;
using test_support::take_reports;

const Texts all_texts = {
    {L"CompanyName", L"Some Company"},     {L"ProductName", L"Some Product"}, {L"ProductVersion", L"1.2"},
    {L"FileDescription", L"\u6D4B\u8BD5"}, {L"FileVersion", L"3.4"},          {L"LegalCopyright", L"\u00A9"},
    {L"OriginalFilename", L"Nobody asks"}};

std::vector<std::wstring> fields(const VersionRecord& record) {
  return {record.registry_company, record.registry_product, record.company_name, record.product_name,
          record.product_version,  record.file_description, record.file_version, record.legal_copyright};
}

const std::vector<std::wstring> nothing(8);

/// A version block as the system reads it from a file, whatever it says.
class VersionRecordOfBlock : public testing::Test {
 protected:
  VersionRecord read(const Bytes& block) {
    size.replace([&](LPCWSTR, DWORD*) { return static_cast<DWORD>(block.size()); });
    version.replace([&](LPCWSTR, DWORD, DWORD length, void* data) {
      EXPECT_EQ(length, block.size());
      std::memcpy(data, block.data(), length);
      return TRUE;
    });
    return read_version_record_of(L"any.exe");
  }

  VersionSizeProbe size;
  VersionProbe version;
};

TEST_F(VersionRecordOfBlock, HoldsTheSixTextsAndTwoCopies) {
  const auto record = read(version_block({string_table(L"080404b0", all_texts)}, translations({0x0804, 0x04B0})));
  EXPECT_EQ(fields(record), (std::vector<std::wstring>{L"Some Company", L"Some Product", L"Some Company",
                                                       L"Some Product", L"1.2", L"\u6D4B\u8BD5", L"3.4", L"\u00A9"}));
}

TEST_F(VersionRecordOfBlock, IsOfTheFirstTranslationOnly) {
  const auto block = version_block({string_table(L"040904e4", {{L"CompanyName", L"English"}}),
                                    string_table(L"0c0a04b0", {{L"CompanyName", L"Spanish"}})},
                                   translations({0x0C0A, 0x04B0, 0x0409, 0x04E4}));
  EXPECT_EQ(read(block).company_name, L"Spanish");
}

TEST_F(VersionRecordOfBlock, LooksNowhereElseForWhatTheFirstTranslationLacks) {
  const auto block = version_block({string_table(L"040904b0", {{L"CompanyName", L"Company"}}),
                                    string_table(L"080404b0", {{L"ProductName", L"Product"}})},
                                   translations({0x0409, 0x04B0, 0x0804, 0x04B0}));
  const auto record = read(block);
  EXPECT_EQ(record.registry_company, L"Company");
  EXPECT_EQ(record.registry_product, L"");
}

TEST_F(VersionRecordOfBlock, LeavesMissingTextsEmpty) {
  const auto record =
      read(version_block({string_table(L"080404b0", {{L"FileVersion", L"3.4"}})}, translations({0x0804, 0x04B0})));
  EXPECT_EQ(record.file_version, L"3.4");
  EXPECT_EQ(record.company_name, L"");
  EXPECT_EQ(record.registry_company, L"");
}

TEST_F(VersionRecordOfBlock, IsEmptyWithoutTranslation) {
  EXPECT_EQ(fields(read(version_block({string_table(L"080404b0", all_texts)}, {}))), nothing);
  EXPECT_EQ(fields(read(version_block({string_table(L"080404b0", all_texts)}, translations({})))), nothing);
  EXPECT_EQ(fields(read(version_block({string_table(L"080404b0", all_texts)}, translations({0x0804})))), nothing);
}

TEST_F(VersionRecordOfBlock, IsEmptyWhenTheTranslationHasNoTexts) {
  EXPECT_EQ(fields(read(version_block({string_table(L"040904b0", all_texts)}, translations({0x0804, 0x04B0})))),
            nothing);
}

TEST_F(VersionRecordOfBlock, IsEmptyWithoutBlock) {
  size.fail(0, 0);
  EXPECT_EQ(fields(read_version_record_of(L"any.exe")), nothing);
}

TEST_F(VersionRecordOfBlock, IsEmptyWhenTheBlockCannotBeRead) {
  const Bytes block = version_block({string_table(L"080404b0", all_texts)}, translations({0x0804, 0x04B0}));
  read(block);
  version.fail(0, FALSE);
  EXPECT_EQ(fields(read_version_record_of(L"any.exe")), nothing);
}

TEST_F(VersionRecordOfBlock, SurvivesTruncationAnywhere) {
  const Bytes whole = version_block({string_table(L"080404b0", all_texts)}, translations({0x0804, 0x04B0}));
  for (std::size_t length = 1; length < whole.size(); ++length) {
    const Bytes truncated(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(fields(read(truncated)), nothing) << length;
  }
  EXPECT_NE(fields(read(whole)), nothing);
}

TEST_F(VersionRecordOfBlock, SurvivesTruncationThatTheBlockDoesNotAdmit) {
  const Bytes whole = version_block({string_table(L"080404b0", all_texts)}, translations({0x0804, 0x04B0}));
  for (std::size_t length = 2; length < whole.size(); ++length) {
    Bytes zeroed = whole;
    std::fill(zeroed.begin() + static_cast<std::ptrdiff_t>(length), zeroed.end(), std::uint8_t{0});
    const auto record = read(zeroed);
    EXPECT_TRUE(record.registry_company.empty() || record.registry_company.find(L"Some") == 0) << length;
  }
}

TEST_F(VersionRecordOfBlock, ATextThatTellsTooGreatALengthEndsAtItsEnd) {
  const Bytes value{'A', 0, 'B', 0, 0, 0};
  const Bytes table = version_node(L"080404b0", true, {}, 0, {version_node(L"CompanyName", true, value, 0xFFFF)});
  EXPECT_EQ(read(version_block({table}, translations({0x0804, 0x04B0}))).company_name, L"AB");
}

/// Real files: copies of a program without resources, under a name that is no ASCII and has spaces.
class VersionRecordOfFile : public testing::Test {
 protected:
  VersionRecordOfFile() {
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(base::path_beside_program(L"bare_program.exe"), file,
                               std::filesystem::copy_options::overwrite_existing);
  }
  ~VersionRecordOfFile() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  void add_block(const Bytes& block) {
    HANDLE update = BeginUpdateResourceW(file.c_str(), FALSE);
    ASSERT_NE(update, nullptr);
    Bytes data = block;
    ASSERT_TRUE(UpdateResourceW(update, RT_VERSION, MAKEINTRESOURCEW(VS_VERSION_INFO), 0, data.data(),
                                static_cast<DWORD>(data.size())));
    ASSERT_TRUE(EndUpdateResourceW(update, FALSE));
  }

  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / (L"version " + std::to_wstring(GetCurrentProcessId()));
  const std::filesystem::path file = folder / L"\u4E3B\u673A \u00FCber host.exe";
};

TEST_F(VersionRecordOfFile, IsEmptyWithoutVersionBlock) {
  EXPECT_EQ(fields(read_version_record_of(file.c_str())), nothing);
}

TEST_F(VersionRecordOfFile, IsReadFromAPathWithSpacesAndOtherLetters) {
  add_block(version_block({string_table(L"080404b0", all_texts)}, translations({0x0804, 0x04B0})));
  EXPECT_EQ(read_version_record_of(file.c_str()).registry_company, L"Some Company");
}

TEST_F(VersionRecordOfFile, IsEmptyWhenTheBlockIsCutOff) {
  Bytes block = version_block({string_table(L"080404b0", all_texts)}, translations({0x0804, 0x04B0}));
  block.resize(block.size() / 2);
  add_block(block);
  EXPECT_EQ(fields(read_version_record_of(file.c_str())), nothing);
}

TEST_F(VersionRecordOfFile, IsEmptyWithoutFile) {
  EXPECT_EQ(fields(read_version_record_of((folder / L"missing.exe").c_str())), nothing);
  EXPECT_EQ(fields(read_version_record_of(L"")), nothing);
}

TEST(ComposedPath, IsMadeOfCompanyAndProductAsTheyAre) {
  BSTR path = nullptr;
  EXPECT_EQ(compose_registry_path(&path, L"A B", L"C"), 0);
  EXPECT_STREQ(path, L"SOFTWARE\\A B\\C");
  SysFreeString(path);
  path = nullptr;
  EXPECT_EQ(compose_registry_path(&path, L" \u516C\u53F8 ", L"a\\b%s\""), 0);
  EXPECT_STREQ(path, L"SOFTWARE\\ \u516C\u53F8 \\a\\b%s\"");
  EXPECT_EQ(SysStringLen(path), std::wcslen(path));
  SysFreeString(path);
}

TEST(ComposedPath, HasNoLimitOfLength) {
  BSTR path = nullptr;
  EXPECT_EQ(compose_registry_path(&path, std::wstring(300, L'x'), std::wstring(300, L'y')), 0);
  EXPECT_EQ(SysStringLen(path), 9U + 300 + 1 + 300);
  SysFreeString(path);
}

TEST(ComposedPath, IsRefusedWithoutAFreePlace) {
  EXPECT_EQ(compose_registry_path(nullptr, L"A", L"B"), E_POINTER);
  BSTR taken = SysAllocString(L"taken");
  EXPECT_EQ(compose_registry_path(&taken, L"A", L"B"), E_INVALIDARG);
  EXPECT_STREQ(taken, L"taken");
  SysFreeString(taken);
}

TEST(ComposedPath, IsRefusedWithoutCompanyOrProduct) {
  BSTR path = nullptr;
  EXPECT_EQ(compose_registry_path(&path, L"", L"B"), 1812);
  EXPECT_EQ(compose_registry_path(&path, L"A", L""), 1812);
  EXPECT_EQ(path, nullptr);
  EXPECT_EQ(compose_registry_path(nullptr, L"", L""), E_POINTER) << "the place comes first";
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

TEST(SettingsPath, IsReadAfreshAtEveryCall) {
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
  add_block(version_block({string_table(L"080404b0", all_texts)}, translations({0x0804, 0x04B0})));
  EXPECT_EQ(path(), L"SOFTWARE\\Some Company\\Some Product");
}

TEST_F(SettingsPathOfFile, IsEmptyAfterOneReportWithoutVersionBlock) {
  EXPECT_EQ(path(), L"");
  EXPECT_THAT(take_reports(), testing::ElementsAre(report));
}

TEST_F(SettingsPathOfFile, IsEmptyAfterOneReportWithoutTranslation) {
  add_block(version_block({string_table(L"080404b0", all_texts)}, {}));
  EXPECT_EQ(path(), L"");
  EXPECT_THAT(take_reports(), testing::ElementsAre(report));
}

TEST_F(SettingsPathOfFile, IsEmptyAfterOneReportWithoutCompanyOrProduct) {
  for (const Texts& texts : {Texts{{L"ProductName", L"Some Product"}}, Texts{{L"CompanyName", L"Some Company"}},
                             Texts{{L"CompanyName", L""}, {L"ProductName", L"Some Product"}}}) {
    add_block(version_block({string_table(L"080404b0", texts)}, translations({0x0804, 0x04B0})));
    EXPECT_EQ(path(), L"");
    EXPECT_THAT(take_reports(), testing::ElementsAre(report));
  }
}

TEST(SettingsPath, HoldsAValueNameOfAnotherPlugIn) { EXPECT_STREQ(ShowDailyLimitCtrl, L"ShowDailyLimitCtrl"); }

}  // namespace
}  // namespace common_test
