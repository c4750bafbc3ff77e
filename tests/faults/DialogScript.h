#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "DialogVisitor.h"
#include "HostState.h"

namespace faults_test {

/// What somebody does in the editor.
struct Entry {
  std::wstring shown;            ///< the name that the editor must show; otherwise it shows another rule and is left
  test_support::HostRule rule;   ///< what is entered, field by field
  std::wstring second_name;      ///< the name that is tried when the first one is refused; empty to give up then
  std::function<void()> before;  ///< called before the first OK
};

/// Somebody who works carefully with the module's dialogs. He closes what he did not expect, confirms nothing that does
/// not say what it is about, and leaves no choice of the editor as he found it.
class DialogScript {
 public:
  /// One step at the rule list; when there is none left, he closes the list.
  using Step = std::function<void(HWND list)>;

  explicit DialogScript(std::vector<Step> steps, Entry entry = {}, std::wstring rule_to_delete = {});

  int lists() const { return lists_; }
  int editors() const { return editors_; }
  int questions() const { return questions_; }
  int warnings() const { return warnings_; }

 private:
  void visit(HWND dialog, int number);
  void visit_list(HWND list, int number);
  void visit_editor(HWND editor, int number);
  void visit_box(HWND box, int number);
  void enter(HWND editor) const;

  std::vector<Step> steps_;
  std::size_t next_step_ = 0;
  Entry entry_;
  std::wstring rule_to_delete_;
  int lists_ = 0;
  int editors_ = 0;
  int questions_ = 0;
  int warnings_ = 0;
  DialogVisitor visitor_;
};

/// What pressing a button tells its dialog.
void press(HWND dialog, int button);

/// How many rules the list shows.
int shown_rules(HWND list);

/// Selects the rule with this number; a list that does not show it is left alone.
void select_rule(HWND list, long rule_id);

}  // namespace faults_test
