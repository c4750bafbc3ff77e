#pragma once

#include <comdef.h>

#include <ostream>
#include <stdexcept>
#include <string>

namespace test_support {

/// An exception that a test raises inside the module, and what is reported of it.
struct RaisedException {
  const char* name;
  void (*raise)();
  const char* description;  ///< the text of an error
  const char* trace;        ///< the text of a trace up to the location
  HRESULT hresult;          ///< the HRESULT that stands for it
};

/// One of each kind that reports distinguish.
inline constexpr RaisedException raised_exceptions[] = {
    {"ComError", [] { throw _com_error(E_ACCESSDENIED); }, "", "HRESULT - 80070005", E_ACCESSDENIED},
    {"OutOfRange", [] { throw std::out_of_range("no such value"); }, " (stdexcept: \"no such value\")",
     "std::out_of_range - no such value", E_INVALIDARG},
    {"StandardException", [] { throw std::runtime_error("broken"); }, " (stdexcept: \"broken\")",
     "std::exception - broken", E_UNEXPECTED},
    {"AnythingElse", [] { throw 42; }, "", "unknown exception", E_UNEXPECTED},
};

/// The trace of an exception that was caught at this location, as `reports` writes it.
inline std::string traced(const RaisedException& exception, const std::string& file, int line,
                          const std::string& function) {
  const std::string number = std::to_string(line);
  return std::string("TRACE ") + exception.trace + "; FILE - " + file + ", LINE - " + number + " | " + file + ':' +
         number + ' ' + function;
}

/// The error of an exception that was caught at this location, as `reports` writes it.
inline std::string caught_error(const RaisedException& exception, const std::string& file, int line,
                                const std::string& function) {
  return std::string("CREATE ERROR ") + exception.description + " | " + file + ':' + std::to_string(line) + ' ' +
         function;
}

inline void PrintTo(const RaisedException& exception, std::ostream* out) { *out << exception.name; }

}  // namespace test_support
