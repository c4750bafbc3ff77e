#include "StoreChooser.h"

#include <utility>

#include "FirstContent.h"
#include "OpenStoreDialog.h"
#include "PasswordDialog.h"
#include "RecentStores.h"
#include "StoreMessages.h"
#include "Texts.h"
#include "WaitBox.h"
#include "resource.h"

namespace workbench {

StoreChooser::StoreChooser(MainWindow& window, FileDialogs files, std::function<void(OpenedStore)> use)
    : window_(window), files_(std::move(files)), use_(std::move(use)) {}

void StoreChooser::choose() {
  std::optional<OpenedStore> opened;
  OpenStoreDialog dialog(files_, [&](const std::wstring& name) {
    opened = try_open(name);
    return opened.has_value();
  });
  // The dialog is closed first, because the plug-in is created again over the window.
  if (dialog.run(window_.handle()) == IDOK) use_(*std::move(opened));
}

void StoreChooser::open_recent(std::size_t index) {
  const std::vector<std::wstring> names = recent_stores();
  if (index >= names.size()) return;
  if (std::optional<OpenedStore> opened = try_open(names[index])) use_(*std::move(opened));
}

std::vector<std::wstring> StoreChooser::recent() {
  std::vector<std::wstring> descriptions;
  for (const std::wstring& name : recent_stores()) {
    try {
      descriptions.push_back(find_store(name)->description());
    } catch (const StoreLocationError&) {
      descriptions.emplace_back();  // the indexes stay those of the names
    }
  }
  return descriptions;
}

std::optional<OpenedStore> StoreChooser::try_open(const std::wstring& name) {
  std::wstring refusal;
  try {
    return open(name);
  } catch (const StoreError& error) {
    refusal = store_message(error);
  } catch (const StoreLocationError& error) {
    refusal = error.message;
  } catch (const schedule::Cancelled&) {
    return std::nullopt;
  }
  window_.try_show_box(text(IDS_STORE_NOT_OPENED, {refusal}), MB_ICONERROR);
  return std::nullopt;
}

OpenedStore StoreChooser::open(const std::wstring& name) {
  const std::unique_ptr<StoreLocation> location = find_store(name);
  StoreOpening opening{.first_content = first_content(), .may_create = false, .in_window = true};
  opening.ask_password = [&](const PasswordRequest& request) {
    return ask_in_dialog(GetLastActivePopup(window_.handle()), request);
  };
  const auto open_with_progress = [&] {
    StoreOpening waiting = opening;
    waiting.progress = wait_for_file(location->description());
    return open_store(*location, waiting);
  };
  try {
    return open_with_progress();
  } catch (const StoreError& error) {
    if (error.kind() != StoreErrorKind::missing) throw;
    if (!window_.ask(text(IDS_CREATE_STORE, {error.subject()}))) throw schedule::Cancelled();
  }
  opening.may_create = true;
  return open_with_progress();
}

}  // namespace workbench
