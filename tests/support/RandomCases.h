#pragma once

#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

namespace test_support {

/// Random input that can be played again: the seed comes from the environment variable ZD_SEED, else it is new; it is
/// printed, and named by `trace` for a case that fails.
class RandomCases {
 public:
  RandomCases() : seed_(seed_of_run()), random_(seed_) { std::cout << "ZD_SEED=" << seed_ << '\n'; }

  /// From 0 to `end` - 1.
  unsigned below(unsigned end) { return random_() % end; }
  std::uint_fast32_t bits() { return random_(); }

  /// Up to `longest` UTF-16 units of any value, with many that tend to be taken for something else.
  std::wstring text(unsigned longest) {
    static const std::wstring odd(L"\0%sn{}'=*\xD800\xDFFF\xFFFF A", 15);
    std::wstring text(below(longest + 1), L' ');
    for (wchar_t& unit : text) unit = below(2) ? odd[below(15)] : static_cast<wchar_t>(below(0x10000));
    return text;
  }

  std::string trace(int number) const { return "ZD_SEED=" + std::to_string(seed_) + " case " + std::to_string(number); }

 private:
  static unsigned seed_of_run() {
    const char* text = std::getenv("ZD_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
  }

  unsigned seed_;
  std::mt19937 random_;
};

}  // namespace test_support
