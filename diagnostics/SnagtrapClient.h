#pragma once

#include <windows.h>

#include <atomic>

#include "ComPtr.h"
#include "SnagtrapUtil.h"

namespace SnagtrapUtil {

/// The exit code of a process that a report ends.
inline constexpr UINT aborted_exit_code = static_cast<UINT>(-1);

/// Finds, loads and initialises the diagnostics library. Every operation may be called from any thread; one critical
/// section serialises initialisation, shutdown and commands.
class SnagtrapInitializer {
 public:
  SnagtrapInitializer(const SnagtrapInitializer&) = delete;
  SnagtrapInitializer& operator=(const SnagtrapInitializer&) = delete;

  /// Initialises the library unless that was tried before. Returns whether it is initialised.
  bool ensure_initialised() noexcept;

  bool initialised() const noexcept { return initialised_; }

  /// Sends one command word. A null `created` drops what the library creates. Returns the library's HRESULT, or E_FAIL
  /// when no library is loaded.
  HRESULT command(const wchar_t* word, IKV_SnagtrapUtil::IDebugObject* record = nullptr,
                  IKV_SnagtrapUtil::IDebugObject** created = nullptr) noexcept;

  /// Sends "DEINIT" and releases the library's root object, when it is initialised.
  void shutdown() noexcept;

 protected:
  /// Throws the failure as an HRESULT value when the critical section cannot be created.
  SnagtrapInitializer();
  ~SnagtrapInitializer();

  /// Loads the library and obtains its root object. Any failure returns E_FAIL.
  virtual HRESULT load_library() noexcept;
  /// Sends "INIT" and configures the root object.
  virtual HRESULT initialise() noexcept;

 private:
  bool read_report_failure() noexcept;

  CRITICAL_SECTION section_;
  base::ComPtr<IKV_SnagtrapUtil::IDebugRoot> root_;
  bool attempted_ = false;
  std::atomic<bool> initialised_ = false;  ///< read outside the critical section too
  bool report_failure_ = false;
};

/// The process-wide client of the diagnostics library.
class SnagtrapClient final : public SnagtrapInitializer {
 public:
  SnagtrapClient() = default;
  ~SnagtrapClient() = default;

  /// Sends "TERMINATE", then ends the process with exit code -1.
  [[noreturn]] virtual void terminate() noexcept;
  /// Each of these sends the command word of its name and returns the library's HRESULT.
  virtual HRESULT is_clean() noexcept;
  virtual HRESULT do_clean() noexcept;
  virtual HRESULT report_dialog() noexcept;
  virtual HRESULT trace_enabled() noexcept;
};

/// The one client of the process, created on first use and destroyed when the module unloads. Does not initialise it.
/// Every access waits without limit while the global named event of the diagnostics library exists and is not set.
/// Throws an HRESULT value when the client cannot be created.
SnagtrapClient& snagtrap_client();

}  // namespace SnagtrapUtil
