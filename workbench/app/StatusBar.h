#pragma once

#include <windows.h>

#include <string>

namespace workbench {

/// The frame's status bar: a message, the number of rules and the store. The window belongs to the parent.
class StatusBar {
 public:
  StatusBar(HWND parent, UINT id);
  StatusBar(const StatusBar&) = delete;
  StatusBar& operator=(const StatusBar&) = delete;

  HWND handle() const noexcept { return handle_; }

  void use_font(HFONT font);
  /// Puts the bar at the parent's lower edge after the parent's size changed.
  void follow_parent(int width, int dpi);
  int height() const;

  void show_message(const std::wstring& message);
  void show_rule_count(size_t count);
  void show_store(const std::wstring& path);
  /// Shows a hint instead of the message while a menu is open; an empty one shows the message again.
  void show_hint(const std::wstring& hint);

 private:
  void set_part(int part, const std::wstring& value);

  HWND handle_;
  std::wstring message_;
};

}  // namespace workbench
