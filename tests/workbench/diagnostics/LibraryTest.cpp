#include "LibraryTest.h"

#include "DialogDriver.h"

namespace snagtrap_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> words(const std::vector<nlohmann::json>& lines) {
  std::vector<std::string> all;
  for (const auto& line : lines) all.push_back(line.at("command").get<std::string>());
  return all;
}

class Library : public LibraryTest {};
class LibraryLog : public LibraryTest {};
class IgnoredLocation : public LibraryTest {};
class SilentMode : public LibraryTest {};

TEST_F(Library, InitObjectNeedsAnOutParameter) { EXPECT_EQ(init_object()(nullptr), E_POINTER); }

TEST_F(Library, CreateNeedsAnOutParameter) { EXPECT_EQ(command(L"CREATE"), E_POINTER); }

TEST_F(Library, UnknownCommandsAreRefused) {
  for (const wchar_t* word : {L"", L"create", L"CREATE ", L"EXPLODE"}) EXPECT_EQ(command(word), E_INVALIDARG) << word;
  EXPECT_EQ(root->Command(nullptr, nullptr, nullptr), E_INVALIDARG);
}

TEST_F(Library, CommandsThatNeedARecordRefuseNull) {
  for (const wchar_t* word : {L"INIT", L"FILTER", L"PROCESS"}) EXPECT_EQ(command(word), E_INVALIDARG) << word;
}

TEST_F(Library, RecordsOfAnotherLibraryAreRefused) {
  class Foreign final : public workbench::DispatchObject<IKV_SnagtrapUtil::IDebugObject> {
    HRESULT STDMETHODCALLTYPE SetField(BSTR, VARIANT) noexcept override { return S_OK; }
  };
  const auto foreign = base::own<IKV_SnagtrapUtil::IDebugObject>(new Foreign);
  EXPECT_EQ(command(L"PROCESS", foreign), E_INVALIDARG);
}

TEST_F(Library, ConfigureAcceptsEverything) {
  EXPECT_EQ(root->Configure(nullptr, nullptr, 0), S_OK);
  BSTR text = SysAllocString(L"1234");
  EXPECT_EQ(root->Configure(text, text, 1), S_OK);
  SysFreeString(text);
}

TEST_F(Library, ObjectsOfferTheirInterfacesOnly) {
  void* found = nullptr;
  EXPECT_EQ(root->QueryInterface(__uuidof(IDispatch), &found), S_OK);
  root->Release();
  EXPECT_EQ(root->QueryInterface(__uuidof(IKV_SnagtrapUtil::IDebugObject), &found), E_NOINTERFACE);
  EXPECT_EQ(found, nullptr);
}

TEST_F(Library, IsCleanUntilAnAssertionOrAnErrorWasReported) {
  EXPECT_EQ(command(L"IS CLEAN"), S_OK);
  for (const wchar_t* kind : {L"ASSERT", L"CREATE ERROR", L"ERROR"}) {
    process(kind);
    EXPECT_EQ(command(L"IS CLEAN"), S_FALSE) << kind;
    EXPECT_EQ(command(L"DO CLEAN"), S_OK);
    EXPECT_EQ(command(L"IS CLEAN"), S_OK);
  }
}

TEST_F(Library, StaysCleanAfterTraces) {
  process(L"TRACE");
  EXPECT_EQ(command(L"IS CLEAN"), S_OK);
}

TEST_F(Library, TraceEnabledReturnsTheSetting) {
  EXPECT_EQ(command(L"TRACEENABLED"), S_OK);
  set_setting(L"TraceEnabled", 0);
  EXPECT_EQ(command(L"TRACEENABLED"), S_FALSE);
}

TEST_F(LibraryLog, HasALineForEveryReportAndEachStartAndEnd) {
  const DebugObjectPtr init = create();
  command(L"INIT", init);
  process(L"ASSERT");
  process(L"TRACE");
  process(L"CREATE ERROR");
  process(L"ERROR");
  command(L"DEINIT");
  command(L"TERMINATE");
  EXPECT_THAT(words(folder.lines()),
              ElementsAre("INIT", "PROCESS", "PROCESS", "PROCESS", "PROCESS", "DEINIT", "TERMINATE"));
}

