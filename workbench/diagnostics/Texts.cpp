#include "Texts.h"

#include "ModulePath.h"

namespace snagtrap {

std::wstring load_text(UINT id) {
  const wchar_t* text = nullptr;
  const int length = LoadStringW(base::module_instance(), id, reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

std::wstring system_message(DWORD code) {
  wchar_t text[512] = {};
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                     nullptr, code, 0, text, 512, nullptr);
  std::wstring message(text, length);
  while (!message.empty() && message.back() == L' ') message.pop_back();
  return message;
}

}  // namespace snagtrap
