#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace editor_test {

/// A control as a dialog template describes it. The class is a name, also for the classes that templates number.
struct TemplateControl {
  int id = 0;
  std::wstring kind;
  DWORD style = 0;
  RECT place = {};  ///< in dialog units
  std::wstring text;
};

/// An extended dialog template of this module.
struct DialogTemplate {
  DWORD style = 0;
  SIZE size = {};  ///< in dialog units
  std::wstring caption;
  std::wstring font;
  int font_size = 0;  ///< in points
  std::vector<TemplateControl> controls;
};

/// Reads the dialog resource with this identifier. Throws `std::runtime_error` when there is no extended template.
DialogTemplate read_dialog_template(int id);

}  // namespace editor_test
