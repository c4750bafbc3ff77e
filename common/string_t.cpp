#include "string_t.h"

#include "ModulePath.h"
#include "Report.h"

namespace resource_string {

std::wstring resourse_2_string_impl(int id, HINSTANCE module) {
  const HINSTANCE source = module ? module : base::module_instance();
  // A buffer size of 0 asks for the address of the resource itself, which is not terminated.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(source, static_cast<UINT>(id), reinterpret_cast<wchar_t*>(&text), 0);
  if (!SnagtrapUtil::expect(length > 0 && text, L"length > 0", ZD_LOCATION)) return {};
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace resource_string