TEST_F(LibraryLog, LineSaysWhoReportedWhat) {
  process(L"ASSERT");
  nlohmann::json line = folder.lines().at(0);
  EXPECT_EQ(line["process"], GetCurrentProcessId());
  EXPECT_EQ(line["thread"], GetCurrentThreadId());
  EXPECT_EQ(line["program"], "snagtrap_tests.exe");
  EXPECT_EQ(line["time"].get<std::string>().size(), std::string("2024-05-06T07:08:09.123Z").size());
  EXPECT_EQ(line["record"]["$Type"], "ASSERT");
  EXPECT_EQ(line["record"]["Description"], "pMainMenu != 0");
  EXPECT_EQ(line["record"]["Line"], 70);
}

TEST_F(LibraryLog, AcceptsAnyText) {
  const std::wstring text = L"\"\n\u89c4\u5219 \U0001F4C5 \xD83D %s \x01";
  const std::string logged = "\"\n\u89c4\u5219 \U0001F4C5 \uFFFD %s \x01";
  const DebugObjectPtr record = report(L"TRACE");
  set_text(*record, text.c_str(), text);
  command(L"PROCESS", record);
  EXPECT_EQ(folder.lines().at(0)["record"][logged], logged);
}

TEST_F(LibraryLog, StaysWithinItsBound) {
  set_setting(L"MaxLogBytes", 4096);
  set_setting(L"KeptLogs", 2);
  for (int i = 0; i < 200; ++i) process(L"ASSERT");
  EXPECT_EQ(folder.file_count(), 3u);
  for (int age = 0; age <= 2; ++age) {
    EXPECT_LE(folder.content(age).size(), 4096u);
    EXPECT_FALSE(read_json_lines(folder.content(age)).empty());
  }
}

