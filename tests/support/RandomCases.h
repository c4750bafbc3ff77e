#pragma once

#include <climits>
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
  /// For the algorithms of the standard library.
  std::mt19937& generator() { return random_; }

  /// Any 32-bit number, with many from both ends of the range and from around 0.
  long number() {
    static constexpr long extremes[] = {LONG_MIN, LONG_MIN + 1, -1, 0, 1, LONG_MAX - 1, LONG_MAX};
    return below(4) ? extremes[below(7)] : static_cast<long>(bits());
  }

  /// Up to `longest` UTF-16 units of any value, with many that programs often mistake.
  std::wstring text(unsigned longest) {
    static const std::wstring odd[] = {
        L"%s", L"%n",   L"%1!s!",  L"%",      L"{}",     L"''",           L"\"", L"&",
        L"\\", L"\r\n", L"\xD800", L"\xDFFF", L"\xFFFF", L"\xD83D\xDE00", L" ",  std::wstring(1, L'\0')};
    const std::size_t length = below(longest + 1);
    std::wstring text;
    while (text.size() < length) {
      if (below(2)) {
        text += odd[below(std::size(odd))];
      } else {
        text += static_cast<wchar_t>(below(0x10000));
      }
    }
    text.resize(length);
    return text;
  }

  /// Up to `longest` UTF-16 units, half of them surrogates or close to one in value.
  std::wstring text_of_surrogates(unsigned longest) {
    std::wstring text(below(longest + 1), L'\0');
    for (wchar_t& unit : text) unit = static_cast<wchar_t>(below(2) ? 0xD700 + below(0xA00) : below(0x10000));
    return text;
  }

  /// Gives 1 to `most` of the units of a text or a row of bytes other values, many of them extremes.
  template <class Units>
  void damage(Units& units, unsigned most) {
    using Unit = typename Units::value_type;
    static constexpr unsigned extremes[] = {0, 1, 0x7F, 0x80, 0xFF};
    for (unsigned left = 1 + below(most); left > 0; --left) {
      units[below(static_cast<unsigned>(units.size()))] = static_cast<Unit>(below(2) ? extremes[below(5)] : random_());
    }
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
