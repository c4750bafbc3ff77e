#include <gmock/gmock.h>

#include <filesystem>

#include "ChildProcess.h"
#include "GuidText.h"
#include "ModulePath.h"
#include "Recorder.h"
#include "RegistrySandbox.h"
#include "RegistryTree.h"
#include "SnagtrapUtil.h"
#include "TemporaryFolder.h"

namespace diagnostics_test {
namespace {

namespace fs = std::filesystem;
using test_support::ChildResult;
using test_support::recorder_path;
using testing::AllOf;
using testing::HasSubstr;

constexpr wchar_t library_name[] = L"SnagtrapUtil3.0_x64.dll";
constexpr wchar_t library_key[] = L"Software\\Orvane\\Snagtrap";
constexpr DWORD minus_one = 0xFFFFFFFF;

/// Runs the child program in a role, with a registry and a folder of its own.
class Process : public testing::Test {
 protected:
  static std::wstring program() { return base::path_beside_program(L"apart\\diagnostics_child.exe"); }

  static ChildResult play(const std::vector<std::wstring>& arguments) {
    ChildResult result = test_support::run_child(program(), arguments);
    EXPECT_FALSE(result.timed_out) << "a window is open";
    return result;
  }

  ChildResult play_journaled(const std::wstring& role) const { return play({role, recorder_path(), journal()}); }

  std::wstring journal() const { return folder.path() / L"journal.txt"; }

  std::string words() const { return test_support::read_bytes(journal()); }

  static void set_init_failure_box() { test_support::write_registry_text(HKEY_CURRENT_USER, library_key, {}, L"1"); }

  test_support::RegistrySandbox registry;
  test_support::TemporaryFolder folder{L"zd diagnostics"};
};

class LibraryMissing : public Process {};

TEST_F(LibraryMissing, ReportsDoNothingAndShowNoBox) {
  const ChildResult child = play({L"report without library"});
  EXPECT_EQ(child.exit_code, 0u);
  EXPECT_EQ(
      child.output,
      "assertion=80004005\nerror=80004005\ntrace=80004005\nstructured exception=80004005\nwent on=yes\nboxes=0\n");
}

TEST_F(LibraryMissing, NamedValuesOfTheKeyShowNoBox) {
  test_support::write_registry_number(HKEY_CURRENT_USER, library_key, L"Interactive", 1);
  EXPECT_THAT(play({L"report without library"}).output, HasSubstr("boxes=0"));
}

TEST_F(LibraryMissing, WithTheKeyShowsTheBoxOncePerProcess) {
  set_init_failure_box();
  const ChildResult child = play({L"report without library"});
  EXPECT_THAT(child.output, AllOf(HasSubstr("boxes=1\n"), HasSubstr("text=Snagtrap Init Failed.\n"),
                                  HasSubstr("caption=\n"), HasSubstr("owner=none\n"), HasSubstr("icon=error\n")));
  EXPECT_THAT(child.output, HasSubstr("assertion=80004005\nerror=80004005\n"));
}

TEST_F(LibraryMissing, ReportsDuringTheBoxAreDropped) {
  set_init_failure_box();
  EXPECT_EQ(play({L"report during the box"}).output,
            "same thread=80004005\nother thread=80004005\nfirst=80004005\nboxes=1\n");
}

TEST_F(LibraryMissing, AbortEndsTheProcessAllTheSame) {
  EXPECT_EQ(play({L"abort without library"}).exit_code, minus_one);
}

class LibrarySearch : public Process {
 protected:
  static void register_path(const std::wstring& library) {
    const std::wstring id = test_support::guid_text(__uuidof(IKV_SnagtrapUtil::SnagtrapLibrary));
    const std::wstring key = L"CLSID\\" + id + L"\\InprocServer32";
    test_support::write_registry_text(HKEY_CLASSES_ROOT, key, {}, library);
  }

