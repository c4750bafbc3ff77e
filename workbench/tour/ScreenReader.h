#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tour {

/// One line of what is on the screen: values that a tab separates when they are written.
using Line = std::vector<std::wstring>;

/// The visible top-level windows, the foremost first: title, class, x, y, width, height, "enabled" or "disabled".
std::vector<Line> read_windows();

/// The visible child windows of every visible top-level window with this title: identifier, class, x, y, width,
/// height, state, text. The state joins words with commas: "enabled" or "disabled", "checked", "focused".
std::vector<Line> read_controls(const std::wstring& title);

/// The rows of the list view with this identifier in a window with this title: x, y, width, height, state, cells. The
/// state joins words with commas: "selected", "focused"; "-" stands for none.
std::vector<Line> read_rows(const std::wstring& title, int id);

/// The parts of the status bar with this identifier in a window with this title, one line each.
std::vector<Line> read_parts(const std::wstring& title, int id);

}  // namespace tour
