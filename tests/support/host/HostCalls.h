#pragma once

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "DispatchObject.h"

namespace test_support {

/// What a host call does instead of its work.
struct Fault {
  enum class Out {
    untouched,  ///< the out parameter keeps what the caller put there
    null,       ///< it becomes null or 0
    given,      ///< the work is done all the same, and only the result is another
    number,     ///< it becomes `number`, if it is a number
  };
  HRESULT result = E_FAIL;
  Out out = Out::untouched;
  bool lasting = false;  ///< for `fail_number`: every later call fails so too, as when the host has ended
  long number = 0;
};

/// An argument of a host call as the record of calls shows it: a number, a text in quotes, an object as "object", a
/// word as it is.
using HostArgument = std::variant<long, const wchar_t*, IUnknown*, const char*>;

/// Every call of a proxy of the host passes through here: it is recorded as text, as in
/// `IkvTable::AddField(1025, 0, 0, 0)`, and can fail on demand.
class HostCalls {
 public:
  /// Runs one call: records it and returns what `body` returns, or what the fault says that is planned for it. `out` is
  /// the call's out parameter. An exception of `body` becomes an HRESULT.
  template <class Out, class Body>
  HRESULT call(const char* name, std::initializer_list<HostArgument> arguments, Out* out, const Body& body) noexcept {
    return workbench::com_method([&] {
      const std::optional<Fault> fault = record(name, arguments);
      if (!fault) return body();
      if (fault->out == Fault::Out::given) body();
      if (fault->out == Fault::Out::null && out) *out = {};
      if constexpr (std::is_same_v<Out, long>) {
        if (fault->out == Fault::Out::number) *out = fault->number;
      }
      return fault->result;
    });
  }
  template <class Body>
  HRESULT call(const char* name, std::initializer_list<HostArgument> arguments, const Body& body) noexcept {
    return call(name, arguments, static_cast<long*>(nullptr), body);
  }
  template <class Body>
  HRESULT call(const char* name, const Body& body) noexcept {
    return call(name, {}, body);
  }

  /// Runs `act` inside the next call that matches `pattern`, before that call does its work, as if the host dispatched
  /// messages.
  void inside(const std::string& pattern, std::function<void()> act) { acts_.push_back({pattern, std::move(act)}); }

  /// Every call so far, in order.
  const std::vector<std::string>& all() const noexcept { return calls_; }
  /// The calls that start with `prefix`, for example those of one interface.
  std::vector<std::string> all(const std::string& prefix) const;

  /// Plans a fault for the `nth` call from now on that matches `pattern`: its name alone, or its text with arguments.
  void fail(const std::string& pattern, const Fault& fault = {}, long nth = 1);
  /// Plans a fault for every call that matches.
  void fail_all(const std::string& pattern, const Fault& fault = {});
  /// The calls that did something else than their work, in order.
  const std::vector<std::string>& faulted_calls() const noexcept { return faulted_calls_; }

  /// Plans a fault for the call that is the `number`th of all, counted from 1.
  void fail_number(std::size_t number, const Fault& fault);
  /// Drops all planned faults.
  void clear_faults() noexcept { planned_.clear(); }
  /// Forgets the recorded calls and starts to count anew.
  void forget() noexcept {
    calls_.clear();
    faulted_calls_.clear();
  }

 private:
  struct Planned {
    std::string pattern;    ///< empty for "any call"
    std::size_t countdown;  ///< fails the call when it is 0
    bool every;             ///< fails every later call too
    Fault fault;
  };

  struct Act {
    std::string pattern;
    std::function<void()> act;
  };

  std::optional<Fault> record(const char* name, std::initializer_list<HostArgument> arguments);
  void act(const std::string& name, const std::string& text);
  std::optional<Fault> take_fault(const std::string& name, const std::string& text);

  std::vector<std::string> calls_;
  std::vector<std::string> faulted_calls_;
  std::vector<Planned> planned_;
  std::vector<Act> acts_;
};

}  // namespace test_support
