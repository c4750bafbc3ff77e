#include "DialogTemplate.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "ModulePath.h"

namespace test_support {
namespace {

constexpr std::uint16_t extended_version = 1;
constexpr std::uint16_t extended_signature = 0xFFFF;
constexpr std::uint16_t ordinal_follows = 0xFFFF;
constexpr std::uint16_t first_class_ordinal = 0x80;

const wchar_t* const numbered_classes[] = {L"Button", L"Edit", L"Static", L"ListBox", L"ScrollBar", L"ComboBox"};

/// Reads a resource from its start to its end.
class Reader {
 public:
  explicit Reader(const void* start) : start_(static_cast<const char*>(start)), next_(start_) {}

  template <class Value>
  Value read() {
    Value value;
    std::memcpy(&value, next_, sizeof value);
    next_ += sizeof value;
    return value;
  }

  std::wstring text() {
    std::wstring read_text;
    while (const auto unit = read<wchar_t>()) read_text += unit;
    return read_text;
  }

  /// A text, or a number that stands for one of `names`.
  std::wstring text_or_number(const wchar_t* const* names) {
    if (peek() != ordinal_follows) return text();
    read<std::uint16_t>();
    const auto number = read<std::uint16_t>();
    return names ? names[number - first_class_ordinal] : std::to_wstring(number);
  }

  void align_to_4() { next_ += (4 - (next_ - start_) % 4) % 4; }
  void skip(std::size_t size) { next_ += size; }

 private:
  std::uint16_t peek() const {
    std::uint16_t value = 0;
    std::memcpy(&value, next_, sizeof value);
    return value;
  }

  const char* start_;
  const char* next_;
};

TemplateControl read_control(Reader& reader) {
  TemplateControl control;
  reader.align_to_4();
  reader.skip(2 * sizeof(DWORD));  // help identifier and extended style
  control.style = reader.read<DWORD>();
  control.rect.left = reader.read<short>();
  control.rect.top = reader.read<short>();
  control.rect.right = control.rect.left + reader.read<short>();
  control.rect.bottom = control.rect.top + reader.read<short>();
  control.id = static_cast<int>(reader.read<DWORD>());
  control.kind = reader.text_or_number(numbered_classes);
  control.text = reader.text_or_number(nullptr);
  reader.skip(reader.read<std::uint16_t>());  // creation data
  return control;
}

}  // namespace

DialogTemplate read_dialog_template(int id) {
  HMODULE module = base::module_instance();
  HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(5));  // RT_DIALOG
  if (!found) throw std::runtime_error("there is no such dialog");
  Reader reader(LockResource(LoadResource(module, found)));
  const auto version = reader.read<std::uint16_t>();
  const auto signature = reader.read<std::uint16_t>();
  if (version != extended_version || signature != extended_signature) {
    throw std::runtime_error("the template is not an extended one");
  }
  DialogTemplate dialog;
  reader.skip(sizeof(DWORD));  // help identifier
  dialog.ex_style = reader.read<DWORD>();
  dialog.style = reader.read<DWORD>();
  const auto count = reader.read<std::uint16_t>();
  reader.skip(2 * sizeof(short));  // position
  dialog.size.cx = reader.read<short>();
  dialog.size.cy = reader.read<short>();
  reader.text_or_number(nullptr);  // menu
  reader.text_or_number(nullptr);  // class
  dialog.caption = reader.text();
  dialog.font_size = reader.read<short>();
  reader.skip(2 * sizeof(std::uint16_t));  // weight, italic and character set
  dialog.font = reader.text();
  for (int index = 0; index < count; ++index) dialog.controls.push_back(read_control(reader));
  return dialog;
}

}  // namespace test_support
