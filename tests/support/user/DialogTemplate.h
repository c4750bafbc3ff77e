#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace test_support {

/// A control as a dialog template describes it. The class is a name, also for the classes that templates number.
struct TemplateControl {
  int id = 0;
  std::wstring kind;
  DWORD style = 0;
  RECT rect = {};  ///< in dialog units
  std::wstring text;

  friend bool operator==(const TemplateControl& left, const TemplateControl& right) {
    return left.id == right.id && left.kind == right.kind && left.style == right.style &&
           EqualRect(&left.rect, &right.rect) && left.text == right.text;
  }
  friend void PrintTo(const TemplateControl& control, std::ostream* out) {
    *out << control.id << ' ' << testing::PrintToString(control.kind) << " style " << std::hex << control.style
         << std::dec << " at (" << control.rect.left << ", " << control.rect.top << ")-(" << control.rect.right << ", "
         << control.rect.bottom << ") " << testing::PrintToString(control.text);
  }
};

/// An extended dialog template of this module.
struct DialogTemplate {
  DWORD style = 0;
  DWORD ex_style = 0;
  SIZE size = {};  ///< in dialog units
  std::wstring caption;
  std::wstring font;
  int font_size = 0;  ///< in points
  std::vector<TemplateControl> controls;
};

/// Reads the dialog resource with this identifier. Throws `std::runtime_error` when there is no extended template.
DialogTemplate read_dialog_template(int id);

}  // namespace test_support
