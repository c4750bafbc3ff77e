#include "FailingSystem.h"

#include <objbase.h>
#include <windows.h>
#include <commctrl.h>
#include <oleauto.h>
#include <winver.h>

#include <type_traits>

#include "ReplacedFunction.h"

namespace test_support {
namespace {

std::vector<std::string> recorded;
std::set<std::string> failures;
FaultCounter counter;

bool must_fail(const char* function) {
  recorded.emplace_back(function);
  if (!counter.next_call_fails()) return false;
  failures.insert(function);
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return true;
}

template <FunctionName name, bool works, class Result, class... Arguments>
struct Failing {
  static Result WINAPI call(Arguments... arguments) {
    const bool fails = must_fail(name.text);
    if (!fails) return original(arguments...);
    if (works) original(arguments...);
    return failure;
  }
  inline static Result failure;
  inline static Result(WINAPI* original)(Arguments...);
};

template <FunctionName name, bool works, class Result, class... Arguments>
ReplacedFunction failing_by(Result failure) {
  Failing<name, works, Result, Arguments...>::failure = failure;
  return ReplacedFunction::by<Failing<name, works, Result, Arguments...>>(name.text);
}

/// The function of that name, and what it returns when it fails.
template <FunctionName name, class Result, class... Arguments>
ReplacedFunction failing(Result(WINAPI*)(Arguments...), std::type_identity_t<Result> failure) {
  return failing_by<name, false, Result, Arguments...>(failure);
}

/// The same for a function that does its work even so.
template <FunctionName name, class Result, class... Arguments>
ReplacedFunction failing_after_work(Result(WINAPI*)(Arguments...), std::type_identity_t<Result> failure) {
  return failing_by<name, true, Result, Arguments...>(failure);
}

#define ZD_FAILING(function, failure) failing<#function>(function, failure)

const std::vector<ReplacedFunction>& failing_functions() {
  static const std::vector<ReplacedFunction> all = {
      ZD_FAILING(RegCreateKeyExW, ERROR_NOT_ENOUGH_MEMORY),
      ZD_FAILING(RegDeleteKeyW, ERROR_NOT_ENOUGH_MEMORY),
      ZD_FAILING(RegDeleteTreeW, ERROR_NOT_ENOUGH_MEMORY),
      ZD_FAILING(RegDeleteValueW, ERROR_NOT_ENOUGH_MEMORY),
      ZD_FAILING(RegGetValueA, ERROR_NOT_ENOUGH_MEMORY),
      ZD_FAILING(RegOpenKeyExW, ERROR_NOT_ENOUGH_MEMORY),
      ZD_FAILING(RegQueryInfoKeyW, ERROR_NOT_ENOUGH_MEMORY),
      ZD_FAILING(RegQueryValueExW, ERROR_NOT_ENOUGH_MEMORY),
      ZD_FAILING(RegSetValueExW, ERROR_NOT_ENOUGH_MEMORY),
      failing_after_work<"RegCloseKey">(RegCloseKey, ERROR_NOT_ENOUGH_MEMORY),

      ZD_FAILING(CreateWindowExW, nullptr),
      ZD_FAILING(DialogBoxParamW, -1),
      ZD_FAILING(MessageBoxW, 0),
      ZD_FAILING(SetPropW, FALSE),
      ZD_FAILING(RegisterWindowMessageW, 0),
      ZD_FAILING(InitCommonControlsEx, FALSE),
      ZD_FAILING(BeginDeferWindowPos, nullptr),
      ZD_FAILING(DeferWindowPos, nullptr),
      ZD_FAILING(EndDeferWindowPos, FALSE),
      ZD_FAILING(GetWindowPlacement, FALSE),
      ZD_FAILING(SetWindowPlacement, FALSE),
      ZD_FAILING(GetMonitorInfoW, FALSE),

      ZD_FAILING(CreateBitmap, nullptr),
      ZD_FAILING(CreateCompatibleBitmap, nullptr),
      ZD_FAILING(CreateCompatibleDC, nullptr),
      ZD_FAILING(CreateFontIndirectW, nullptr),
      ZD_FAILING(CreatePolygonRgn, nullptr),
      ZD_FAILING(CreateRectRgn, nullptr),
      ZD_FAILING(CreateRectRgnIndirect, nullptr),
      ZD_FAILING(GetDC, nullptr),
      ZD_FAILING(BeginPaint, nullptr),
      ZD_FAILING(BitBlt, FALSE),
      ZD_FAILING(CombineRgn, ERROR),
      ZD_FAILING(ExtSelectClipRgn, ERROR),
      ZD_FAILING(GetClipRgn, -1),
      ZD_FAILING(GetObjectW, 0),
      ZD_FAILING(GetWindowRgn, ERROR),
      ZD_FAILING(OffsetRgn, ERROR),
      ZD_FAILING(SelectObject, nullptr),
      ZD_FAILING(SetWindowRgn, FALSE),

      ZD_FAILING(GetModuleFileNameW, 0),
      ZD_FAILING(GetModuleHandleExW, FALSE),
      ZD_FAILING(GetModuleHandleW, nullptr),
      ZD_FAILING(GetProcAddress, nullptr),
      ZD_FAILING(LoadLibraryA, nullptr),
      ZD_FAILING(LoadLibraryW, nullptr),
      ZD_FAILING(FindResourceW, nullptr),
      ZD_FAILING(LoadResource, nullptr),
      ZD_FAILING(LockResource, nullptr),
      ZD_FAILING(SizeofResource, 0),
      ZD_FAILING(MultiByteToWideChar, 0),
      ZD_FAILING(LoadStringW, 0),
      ZD_FAILING(GetFileVersionInfoSizeW, 0),
      ZD_FAILING(GetFileVersionInfoW, FALSE),
      ZD_FAILING(VerQueryValueW, FALSE),

      ZD_FAILING(CoCreateInstance, no_class),
      ZD_FAILING(OleRun, no_class),
      ZD_FAILING(LoadRegTypeLib, TYPE_E_LIBNOTREGISTERED),
      ZD_FAILING(LoadTypeLibEx, TYPE_E_CANTLOADLIBRARY),
      ZD_FAILING(InitializeCriticalSectionAndSpinCount, FALSE),
      ZD_FAILING(OpenEventW, nullptr),
  };
  return all;
}

}  // namespace

FailingSystem::FailingSystem(HMODULE module) {
  arm(0);
  replace_imports(module, failing_functions(), patches_);
}

FailingSystem::~FailingSystem() { clear_faults(); }

void FailingSystem::arm(std::size_t number, FaultDuration duration) {
  recorded.clear();
  failures.clear();
  counter.arm(number, duration);
}

void FailingSystem::clear_faults() { counter.clear_faults(); }

const std::vector<std::string>& FailingSystem::calls() const { return recorded; }

const std::set<std::string>& FailingSystem::failed() const { return failures; }

std::set<std::string> FailingSystem::functions() {
  std::set<std::string> names;
  for (const ReplacedFunction& function : failing_functions()) names.insert(function.name);
  return names;
}

}  // namespace test_support
