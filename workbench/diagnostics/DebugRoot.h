#pragma once

#include <string_view>

#include "DispatchObject.h"
#include "Journal.h"
#include "SnagtrapUtil.h"

namespace snagtrap {

/// The root object of one client: runs its commands. Clients serialise their calls; several clients of one process may
/// call at the same time, each on its own root.
class DebugRoot final : public workbench::DispatchObject<IKV_SnagtrapUtil::IDebugRoot> {
 public:
  /// Accepts and ignores every argument: the log takes what it says about a process from the system.
  HRESULT STDMETHODCALLTYPE Configure(BSTR text, BSTR number, long flag) noexcept override;

  /// The commands and their results:
  ///   CREATE         creates a record; E_POINTER without an out parameter
  ///   INIT           takes the log folder that the program proposes and logs the start
  ///   FILTER         S_FALSE when the record's location is always ignored and PROCESS will not ask; else S_OK
  ///   PROCESS        logs the record; 1 to debug, E_ABORT to end the process, S_OK to go on, or the log's failure.
  ///                  Asks the user only in interactive mode, about assertions and errors, never about traces, and
  ///                  never while another report of the process is on the screen
  ///   DEINIT, TERMINATE   log the end
  ///   IS CLEAN       S_OK while the process has reported no assertion and no error, S_FALSE afterwards
  ///   DO CLEAN       resets that state and rotates the log
  ///   REPORTDIALOG   shows the newest lines of the log; S_FALSE in silent mode
  ///   TRACEENABLED   S_OK when traces are logged, else S_FALSE
  /// E_INVALIDARG for any other word, for a missing record and for one that another library created.
  HRESULT STDMETHODCALLTYPE Command(BSTR word, IKV_SnagtrapUtil::IDebugObject* record,
                                    IKV_SnagtrapUtil::IDebugObject** created) noexcept override;

 private:
  HRESULT run(std::wstring_view word, Record* record);
  HRESULT start(const Record& record);
  HRESULT process(Record& record);
  HRESULT clean();
  HRESULT show_recent() const;

  Journal journal_;
};

}  // namespace snagtrap
