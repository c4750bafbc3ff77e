#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "ClassObject.h"
#include "ComPtr.h"
#include "DispatchObject.h"
#include "HostRules.h"
#include "RuleStream.h"
#include "zdExpirationRules_h.h"

using workbench::com_method;
using workbench::DispatchObject;

namespace {

/// The test does not wait for a stream that has ended.
[[noreturn]] void end_program(const char* reason, HRESULT result) noexcept {
  std::fprintf(stderr, "rule_stream: %s, 0x%08lX\n", reason, static_cast<unsigned long>(result));
  std::fflush(stderr);
  TerminateProcess(GetCurrentProcess(), EXIT_FAILURE);
  std::abort();
}

/// Writes a line to the test. The line has left the process when this returns.
void write_output(const std::string& line) noexcept {
  DWORD written = 0;
  const BOOL is_written =
      WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  if (!is_written || written != line.size())
    end_program("the test does not read the output", HRESULT_FROM_WIN32(GetLastError()));
}

unsigned first_change() {
  wchar_t number[16] = L"";
  GetEnvironmentVariableW(first_change_variable, number, ARRAYSIZE(number));
  return static_cast<unsigned>(std::wcstoul(number, nullptr, 10));
}

/// Changes the host's rules from its message loop, one change at a time, so that the host runs on in between.
class StreamPlugin final : public DispatchObject<IkvPlugin> {
 public:
  HRESULT STDMETHODCALLTYPE Initialize(IDispatch*, IDispatch*, IDispatch*, IDispatch*, BSTR,
                                       IDispatch* storage) noexcept override {
    return com_method([&] {
      rules_ = std::make_unique<HostRules>(storage);
      next_ = first_change();
      current_ = this;
      timer_ = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &on_timer);
      return timer_ ? S_OK : E_FAIL;
    });
  }

  HRESULT STDMETHODCALLTYPE Uninitialize() noexcept override {
    KillTimer(nullptr, timer_);
    rules_.reset();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE OnSelectionChanged(IDispatch*) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DoCommand(long, VARIANT) noexcept override { return E_INVALIDARG; }

 private:
  static void CALLBACK on_timer(HWND, UINT, UINT_PTR, DWORD) noexcept {
    const HRESULT result = com_method([] {
      current_->make_next_change();
      return S_OK;
    });
    if (FAILED(result)) end_program("the host refused a change", result);
  }

  void make_next_change() {
    const StreamChange change = choose_change(rules_->load(), next_);
    write_output(std::to_string(next_) + "?\n");
    rules_->apply(change);
    write_output(std::to_string(next_) + "\n");
    ++next_;
  }

  static inline StreamPlugin* current_ = nullptr;

  std::unique_ptr<HostRules> rules_;
  unsigned next_ = 0;
  UINT_PTR timer_ = 0;
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** object) {
  if (class_id != __uuidof(CzdExpirationRulePlugin)) return CLASS_E_CLASSNOTAVAILABLE;
  return com_method([&] {
    const base::ComPtr<IClassFactory> factory(
        new workbench::ClassObject([] { return static_cast<IkvPlugin*>(new StreamPlugin); }), false);
    return factory->QueryInterface(iid, object);
  });
}

STDAPI DllCanUnloadNow() { return workbench::live_dispatch_objects == 0 ? S_OK : S_FALSE; }
