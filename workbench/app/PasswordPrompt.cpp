#include "PasswordPrompt.h"

#include "Console.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {

std::optional<EnteredPassword> ask_at_console(const PasswordRequest& request) {
  if (!can_read_secret())
    throw StoreLocationError{request.refusal.empty() ? text(IDS_PASSWORD_NEEDED, {request.store}) : request.refusal};
  if (!request.refusal.empty()) write_error(request.refusal + L"\n");
  const std::optional<std::wstring> password = read_secret(text(IDS_PASSWORD_PROMPT, {request.store}));
  if (!password) return std::nullopt;
  return EnteredPassword{*password};
}

}  // namespace workbench
