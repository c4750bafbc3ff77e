#include "HotKeys.h"

#include <algorithm>
#include <utility>

#include "CommandObject.h"
#include "DispatchObject.h"

namespace workbench {

namespace {

constexpr long all_flags = FVIRTKEY | FNOINVERT | FSHIFT | FCONTROL | FALT;
constexpr long greatest_virtual_key = 0xFE;
constexpr long greatest_character = 0xFFFF;

bool is_accelerator(long flags, long key) {
  const long greatest = flags & FVIRTKEY ? greatest_virtual_key : greatest_character;
  return (flags & ~all_flags) == 0 && key > 0 && key <= greatest;
}

bool same_key(const ACCEL& left, const ACCEL& right) {
  constexpr int silent = FNOINVERT;
  return left.key == right.key && (left.fVirt | silent) == (right.fVirt | silent);
}

class HotKeyCollection final : public DispatchObject<IkvHotKeyCollection> {
 public:
  explicit HotKeyCollection(std::weak_ptr<HotKeys> keys) noexcept : keys_(std::move(keys)) {}

  HRESULT STDMETHODCALLTYPE AddHotKey(long flags, long key, IDispatch* target, IDispatch** hot_key) noexcept override {
    if (!hot_key) return E_POINTER;
    *hot_key = nullptr;
    if (!target) return E_INVALIDARG;
    return com_method([&] {
      const auto keys = keys_.lock();
      if (!keys) return RPC_E_DISCONNECTED;
      *hot_key = make_object<CommandObject<IkvHotKey>>(keys->add(flags, key, target));
      return S_OK;
    });
  }

 private:
  std::weak_ptr<HotKeys> keys_;
};

}  // namespace

long HotKeys::add(long flags, long key, IDispatch* target) {
  if (!is_accelerator(flags, key)) throw _com_error(E_INVALIDARG);
  ACCEL added{};
  added.fVirt = static_cast<BYTE>(flags);
  added.key = static_cast<WORD>(key);

  std::vector<ACCEL> keys = keys_;
  const auto old = std::ranges::find_if(keys, [&](const ACCEL& accelerator) { return same_key(accelerator, added); });
  const long replaced = old == keys.end() ? 0 : old->cmd;
  ACCEL& entry = old == keys.end() ? keys.emplace_back() : *old;

  const long id = targets_.add(target);
  added.cmd = static_cast<WORD>(id);
  entry = added;
  base::AcceleratorTable table(CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size())));
  if (!table) {
    targets_.remove(id);
    throw _com_error(E_OUTOFMEMORY);
  }
  keys_ = std::move(keys);
  table_ = std::move(table);
  targets_.remove(replaced);
  return id;
}

IkvHotKeyCollection* HotKeys::create_dispatch() { return make_object<HotKeyCollection>(weak_from_this()); }

}  // namespace workbench
