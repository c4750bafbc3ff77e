#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>

#include <cstddef>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "ModulePath.h"
#include "resource.h"

namespace list_test {
namespace {

/// A control, or the dialog itself with id 0 and its caption as text.
struct Part {
  std::wstring text;
  std::wstring kind;
  DWORD id;
  DWORD style;
  short x, y, width, height;  ///< dialog units

  friend bool operator==(const Part&, const Part&) = default;
};

void PrintTo(const Part& part, std::ostream* out) {
  *out << testing::PrintToString(part.text) << ' ' << testing::PrintToString(part.kind) << " id " << part.id
       << " style " << std::hex << part.style << std::dec << " at (" << part.x << ", " << part.y << "), " << part.width
       << " x " << part.height;
}

struct Template {
  Part dialog;
  DWORD ex_style;
  WORD font_size;
  WORD font_weight;
  BYTE font_italic;
  std::wstring font;
  std::vector<Part> controls;
};

/// Reads a dialog template of the extended kind.
class Reader {
 public:
  explicit Reader(int dialog_id) {
    const HRSRC found = FindResourceW(base::module_instance(), MAKEINTRESOURCEW(dialog_id), RT_DIALOG);
    data_ = static_cast<const std::byte*>(LockResource(LoadResource(base::module_instance(), found)));
  }

  Template read() {
    Template made = {};
    EXPECT_EQ(1, value<WORD>());
    EXPECT_EQ(0xFFFF, value<WORD>());
    value<DWORD>();  // help
    made.ex_style = value<DWORD>();
    made.dialog.style = value<DWORD>();
    made.controls.resize(value<WORD>());
    place(made.dialog);
    EXPECT_EQ(L"", text()) << "menu";
    made.dialog.kind = text();
    made.dialog.text = text();
    made.font_size = value<WORD>();
    made.font_weight = value<WORD>();
    made.font_italic = value<BYTE>();
    value<BYTE>();  // character set
    made.font = text();
    for (Part& part : made.controls) part = control();
    return made;
  }

 private:
  template <class Value>
  Value value() {
    Value read = {};
    std::memcpy(&read, data_ + offset_, sizeof read);
    offset_ += sizeof read;
    return read;
  }

  /// A text, or the number of a system class as text.
  std::wstring text() {
    std::wstring read;
    for (wchar_t unit = value<WORD>(); unit != 0; unit = value<WORD>()) {
      if (unit == 0xFFFF) return L"#" + std::to_wstring(value<WORD>());
      read += unit;
    }
    return read;
  }

  void place(Part& part) {
    part.x = value<short>();
    part.y = value<short>();
    part.width = value<short>();
    part.height = value<short>();
  }

  Part control() {
    offset_ = (offset_ + 3) / 4 * 4;
    Part part = {};
    value<DWORD>();  // help
    EXPECT_EQ(0U, value<DWORD>()) << "extended style";
    part.style = value<DWORD>();
    place(part);
    part.id = value<DWORD>();
    part.kind = text();
    part.text = text();
    EXPECT_EQ(0, value<WORD>()) << "creation data";
    return part;
  }

  const std::byte* data_ = nullptr;
  std::size_t offset_ = 0;
};

/// The resource compiler writes the names of classes in capitals; the system does not mind.
constexpr wchar_t list_view[] = L"SYSLISTVIEW32";
constexpr wchar_t button[] = L"#128";
constexpr DWORD child = WS_CHILD | WS_VISIBLE;
constexpr DWORD push_button = child | WS_TABSTOP | BS_PUSHBUTTON;

TEST(ListTemplate, DialogHasItsCaptionSizeStyleAndFont) {
  const Template list = Reader(IDD_EXPIRATION_RULES_LIST).read();
  const DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | DS_CENTER | DS_SETFONT | DS_FIXEDSYS;
  EXPECT_EQ(list.dialog, (Part{L"到期规则", L"", 0, style, 0, 0, 258, 214}));
  EXPECT_EQ(0U, list.ex_style);
  EXPECT_EQ(8, list.font_size);
  EXPECT_EQ(L"MS Shell Dlg", list.font);
  EXPECT_EQ(0, list.font_italic);
}

TEST(ListTemplate, ControlsStandInTheirPlaces) {
  const Template list = Reader(IDD_EXPIRATION_RULES_LIST).read();
  const DWORD list_style = child | WS_TABSTOP | WS_BORDER | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS |
                           LVS_SORTASCENDING | LVS_ALIGNLEFT;
  EXPECT_THAT(list.controls, testing::ElementsAre(
                                 Part{L"到期规则列表", button, 205, child | BS_GROUPBOX, 7, 7, 241, 180},
                                 Part{L"", list_view, 201, list_style, 14, 17, 167, 162},
                                 Part{L"新增...", button, 202, push_button, 192, 17, 50, 14},
                                 Part{L"编辑...", button, 203, child | WS_TABSTOP | BS_DEFPUSHBUTTON, 192, 39, 50, 14},
                                 Part{L"删除", button, 204, push_button, 192, 61, 50, 14},
                                 Part{L"关闭", button, 2, push_button, 198, 193, 50, 14}));
}

TEST(ListTemplate, IdentifiersAreThoseOfTheControls) {
  EXPECT_EQ(201, IDD_EXPIRATION_RULES_LIST);
  EXPECT_EQ(std::vector<int>({201, 202, 203, 204, 205}),
            std::vector<int>({IDC_RULES_LIST, IDC_ADD_RULE, IDC_EDIT_RULE, IDC_DELETE_RULE, IDC_RULES_GROUP}));
}

}  // namespace
}  // namespace list_test
