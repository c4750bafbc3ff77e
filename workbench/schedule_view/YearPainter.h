#pragma once

#include <windows.h>

#include <array>
#include <map>
#include <string>

#include "YearGeometry.h"
#include "YearMarks.h"

namespace workbench {

/// The words of a year at a glance.
struct YearTexts {
  std::array<std::wstring, 7> weekdays{};  ///< from Monday, one or two letters
  std::wstring expiration{};
  std::wstring roll{};
  std::wstring closed{};
  std::wstring estimate{};
  std::wstring before{};  ///< of the days before a change; empty when no change is shown
};

/// What is drawn: the twelve months from `first` on.
struct YearPicture {
  schedule::Month first{};
  std::map<schedule::Day, Marks> marks{};
  YearTexts texts{};
};

/// Draws a year into an area with its upper left corner at 0, 0, in the colours of the system and with digits that fit
/// the layout. Marks differ in shape: an expiration is a ring, a roll a filled triangle in a box, a day before a change
/// a dotted outline, an estimate dashed, a holiday crossed out.
void paint_year(HDC dc, const YearLayout& layout, const YearPicture& picture, SIZE area);

}  // namespace workbench
