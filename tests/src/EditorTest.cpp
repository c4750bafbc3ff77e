#include "EditorTest.h"

namespace editor_test {

bool Editor::handles(UINT message, WPARAM wParam, LPARAM lParam) const {
  LRESULT result = -1;
  const bool handled = dialog_.ProcessWindowMessage(window(), message, wParam, lParam, result) != FALSE;
  EXPECT_EQ(handled ? 0 : -1, handled ? result : -1);
  return handled;
}

bool Editor::handles_command(int id, int notification) const {
  return handles(WM_COMMAND, MAKEWPARAM(id, notification), reinterpret_cast<LPARAM>(item(id)));
}

std::wstring sentence(const std::wstring& offset, const std::wstring& day_type, const std::wstring& day,
                      const std::wstring& direction) {
  return L"合约换月于指定日前 " + offset + L" " + day_type + L"  指定日为" + day + L" 或者 " + direction + L" 交易日";
}

EditorTest::EditorTest() {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_UPDOWN_CLASS};
  InitCommonControlsEx(&controls);
  host.rules().push_back({stored_id, L"IF"});
}

EditorTest::~EditorTest() {
  block = {};
  EXPECT_THAT(host.living(), testing::IsEmpty());
}

INT_PTR EditorTest::edit(long rule_id, const std::function<void(Editor&)>& act) {
  CEditExpirationRuleDialog dialog(&block, rule_id);
  INT_PTR result = 0;
  test_support::with_dialog([&] { result = dialog.DoModal(nullptr); },
                            [&](HWND window) {
                              Editor editor(window, dialog);
                              act(editor);
                              if (IsWindowVisible(window)) editor.cancel();
                            });
  return result;
}

void EditorTest::save_unchanged(long rule_id) {
  EXPECT_EQ(IDOK, edit(rule_id, [](Editor& editor) { editor.ok(); }));
}

}  // namespace editor_test