  std::wstring copy_of(const fs::path& library, const wchar_t* name) const {
    fs::copy_file(library, folder.path() / name);
    return folder.path() / name;
  }
};

TEST_F(LibrarySearch, FindsItByName) {
  EXPECT_EQ(play({L"find library", fs::path(recorder_path()).parent_path()}).output, "initialised=yes\n");
}

TEST_F(LibrarySearch, FindsTheRegisteredPath) {
  register_path(copy_of(recorder_path(), L"registered library.dll"));
  EXPECT_EQ(play({L"find library"}).output, "initialised=yes\n");
}

TEST_F(LibrarySearch, FindsNothingAtARegisteredPathWithoutFile) {
  register_path(folder.path() / L"absent.dll");
  EXPECT_EQ(play({L"find library"}).output, "initialised=no\n");
}

TEST_F(LibrarySearch, FindsNothingAtAnEmptyOrVeryLongRegisteredPath) {
  register_path(L"");
  EXPECT_EQ(play({L"find library"}).output, "initialised=no\n");
  register_path(L"C:\\" + std::wstring(5000, L'x'));
  EXPECT_EQ(play({L"find library"}).output, "initialised=no\n");
}

TEST_F(LibrarySearch, UsesTheModuleThatIsLoadedAlready) {
  EXPECT_EQ(play({L"find loaded library", recorder_path()}).output, "loaded=yes\ninitialised=yes\n");
}

TEST_F(LibrarySearch, ModuleWithoutTheExportIsAFailure) {
  register_path(recorder_path());
  const std::wstring without = copy_of(base::path_beside_program(L"zdCommonRes.DLL"), library_name);
  EXPECT_EQ(play({L"find loaded library", without}).output, "loaded=yes\ninitialised=no\n")
      << "a loaded module of that name is the library, and the registered path is not asked";
}

TEST_F(LibrarySearch, GettingTheClientDoesNotInitialiseIt) {
  EXPECT_EQ(play({L"get the client", recorder_path()}).output, "commands=0\n");
}

class EndOfProcess : public Process {};

TEST_F(EndOfProcess, AbortOfAnAssertionSendsDeinitAndExitsWithMinusOne) {
  const ChildResult child = play_journaled(L"abort at an assertion");
  EXPECT_EQ(child.exit_code, minus_one);
  EXPECT_EQ(child.output, "");
  EXPECT_EQ(words(), "ST_InitObject\nCREATE\nINIT\nConfigure\nCREATE\nFILTER\nPROCESS\nDEINIT\nRelease\n");
}

TEST_F(EndOfProcess, AbortOfACaughtExceptionSendsDeinitAndExitsWithMinusOne) {
  const ChildResult child = play_journaled(L"abort at an exception");
  EXPECT_EQ(child.exit_code, minus_one);
  EXPECT_EQ(child.output, "");
  EXPECT_EQ(words(), "ST_InitObject\nCREATE\nINIT\nConfigure\nCREATE\nPROCESS\nDEINIT\nRelease\n");
}

TEST_F(EndOfProcess, AbortInitialisesAClientThatNeverWas) {
  EXPECT_EQ(play_journaled(L"abort before initialisation").exit_code, minus_one);
  EXPECT_EQ(words(), "ST_InitObject\nCREATE\nINIT\nConfigure\nDEINIT\nRelease\n");
}

TEST_F(EndOfProcess, TerminateSendsItsWordAndExitsWithMinusOne) {
  EXPECT_EQ(play_journaled(L"terminate by command").exit_code, minus_one);
  EXPECT_EQ(words(), "ST_InitObject\nCREATE\nINIT\nConfigure\nTERMINATE\n");
}

TEST_F(EndOfProcess, OrderlyEndSendsNothingAndReleasesTheLibrary) {
  EXPECT_EQ(play_journaled(L"end orderly").exit_code, 0u);
  EXPECT_EQ(words(), "ST_InitObject\nCREATE\nINIT\nConfigure\nCREATE\nFILTER\nPROCESS\nRelease\n");
}

TEST_F(EndOfProcess, LibraryIsNotCalledAfterItWasDetached) {
  EXPECT_EQ(play_journaled(L"end with the process").exit_code, 0u);
  EXPECT_EQ(words(), "ST_InitObject\nCREATE\nINIT\nConfigure\nCREATE\nFILTER\nPROCESS\n");
}

class FirstReport : public Process {};

TEST_F(FirstReport, CarriesAndKeepsTheLastErrorOfBeforeTheInitialisation) {
  EXPECT_EQ(play({L"first report", recorder_path()}).output, "last error=000010e1\ncarried=4321\n");
}

TEST_F(FirstReport, IsDroppedWhileTheClientCannotBeCreatedAndALaterOneIsNot) {
  EXPECT_EQ(play({L"report without client", recorder_path()}).output, "commands=0\nreports=1\n");
}

TEST_F(FirstReport, OfManyThreadsInitialisesOnceAndLosesNothing) {
  EXPECT_EQ(play({L"first reports of many threads", recorder_path()}).output,
            "ST_InitObject=1\nINIT=1\nConfigure=1\nreports=8\nthreads=8\ncomplete=yes\n");
}

}  // namespace
}  // namespace diagnostics_test
