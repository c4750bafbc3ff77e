#include "ResourceMgr.h"

#include <utility>

#include "Report.h"
#include "string_t.h"

namespace zd_common_res {

namespace {

constexpr wchar_t shared_module_name[] = L"zdCommonRes.DLL";

}  // namespace

CCommonRes::CCommonRes(const wchar_t* file_name) : instance_(LoadLibraryW(file_name)) {
  SnagtrapUtil::expect(instance_ != nullptr, L"hInstance", ZD_LOCATION);
}

CCommonRes::~CCommonRes() {
  if (instance_) SnagtrapUtil::expect(FreeLibrary(instance_) != FALSE, L"::FreeLibrary(hInstance)", ZD_LOCATION);
}

CCommonRes& CCommonRes::operator=(CCommonRes&& other) noexcept {
  std::swap(instance_, other.instance_);
  return *this;
}

HINSTANCE CCommonRes::instance() const noexcept {
  SnagtrapUtil::expect(instance_ != nullptr, L"hInstance", ZD_LOCATION);
  return instance_;
}

std::wstring GetString(const unsigned int id) {
  // The holder may report when it is destroyed: the client must be created before it, to be destroyed after it.
  SnagtrapUtil::prepare_reports();
  // Only the host's UI thread reads texts.
  static CCommonRes shared;
  static bool loading_begun = false;
  // The report of a missing module may dispatch messages, and the host may call again then: that call must find a
  // holder.
  if (!std::exchange(loading_begun, true)) shared = CCommonRes(shared_module_name);
  HINSTANCE module = shared.instance();
  // Without the shared module an id must not be looked up in this module, which an empty handle would mean.
  if (!module) return {};
  return resource_string::resourse_2_string_impl(static_cast<int>(id), module);
}

}  // namespace zd_common_res
