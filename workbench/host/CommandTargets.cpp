#include "CommandTargets.h"

#include <stdexcept>
#include <utility>

#include "Bstr.h"
#include "zdExpirationRules_h.h"

namespace workbench {

namespace {

HRESULT do_command_by_name(IDispatch& target, long id) noexcept {
  OLECHAR method[] = L"DoCommand";
  LPOLESTR name = method;
  DISPID dispid = DISPID_UNKNOWN;
  const HRESULT found = target.GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &dispid);
  if (FAILED(found)) return found;

  VARIANTARG last_argument_first[2] = {};
  last_argument_first[1].vt = VT_I4;
  last_argument_first[1].lVal = id;
  DISPPARAMS parameters{last_argument_first, nullptr, 2, 0};
  EXCEPINFO exception{};
  const HRESULT result =
      target.Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, &exception, nullptr);
  const base::OwnedBstr source(exception.bstrSource);
  const base::OwnedBstr description(exception.bstrDescription);
  const base::OwnedBstr help_file(exception.bstrHelpFile);
  return result == DISP_E_EXCEPTION && FAILED(exception.scode) ? exception.scode : result;
}

HRESULT do_command(IDispatch& target, long id) noexcept {
  IkvPlugin* found = nullptr;
  if (FAILED(target.QueryInterface(&found)) || !found) return do_command_by_name(target, id);
  return base::own(found)->DoCommand(id, VARIANT{});
}

}  // namespace

long CommandTargets::add(base::ComPtr<IDispatch> target) {
  if (next_id_ > last_id) throw std::length_error("every plug-in command id is in use");
  targets_.emplace(next_id_, std::move(target));
  return next_id_++;
}

void CommandTargets::remove(long id) noexcept { targets_.extract(id); }

HRESULT CommandTargets::run(long id) noexcept {
  const auto command = targets_.find(id);
  if (command == targets_.end()) return DISP_E_BADINDEX;
  const base::ComPtr<IDispatch> target = command->second;
  return do_command(*target.GetInterfacePtr(), id);
}

void CommandTargets::clear() noexcept { std::exchange(targets_, {}).clear(); }

}  // namespace workbench
