#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>

namespace native_test {

/// Ends the program, which the fuzzer reports with the input, unless this holds.
inline void expect(bool holds) {
  if (!holds) std::abort();
}

/// The bytes of one run, taken from the front; zeros follow their end.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : left_(data, size) {}

  /// A value of any bytes. Flags are true for odd bytes.
  template <class Value>
  Value take() {
    Value value{};
    const std::size_t size = std::min(sizeof value, left_.size());
    if (size > 0) std::memcpy(static_cast<void*>(&value), left_.data(), size);
    left_ = left_.subspan(size);
    return value;
  }

  /// The next units of UTF-16, two bytes each; all that are left when there are fewer.
  std::wstring take_text(std::size_t units) {
    std::wstring text;
    for (; units > 0 && !left_.empty(); --units) text += static_cast<wchar_t>(take<std::uint16_t>());
    return text;
  }
  std::wstring take_text() { return take_text(left_.size()); }

  std::span<const std::uint8_t> left() const { return left_; }

 private:
  std::span<const std::uint8_t> left_;
};

template <>
inline bool Input::take<bool>() {
  return take<std::uint8_t>() % 2 != 0;
}

}  // namespace native_test
