#include "MainMenu.h"

#include <algorithm>
#include <utility>

#include "CommandObject.h"
#include "DispatchObject.h"
#include "Hresult.h"
#include "Owned.h"

namespace workbench {

namespace {

std::wstring caption_at(HMENU menu, int position) {
  const int length = GetMenuStringW(menu, static_cast<UINT>(position), nullptr, 0, MF_BYPOSITION);
  std::wstring caption(static_cast<size_t>(std::max(length, 0)) + 1, L'\0');
  const int copied = GetMenuStringW(menu, static_cast<UINT>(position), caption.data(), static_cast<int>(caption.size()),
                                    MF_BYPOSITION);
  caption.resize(static_cast<size_t>(std::max(copied, 0)));
  return caption;
}

class SubMenu final : public DispatchObject<IkvSubMenu> {
 public:
  SubMenu(std::weak_ptr<MainMenu> menu, HMENU submenu) noexcept : menu_(std::move(menu)), submenu_(submenu) {}

  KV_UNUSED_SLOT(7)
  KV_UNUSED_SLOT(8)
  KV_UNUSED_SLOT(9)
  HRESULT STDMETHODCALLTYPE AddCommand(BSTR caption, long, long, long, IUnknown*, long, IDispatch* target,
                                       IkvMenuItem** item) noexcept override {
    if (!item) return E_POINTER;
    *item = nullptr;
    if (!target) return E_INVALIDARG;
    return com_method([&] {
      const auto menu = menu_.lock();
      if (!menu) return RPC_E_DISCONNECTED;
      *item = make_object<CommandObject<IkvMenuItem>>(menu->add_command(submenu_, text_of(caption), target));
      return S_OK;
    });
  }

 private:
  std::weak_ptr<MainMenu> menu_;
  HMENU submenu_;
};

class MainMenuDispatch final : public DispatchObject<IkvMainMenu> {
 public:
  explicit MainMenuDispatch(std::weak_ptr<MainMenu> menu) noexcept : menu_(std::move(menu)) {}

  HRESULT STDMETHODCALLTYPE FindSubMenu(BSTR caption, IkvSubMenu** submenu) noexcept override {
    return hand_out(submenu, [&](const MainMenu& menu) { return menu.find_submenu(text_of(caption)); });
  }

  KV_UNUSED_SLOT(8)
  HRESULT STDMETHODCALLTYPE AddSubMenu(BSTR caption, BSTR hint, long, IkvSubMenu** submenu) noexcept override {
    return hand_out(submenu, [&](MainMenu& menu) { return menu.add_submenu(text_of(caption), text_of(hint)); });
  }

 private:
  template <class Get>
  HRESULT hand_out(IkvSubMenu** submenu, const Get& get) noexcept {
    if (!submenu) return E_POINTER;
    *submenu = nullptr;
    return com_method([&] {
      const auto menu = menu_.lock();
      if (!menu) return RPC_E_DISCONNECTED;
      if (HMENU found = get(*menu)) *submenu = make_object<SubMenu>(menu_, found);
      return S_OK;
    });
  }

  std::weak_ptr<MainMenu> menu_;
};

}  // namespace

MainMenu::MainMenu(HMENU bar, int trailing, CommandTargets& targets, std::function<void()> changed)
    : bar_(bar), trailing_(trailing), targets_(targets), changed_(std::move(changed)) {}

HMENU MainMenu::find_submenu(const std::wstring& caption) const {
  const int count = GetMenuItemCount(bar_);
  for (int position = 0; position < count; ++position)
    if (HMENU submenu = GetSubMenu(bar_, position); submenu && caption_at(bar_, position) == caption) return submenu;
  return nullptr;
}

HMENU MainMenu::add_submenu(const std::wstring& caption, const std::wstring& hint) {
  base::Menu submenu(CreatePopupMenu());
  if (!submenu) base::throw_last_failure();
  const int position = std::max(GetMenuItemCount(bar_) - trailing_, 0);
  hints_[submenu.get()] = hint;
  if (!InsertMenuW(bar_, static_cast<UINT>(position), MF_BYPOSITION | MF_POPUP,
                   reinterpret_cast<UINT_PTR>(submenu.get()), caption.c_str()))
    base::throw_last_failure();
  changed_();
  return submenu.detach();
}

long MainMenu::add_command(HMENU submenu, const std::wstring& caption, IDispatch* target) {
  const long id = targets_.add(target);
  if (!AppendMenuW(submenu, MF_STRING, static_cast<UINT_PTR>(id), caption.c_str())) {
    targets_.remove(id);
    base::throw_last_failure();
  }
  changed_();
  return id;
}

const std::wstring& MainMenu::hint(HMENU submenu) const {
  static const std::wstring none;
  const auto found = hints_.find(submenu);
  return found == hints_.end() ? none : found->second;
}

IkvMainMenu* MainMenu::create_dispatch() { return make_object<MainMenuDispatch>(weak_from_this()); }

}  // namespace workbench
