#include "Texts.h"

#include <cwchar>

#include "ModulePath.h"
#include "Owned.h"
#include "resource.h"

namespace workbench {

namespace {

using SystemText = base::OwnedBy<wchar_t*, &LocalFree>;

SystemText format_message(DWORD flags, const wchar_t* source, DWORD id, va_list* inserts) {
  SystemText formatted;
  FormatMessageW(flags | FORMAT_MESSAGE_ALLOCATE_BUFFER, source, id, 0, reinterpret_cast<wchar_t*>(formatted.put()), 0,
                 inserts);
  return formatted;
}

std::wstring without_line_end(std::wstring line) {
  while (!line.empty() && iswspace(line.back())) line.pop_back();
  return line;
}

}  // namespace

std::wstring text(UINT id) {
  const wchar_t* resource = nullptr;
  const int length = LoadStringW(base::module_instance(), id, reinterpret_cast<wchar_t*>(&resource), 0);
  return length > 0 ? std::wstring(resource, static_cast<size_t>(length)) : std::wstring();
}

std::wstring text(UINT id, const std::vector<std::wstring>& inserts) {
  std::vector<DWORD_PTR> arguments;
  arguments.reserve(inserts.size());
  for (const auto& insert : inserts) arguments.push_back(reinterpret_cast<DWORD_PTR>(insert.c_str()));
  const SystemText made = format_message(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY, text(id).c_str(),
                                         0, reinterpret_cast<va_list*>(arguments.data()));
  return made ? made.get() : std::wstring();
}

std::wstring describe(HRESULT hresult) {
  const SystemText system = format_message(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                           static_cast<DWORD>(hresult), nullptr);
  wchar_t number[16];
  _snwprintf(number, std::size(number), L"0x%08lX", static_cast<unsigned long>(hresult));
  return text(IDS_ERROR_CODE, {system ? without_line_end(system.get()) : std::wstring(), number});
}

}  // namespace workbench
