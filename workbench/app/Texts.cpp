#include "Texts.h"

#include <comdef.h>

#include <cwchar>
#include <new>

#include "Owned.h"
#include "UiLanguage.h"
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
  constexpr UINT texts_in_a_block = 16;
  const auto* length =
      static_cast<const wchar_t*>(find_resource(RT_STRING, id / texts_in_a_block + 1, chosen_language()));
  if (!length) return {};
  for (UINT before = id % texts_in_a_block; before > 0; --before) length += *length + 1;
  return {length + 1, *length};
}

std::wstring text(UINT id, const std::vector<std::wstring>& inserts) {
  std::vector<DWORD_PTR> arguments;
  arguments.reserve(inserts.size());
  for (const auto& insert : inserts) arguments.push_back(reinterpret_cast<DWORD_PTR>(insert.c_str()));
  const SystemText message = format_message(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY,
                                            text(id).c_str(), 0, reinterpret_cast<va_list*>(arguments.data()));
  return message ? message.get() : std::wstring();
}

std::wstring describe(HRESULT hresult) {
  const SystemText system = format_message(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                           static_cast<DWORD>(hresult), nullptr);
  wchar_t number[16];
  _snwprintf(number, std::size(number), L"0x%08lX", static_cast<unsigned long>(hresult));
  return text(IDS_ERROR_CODE, {system ? without_line_end(system.get()) : std::wstring(), number});
}

std::wstring describe_caught_exception() {
  try {
    throw;
  } catch (const _com_error& error) {
    return text(IDS_INTERNAL_ERROR, {describe(error.Error())});
  } catch (const std::bad_alloc&) {
    return text(IDS_INTERNAL_ERROR, {describe(E_OUTOFMEMORY)});
  } catch (...) {
    return text(IDS_INTERNAL_ERROR, {describe(E_UNEXPECTED)});
  }
}

}  // namespace workbench
