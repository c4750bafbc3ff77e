#pragma once

#include <cstddef>
#include <span>

namespace zd_expiration_rule_plugin {

/// Shares a width, in pixels, among columns: each gets its fraction of the whole, truncated toward zero, and the last
/// one what is left. Calls `set(column, width)` for each in order.
template <class Set>
void share_width(int whole, std::span<const double> fractions, const Set& set) {
  int remaining = whole;
  for (std::size_t column = 0; column < fractions.size(); ++column) {
    const bool is_last = column + 1 == fractions.size();
    const int width = is_last ? remaining : static_cast<int>(whole * fractions[column]);
    set(column, width);
    remaining -= width;
  }
}

}  // namespace zd_expiration_rule_plugin
