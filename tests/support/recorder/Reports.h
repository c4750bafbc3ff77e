#pragma once

#include <windows.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace test_support {

/// An assertion as support staff see it.
struct Assertion {
  std::wstring file;
  int line = 0;
  std::wstring text;
  std::wstring hresult;  ///< decimal; empty when it carries none
  std::wstring function;

  friend bool operator==(const Assertion&, const Assertion&) = default;
};

void PrintTo(const Assertion& assertion, std::ostream* out);

/// The assertions that were reported since the last call, or since the test began. A test after which some are left
/// fails: whoever links this says which reports he expects.
std::vector<Assertion> take_assertions();

}  // namespace test_support
