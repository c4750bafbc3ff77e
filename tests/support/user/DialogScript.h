#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "DialogDriver.h"
#include "HostRule.h"

namespace test_support {

/// What the user does in the editor.
struct Entry {
  std::wstring shown;        ///< the name that the editor must show; otherwise it shows another rule and is cancelled
  HostRule rule;             ///< what is entered, field by field
  std::wstring second_name;  ///< the name that is tried when the first one is refused; empty to give up then
  std::function<void()> before;  ///< called before the first OK
};

/// A user who checks what the module's dialogs show, also while they fail: closes unexpected dialogs, confirms only
/// questions that name the rule, and changes every field of the editor.
class DialogScript {
 public:
  /// One step at the rule list; when there is none left, the list is closed.
  using Step = std::function<void(HWND list)>;

  /// `at_box` is called at each message box before that is closed.
  explicit DialogScript(std::vector<Step> steps, Entry entry = {}, std::wstring rule_to_delete = {},
                        std::function<void()> at_box = {});

  int lists() const { return lists_; }
  int editors() const { return editors_; }
  int questions() const { return questions_; }
  int warnings() const { return warnings_; }

 private:
  void visit(HWND dialog, int number);
  void visit_list(HWND list, int number);
  void visit_editor(HWND editor, int number);
  void visit_box(HWND box, int number);

  std::vector<Step> steps_;
  std::size_t next_step_ = 0;
  Entry entry_;
  std::wstring rule_to_delete_;
  std::function<void()> at_box_;
  int lists_ = 0;
  int editors_ = 0;
  int questions_ = 0;
  int warnings_ = 0;
  DialogDriver driver_;
};

bool is_rule_list(HWND dialog);
bool is_rule_editor(HWND dialog);

}  // namespace test_support
