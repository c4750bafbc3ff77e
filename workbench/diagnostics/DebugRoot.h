#pragma once

#include <string_view>

#include "DispatchObject.h"
#include "Journal.h"
#include "SnagtrapUtil.h"

namespace snagtrap {

/// The root object of one client: carries out command words. Clients serialise their calls; several clients of one
/// process may call at the same time, each on a root of its own.
class DebugRoot final : public workbench::DispatchObject<IKV_SnagtrapUtil::IDebugRoot> {
 public:
  /// Accepts everything: what the log says about a process it knows from the system.
  HRESULT STDMETHODCALLTYPE Configure(BSTR text, BSTR number, long flag) noexcept override;

  /// Words and answers:
  ///   CREATE         makes a record; E_POINTER without a place to put it
  ///   INIT           takes the program's wish for a log folder and logs the start
  ///   FILTER         S_FALSE when the record's place is always ignored, so that PROCESS stays silent; else S_OK
  ///   PROCESS        logs the record; 1 to debug, E_ABORT to end the process, S_OK to go on, or why it is not logged.
  ///                  Asks the user only in interactive mode, about assertions and errors, never about traces, and
  ///                  never while another report of the process is on the screen
  ///   DEINIT, TERMINATE   log the end
  ///   IS CLEAN       S_OK while the process has reported no assertion and no error, S_FALSE afterwards
  ///   DO CLEAN       makes it clean again and puts the log aside
  ///   REPORTDIALOG   shows the newest lines of the log; S_FALSE in silent mode
  ///   TRACEENABLED   S_OK when traces are logged, else S_FALSE
  /// E_INVALIDARG for any other word, for a missing record and for one that another library made.
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
