#include "EditorTest.h"

namespace editor_test {
namespace {

enum class SpinHalf { up, down };

void click_spin(HWND spin, SpinHalf half, int times) {
  RECT area = {};
  GetClientRect(spin, &area);
  const LONG quarter = area.bottom / 4;
  test_support::click(spin, {area.right / 2, half == SpinHalf::up ? quarter : area.bottom - quarter}, times);
}

}  // namespace

void Editor::enter(int edit, const std::wstring& text) const {
  SetFocus(item(edit));
  SendDlgItemMessageW(window_, edit, EM_SETSEL, 0, -1);
  if (text.empty()) {
    test_support::press(VK_DELETE);
  } else {
    test_support::type(text);
  }
}

void Editor::spin_up(int times) const { click_spin(item(IDC_OFFSET_SPIN), SpinHalf::up, times); }

void Editor::spin_down(int times) const { click_spin(item(IDC_OFFSET_SPIN), SpinHalf::down, times); }

test_support::MessageBoxContent Editor::refused_ok() const {
  return test_support::with_message_box([&] { ok(); });
}

bool Editor::handles(UINT message, WPARAM wParam, LPARAM lParam) const {
  LRESULT result = -1;
  const bool handled = dialog_.ProcessWindowMessage(window_, message, wParam, lParam, result) != FALSE;
  EXPECT_EQ(handled ? 0 : -1, handled ? result : -1);
  return handled;
}

bool Editor::handles_command(int id, int notification) const {
  return handles(WM_COMMAND, MAKEWPARAM(id, notification), reinterpret_cast<LPARAM>(item(id)));
}

EditorTest::EditorTest() {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_UPDOWN_CLASS};
  InitCommonControlsEx(&controls);
  const base::ComPtr<IDispatch> object = host.storage();
  block.storage = base::query<IkvStorage>(object);
  block.symbol_sources = base::query<IkvSymbolSourceService>(object);
  block.rules = base::query<IkvExpirationRuleService>(object);
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
                            });
  return result;
}

void EditorTest::save_unchanged(long rule_id) {
  EXPECT_EQ(IDOK, edit(rule_id, [](Editor& editor) { editor.ok(); }));
}

}  // namespace editor_test