TEST_F(LibraryLog, RecordThatIsTooLongHasItsTextsCut) {
  set_setting(L"MaxLogBytes", 4096);
  const DebugObjectPtr record = report(L"ASSERT");
  set_text(*record, L"Description", std::wstring(100'000, L'x'));
  EXPECT_EQ(command(L"PROCESS", record), S_OK);
  nlohmann::json line = folder.lines().at(0);
  EXPECT_EQ(line["record"]["Description"], std::string(500, 'x') + "...");
  EXPECT_EQ(line["record"]["File"], "Some.cpp");
}

TEST_F(LibraryLog, RecordOfTooManyFieldsIsMentioned) {
  set_setting(L"MaxLogBytes", 4096);
  const DebugObjectPtr record = report(L"ASSERT");
  for (int i = 0; i < 1000; ++i) set_number(*record, (L"field" + std::to_wstring(i)).c_str(), i);
  EXPECT_EQ(command(L"PROCESS", record), S_OK);
  EXPECT_EQ(folder.lines().at(0)["record"], "too long for the log");
}

TEST_F(LibraryLog, LeavesTracesOutWhenTheyAreDisabled) {
  set_setting(L"TraceEnabled", 0);
  EXPECT_EQ(process(L"TRACE"), S_OK);
  EXPECT_EQ(process(L"ASSERT"), S_OK);
  EXPECT_EQ(folder.lines().size(), 1u);
}

TEST_F(LibraryLog, OfTheRegistryPrecedesTheProgramsProposal) {
  const DebugObjectPtr init = create();
  set_text(*init, L"LogDirectory", folder.path() / L"proposed");
  command(L"INIT", init);
  EXPECT_EQ(folder.lines().size(), 1u);

  RegDeleteKeyValueW(HKEY_CURRENT_USER, snagtrap::settings_key, L"LogDirectory");
  process(L"ASSERT");
  EXPECT_TRUE(std::filesystem::exists(folder.path() / L"proposed" / L"Snagtrap.jsonl"));
}

TEST_F(LibraryLog, UsesTheNextFolderWhenOneCannotBeWritten) {
  test_support::write_bytes(folder.path() / L"file", "x");
  test_support::write_registry_text(HKEY_CURRENT_USER, snagtrap::settings_key, L"LogDirectory",
                                    folder.path() / L"file" / L"impossible");
  const DebugObjectPtr init = create();
  set_text(*init, L"LogDirectory", folder.path());
  EXPECT_EQ(command(L"INIT", init), S_OK);
  EXPECT_EQ(process(L"ASSERT"), S_OK);
  EXPECT_EQ(folder.lines().size(), 2u);
}

TEST_F(LibraryLog, IsRotatedByDoClean) {
  process(L"ASSERT");
  command(L"DO CLEAN");
  EXPECT_FALSE(std::filesystem::exists(folder.file()));
  EXPECT_EQ(read_json_lines(folder.content(1)).size(), 1u);
}

TEST(LogSettings, DefaultFolderIsUnderTheUsersLocalApplicationData) {
  const std::filesystem::path folder = snagtrap::default_log_directory();
  wchar_t local[MAX_PATH] = {};
  ASSERT_NE(GetEnvironmentVariableW(L"LOCALAPPDATA", local, MAX_PATH), 0u);
  EXPECT_EQ(folder, std::filesystem::path(local) / L"Orvane" / L"Snagtrap" / L"Logs");
}

TEST(LogSettings, MissingOddAndExtremeValues) {
  const test_support::RegistrySandbox registry;
  const snagtrap::Settings missing = snagtrap::read_settings();
  EXPECT_EQ(missing.log_directory, L"");
  EXPECT_FALSE(missing.interactive);
  EXPECT_TRUE(missing.trace_enabled);
  EXPECT_EQ(missing.max_log_bytes, 1u << 20);
  EXPECT_EQ(missing.kept_logs, 3u);

  test_support::write_registry_text(HKEY_CURRENT_USER, snagtrap::settings_key, L"Interactive", L"1");
  test_support::write_registry_number(HKEY_CURRENT_USER, snagtrap::settings_key, L"LogDirectory", 1);
  test_support::write_registry_number(HKEY_CURRENT_USER, snagtrap::settings_key, L"MaxLogBytes", 0);
  test_support::write_registry_number(HKEY_CURRENT_USER, snagtrap::settings_key, L"KeptLogs", 0xFFFFFFFF);
  const snagtrap::Settings odd = snagtrap::read_settings();
  EXPECT_FALSE(odd.interactive);
  EXPECT_EQ(odd.log_directory, L"");
  EXPECT_EQ(odd.max_log_bytes, 4096u);
  EXPECT_EQ(odd.kept_logs, 99u);
}

TEST_F(IgnoredLocation, IsSeenByTheFilter) {
  const DebugObjectPtr record = report(L"ASSERT");
  EXPECT_EQ(command(L"FILTER", record), S_OK);
  always_ignore(L"Some.cpp(70)");
  EXPECT_EQ(command(L"FILTER", record), S_OK) << "the settings are read once for each record";
  EXPECT_EQ(command(L"FILTER", report(L"ASSERT")), S_FALSE);
}

TEST_F(IgnoredLocation, IsOneLineOfOneFile) {
  always_ignore(L"Some.cpp(71)");
  always_ignore(L"Other.cpp(70)");
  EXPECT_EQ(command(L"FILTER", report(L"ASSERT")), S_OK);
}

TEST_F(IgnoredLocation, IsLoggedAsSuch) {
  always_ignore(L"Some.cpp(70)");
  process(L"ASSERT");
  process(L"CREATE ERROR");
  for (const auto& line : folder.lines()) EXPECT_EQ(line.at("ignored"), true);
}

TEST_F(IgnoredLocation, NeedsAFile) {
  const DebugObjectPtr record = create();
  set_text(*record, L"$Type", L"ASSERT");
  EXPECT_EQ(command(L"FILTER", record), S_OK);
}

TEST_F(SilentMode, IsTheDefaultAndShowsNoWindow) {
  const std::set<HWND> before = test_support::windows_of_this_thread();
  EXPECT_EQ(process(L"ASSERT"), S_OK);
  EXPECT_EQ(process(L"CREATE ERROR"), S_OK);
  EXPECT_EQ(process(L"ERROR"), S_OK);
  EXPECT_EQ(command(L"REPORTDIALOG"), S_FALSE);
  EXPECT_EQ(test_support::windows_of_this_thread(), before);
}

}  // namespace
}  // namespace snagtrap_test
