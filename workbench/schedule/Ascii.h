#pragma once

namespace workbench::schedule {

// Of ASCII only, whatever the locale: what files and users write of names that this program gives.

constexpr bool is_ascii_digit(char unit) { return unit >= '0' && unit <= '9'; }
constexpr bool is_ascii_letter(char unit) { return (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z'); }

constexpr char to_ascii_lower(char unit) {
  return unit >= 'A' && unit <= 'Z' ? static_cast<char>(unit - 'A' + 'a') : unit;
}
constexpr char to_ascii_upper(char unit) {
  return unit >= 'a' && unit <= 'z' ? static_cast<char>(unit - 'a' + 'A') : unit;
}

}  // namespace workbench::schedule
