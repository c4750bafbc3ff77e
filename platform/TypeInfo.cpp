#include "TypeInfo.h"

#include "ModulePath.h"

namespace platform {

namespace {

HRESULT load_own_library(base::ComPtr<ITypeLib>& loaded) noexcept {
  try {
    const std::wstring path = base::module_file_name();
    return base::fetch_into(loaded, [&](ITypeLib** out) { return LoadTypeLibEx(path.c_str(), REGKIND_NONE, out); });
  } catch (const _com_error& error) {
    return error.Error();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

/// Finds the type in a library; `loaded` is the HRESULT of loading it.
HRESULT find_type(HRESULT loaded, const base::ComPtr<ITypeLib>& library, const GUID& type, ITypeInfo** info) noexcept {
  if (FAILED(loaded)) return loaded;
  if (!library) return E_FAIL;
  const HRESULT found = library->GetTypeInfoOfGuid(type, info);
  return SUCCEEDED(found) && !*info ? E_FAIL : found;
}

HRESULT load_type_info(const GUID& library, const GUID& type, ITypeInfo** info) noexcept {
  base::ComPtr<ITypeLib> loaded;
  const HRESULT registered =
      base::fetch_into(loaded, [&](ITypeLib** out) { return LoadRegTypeLib(library, 1, 0, LOCALE_NEUTRAL, out); });
  if (SUCCEEDED(find_type(registered, loaded, type, info))) return S_OK;
  const HRESULT own = load_own_library(loaded);
  return find_type(own, loaded, type, info);
}

}  // namespace

TypeInfo::TypeInfo(const GUID& library, const GUID& type) noexcept : loaded_(load_type_info(library, type, &info_)) {}

HRESULT TypeInfo::get_count(UINT* count) const noexcept {
  if (!count) return E_POINTER;
  *count = SUCCEEDED(loaded_) ? 1 : 0;
  return loaded_;
}

HRESULT TypeInfo::get(UINT index, ITypeInfo** info) const noexcept {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (FAILED(loaded_)) return loaded_;
  if (index != 0) return DISP_E_BADINDEX;
  *info = base::ComPtr<ITypeInfo>(info_).Detach();
  return S_OK;
}

HRESULT TypeInfo::get_ids_of_names(LPOLESTR* names, UINT count, DISPID* ids) const noexcept {
  if (FAILED(loaded_)) return loaded_;
  if (!names || !ids) return E_INVALIDARG;  // not every automation library checks
  return info_->GetIDsOfNames(names, count, ids);
}

HRESULT TypeInfo::invoke(void* object, DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                         EXCEPINFO* exception, UINT* bad_argument) const noexcept {
  const ScopedNoErrorInfo no_error_info;
  if (FAILED(loaded_)) return loaded_;
  return info_->Invoke(object, id, flags, parameters, result, exception, bad_argument);
}

}  // namespace platform
