#include "WindowText.h"

namespace base {

std::wstring window_text(HWND window) {
  const auto length = SendMessageW(window, WM_GETTEXTLENGTH, 0, 0);
  std::wstring text(length > 0 ? static_cast<std::size_t>(length) : 0, L'\0');
  // The returned length counts: the one queried first is an upper bound.
  const LRESULT copied = SendMessageW(window, WM_GETTEXT, text.size() + 1, reinterpret_cast<LPARAM>(text.data()));
  text.resize(copied > 0 ? static_cast<std::size_t>(copied) : 0);
  return text;
}

}  // namespace base
