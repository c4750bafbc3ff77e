#include "Credentials.h"

#include <windows.h>
#include <wincred.h>

#include "Owned.h"

namespace workbench {

std::optional<std::wstring> try_read_credential(const std::wstring& target) noexcept try {
  base::OwnedBy<CREDENTIALW*, &CredFree> found;
  if (!CredReadW(target.c_str(), CRED_TYPE_GENERIC, 0, found.put())) return std::nullopt;
  return std::wstring(reinterpret_cast<const wchar_t*>(found.get()->CredentialBlob),
                      found.get()->CredentialBlobSize / sizeof(wchar_t));
} catch (...) {
  return std::nullopt;
}

bool try_write_credential(const std::wstring& target, const std::wstring& user, const std::wstring& password) noexcept {
  CREDENTIALW credential{};
  credential.Type = CRED_TYPE_GENERIC;
  credential.TargetName = const_cast<wchar_t*>(target.c_str());
  credential.UserName = const_cast<wchar_t*>(user.c_str());
  credential.Persist = CRED_PERSIST_LOCAL_MACHINE;
  credential.CredentialBlobSize = static_cast<DWORD>(password.size() * sizeof(wchar_t));
  credential.CredentialBlob = reinterpret_cast<BYTE*>(const_cast<wchar_t*>(password.c_str()));
  return CredWriteW(&credential, 0) != FALSE;
}

void drop_credential(const std::wstring& target) noexcept { CredDeleteW(target.c_str(), CRED_TYPE_GENERIC, 0); }

}  // namespace workbench
