#include <windows.h>
#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <set>

#include "ChildProcess.h"
#include "ModulePath.h"
#include "StoreWriter.h"
#include "TemporaryFolder.h"
#include "resource.h"

namespace {

using test_support::StartedProgram;
using test_support::TemporaryFolder;

using Paths = std::set<std::filesystem::path>;

// The libraries that the module loads by name.
constexpr const wchar_t* texts = L"zdCommonRes.DLL";
constexpr const wchar_t* diagnostics = L"SnagtrapUtil3.0_x64.dll";

/// The folder in which this process and those that it starts work, and the only one in their PATH beside the system's.
class ScopedSearchFolders {
 public:
  ScopedSearchFolders(const std::filesystem::path& current, const std::filesystem::path& on_path)
      : previous_current_(std::filesystem::current_path()), previous_path_(_wgetenv(L"PATH")) {
    std::filesystem::current_path(current);
    SetEnvironmentVariableW(L"PATH", (on_path.native() + L";" + previous_path_).c_str());
  }
  ScopedSearchFolders(const ScopedSearchFolders&) = delete;
  ScopedSearchFolders& operator=(const ScopedSearchFolders&) = delete;
  ~ScopedSearchFolders() {
    SetEnvironmentVariableW(L"PATH", previous_path_.c_str());
    std::filesystem::current_path(previous_current_);
  }

 private:
  std::filesystem::path previous_current_;
  std::wstring previous_path_;
};

/// The workbench's window, once it can be seen; null before.
HWND shown_window(DWORD process) {
  struct Search {
    DWORD process;
    HWND found;
  } search{process, nullptr};
  EnumWindows(
      [](HWND window, LPARAM parameter) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(parameter);
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        const bool has_status_bar = GetDlgItem(window, IDC_STATUS_BAR) != nullptr;
        if (owner == wanted.process && IsWindowVisible(window) && has_status_bar) wanted.found = window;
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

/// The files of the libraries in a process.
Paths loaded_files(DWORD process) {
  Paths files;
  const base::FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, process));
  MODULEENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Module32FirstW(snapshot.get(), &entry); more; more = Module32NextW(snapshot.get(), &entry)) {
    files.insert(entry.szExePath);
  }
  return files;
}

/// What a workbench has and says once the module is initialised.
struct StartedWorkbench {
  Paths loaded;          ///< the libraries below the test's folder that it has loaded
  std::wstring message;  ///< in its status bar
};

/// A workbench with the module but without the libraries that the module loads by name.
class PlantedLibraries : public testing::Test {
 protected:
  PlantedLibraries() {
    for (const auto& folder : {program_, current_, on_path_}) std::filesystem::create_directories(folder);
    for (const wchar_t* file : {L"workbench.exe", L"zdExpirationRules.dll"}) put(file, program_);
  }

  static void put(const wchar_t* file, const std::filesystem::path& folder) {
    std::filesystem::copy_file(base::path_beside_program(file), folder / file);
  }

  StartedWorkbench start_workbench() const {
    const ScopedSearchFolders folders(current_, on_path_);
    const std::wstring module = (program_ / L"zdExpirationRules.dll").native();
    const std::wstring store = (folder_.path() / L"rules.db").native();
    StartedProgram workbench((program_ / L"workbench.exe").native(),
                             L"--language en --module \"" + module + L"\" --store \"" + store + L'"');
    HWND window = nullptr;
    while (!(window = shown_window(workbench.id())) && WaitForSingleObject(workbench.process(), 20) == WAIT_TIMEOUT)
      continue;
    StartedWorkbench started{loaded_files(workbench.id()), status_bar_message(window)};
    TerminateProcess(workbench.process(), StoreWriter::killed);
    WaitForSingleObject(workbench.process(), INFINITE);
    std::erase_if(started.loaded, [&](const std::filesystem::path& file) {
      return _wcsnicmp(file.c_str(), folder_.path().c_str(), folder_.path().native().size()) != 0;
    });
    return started;
  }

  Paths loaded_by_workbench() const { return start_workbench().loaded; }

  /// Another process is not asked for a part of the bar, but for its text, which is that of the first part.
  static std::wstring status_bar_message(HWND window) {
    wchar_t message[300] = L"";
    SendMessageTimeoutW(GetDlgItem(window, IDC_STATUS_BAR), WM_GETTEXT, std::size(message),
                        reinterpret_cast<LPARAM>(message), SMTO_NORMAL, 10'000, nullptr);
    return message;
  }

  TemporaryFolder folder_;
  std::filesystem::path program_ = folder_.path() / L"program";
  std::filesystem::path current_ = folder_.path() / L"current";
  std::filesystem::path on_path_ = folder_.path() / L"on path";
};

TEST_F(PlantedLibraries, AreNotLoadedFromTheCurrentFolderNorAlongPath) {
  // Each alone: the diagnostics are looked for because the texts are missing.
  for (const auto& folder : {current_, on_path_}) {
    for (const wchar_t* library : {texts, diagnostics}) {
      put(library, folder);
      EXPECT_EQ(loaded_by_workbench(), (Paths{program_ / L"workbench.exe", program_ / L"zdExpirationRules.dll"}));
      std::filesystem::remove(folder / library);
    }
  }
}

TEST_F(PlantedLibraries, AreLoadedFromBesideTheProgram) {
  put(texts, program_);
  EXPECT_EQ(loaded_by_workbench().count(program_ / texts), 1u);
}

TEST_F(PlantedLibraries, DiagnosticsAreLoadedFromBesideTheProgramForAReport) {
  // Without its texts the module reports.
  put(diagnostics, program_);
  EXPECT_EQ(loaded_by_workbench().count(program_ / diagnostics), 1u);
}

TEST_F(PlantedLibraries, MissingOnesAreNamedInTheStatusBar) {
  put(diagnostics, current_);
  EXPECT_EQ(start_workbench().message,
            L"Missing beside the program: zdCommonRes.DLL, SnagtrapUtil3.0_x64.dll. Unpack or repair the package.");
  put(texts, program_);
  EXPECT_EQ(start_workbench().message,
            L"Missing beside the program: SnagtrapUtil3.0_x64.dll. Unpack or repair the package.");
  put(diagnostics, program_);
  EXPECT_EQ(start_workbench().message, L"The plug-in is loaded");
  std::filesystem::remove(program_ / texts);
  EXPECT_EQ(start_workbench().message, L"Missing beside the program: zdCommonRes.DLL. Unpack or repair the package.");
}

}  // namespace
