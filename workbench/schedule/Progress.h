#pragma once

#include <cstddef>
#include <functional>

namespace workbench::schedule {

/// Called by long work with the amount that is done and the whole amount; returns false to cancel the work.
using Progress = std::function<bool(std::size_t done, std::size_t all)>;

/// Thrown out of a long work that the user cancels.
struct Cancelled {};

/// Reports how much is done. Throws `Cancelled` if `progress` returns false.
inline void advance(const Progress& progress, std::size_t done, std::size_t all) {
  if (progress && !progress(done, all)) throw Cancelled();
}

/// The progress of a part that leads from `first` to `last` hundredths of the whole work.
inline Progress part_of(const Progress& whole, std::size_t first, std::size_t last) {
  if (!whole) return {};
  return [=](std::size_t done, std::size_t all) { return whole(first * all + (last - first) * done, 100 * all); };
}

}  // namespace workbench::schedule
