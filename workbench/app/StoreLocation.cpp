#include "StoreLocation.h"

#include <windows.h>

#include <algorithm>
#include <cwctype>
#include <filesystem>
#include <initializer_list>

#include "Credentials.h"
#include "ServerRuleStore.h"
#include "SqliteRuleStore.h"
#include "StoreMessages.h"
#include "Texts.h"
#include "WaitBox.h"
#include "resource.h"

namespace workbench {

namespace {

using odbc::ConnectionString;

constexpr std::wstring_view server_prefix = L"odbc:";
/// Together with the window's timer of one second this interval shows a change within two seconds.
constexpr std::chrono::milliseconds poll_interval{500};

class FileLocation final : public StoreLocation {
 public:
  explicit FileLocation(std::wstring_view path) : path_(std::filesystem::absolute(path)) {}

  std::wstring description() const override { return path_.wstring(); }
  std::wstring text() const override { return path_.wstring(); }

  std::unique_ptr<RuleStore> open(const StoreOpening& opening) override {
    std::error_code unknown;
    const bool existed = std::filesystem::exists(path_, unknown);
    try {
      return open_sqlite_store(path_, {.first_content = opening.first_content,
                                       .may_create = opening.may_create,
                                       .progress = opening.progress,
                                       .copied = opening.copied});
    } catch (const schedule::Cancelled&) {
      if (!existed && std::filesystem::file_size(path_, unknown) == 0) std::filesystem::remove(path_, unknown);
      throw;
    }
  }

 private:
  std::filesystem::path path_;
};

/// The name under which Windows keeps a password: it holds for a server and a user, however the connection is
/// encrypted.
std::wstring credential_target(ConnectionString options) {
  options.take(postgres().driver.encryption.first);
  return L"zdExpirationRules:" + describe_server_store(options);
}

/// The passwords for one server, which are tried one after another: none, which leaves the password to the driver, then
/// the one that Windows keeps, then those that the user enters.
class PasswordSearch {
 public:
  PasswordSearch(ConnectionString& options, const AskPassword& ask) : options_(options), ask_(ask) {}

  /// Puts the next password into the connection string. Returns false when the refusal is about something else, and
  /// the string keeps the password that the server took, or when no password is left. Throws `schedule::Cancelled`.
  bool next(const StoreError& refused) {
    if (is_given_ || !is_about_password(refused)) return false;
    options_.take(L"Pwd");
    const bool found = find_next(refused);
    has_tried_ = true;
    return found;
  }

  /// Remembers or forgets the password with which the store was opened, as the user wants.
  void accept() const {
    if (!entered_) return;
    if (entered_->remember)
      try_write_credential(target_, options_.find(L"Uid").value_or(L""), entered_->password);
    else if (is_kept_)
      drop_credential(target_);
  }

 private:
  static constexpr int most_questions = 3;

  /// A driver may call a wrong password an unreachable server; a missing one it does not.
  bool is_about_password(const StoreError& refused) const {
    return refused.kind() == StoreErrorKind::login_refused ||
           (has_tried_ && refused.kind() == StoreErrorKind::unreachable);
  }

  /// Whether the server was given no password. The driver's own means may have given one that is wrong.
  static bool is_missing_password(const StoreError& refused) {
    return std::string_view(refused.what()).find(postgres().driver.missing_password) != std::string_view::npos;
  }

  bool find_next(const StoreError& refused) {
    if (!has_tried_) {
      if (const std::optional<std::wstring> kept = try_read_credential(target_)) {
        is_kept_ = true;
        options_.set(L"Pwd", *kept);
        return true;
      }
    }
    if (!ask_ || questions_++ == most_questions) return false;
    entered_ = ask_({.store = describe_server_store(options_),
                     .refusal = has_tried_ || !is_missing_password(refused) ? store_message(refused) : std::wstring(),
                     .remembered = is_kept_});
    if (!entered_) throw schedule::Cancelled();
    options_.set(L"Pwd", entered_->password);
    return true;
  }

  ConnectionString& options_;
  const AskPassword& ask_;
  std::wstring target_ = credential_target(options_);
  bool is_given_ = options_.find(L"Pwd").has_value();
  bool has_tried_ = false;
  bool is_kept_ = false;  ///< whether Windows keeps one
  int questions_ = 0;
  std::optional<EnteredPassword> entered_;
};

class ServerLocation final : public StoreLocation {
 public:
  explicit ServerLocation(ConnectionString options) : options_(std::move(options)) {
    refuse_unknown_keywords(options_, postgres().driver);
  }

  std::wstring description() const override { return describe_server_store(options_); }

  std::wstring text() const override {
    ConnectionString options = options_;
    options.take(L"Pwd");
    return std::wstring(server_prefix) + options.text();
  }

  std::unique_ptr<RuleStore> open(const StoreOpening& opening) override {
    ServerStoreOptions settings{.first_content = opening.first_content,
                                .may_create = opening.may_create,
                                .api = opening.odbc,
                                .copied = opening.copied,
                                .progress = opening.progress};
    if (opening.in_window) {
      settings.poll_interval = poll_interval;
      settings.create_wait = [store = description()] {
        return std::make_unique<WaitBox>(workbench::text(IDS_WAITING, {store}));
      };
    }
    PasswordSearch passwords(options_, opening.ask_password);
    for (;;) {
      try {
        std::unique_ptr<RuleStore> store = open_server_store(options_, settings);
        passwords.accept();
        return store;
      } catch (const StoreError& error) {
        if (!passwords.next(error)) throw;
      }
    }
  }

 private:
  ConnectionString options_;
};

/// The case of the letters does not count, as in the rest of a connection string.
bool names_server(std::wstring_view name) {
  const auto length = static_cast<int>(std::min(name.size(), server_prefix.size()));
  return CompareStringOrdinal(name.data(), length, server_prefix.data(), static_cast<int>(server_prefix.size()),
                              TRUE) == CSTR_EQUAL;
}

/// Whether the text holds one of `words`, in small letters, whatever the case and the blanks in the text.
bool holds_any(std::wstring_view text, std::initializer_list<std::wstring_view> words) {
  std::wstring letters;
  for (const wchar_t unit : text)
    if (!std::iswspace(unit)) letters += static_cast<wchar_t>(std::towlower(unit));
  return std::ranges::any_of(words, [&](std::wstring_view word) { return letters.find(word) != std::wstring::npos; });
}

bool holds_password(std::wstring_view text) { return holds_any(text, {L"pwd=", L"password="}); }

std::wstring_view trimmed(std::wstring_view text) {
  const auto is_blank = [](wchar_t unit) { return std::iswspace(unit) != 0; };
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

std::unique_ptr<StoreLocation> find_store(std::wstring_view entered) {
  const std::wstring_view name = trimmed(entered);
  if (!names_server(name)) {
    // The name of a file is shown and remembered.
    if (holds_password(name)) throw StoreLocationError{text(IDS_PASSWORD_IN_FILE_NAME)};
    return std::make_unique<FileLocation>(name);
  }
  try {
    return std::make_unique<ServerLocation>(ConnectionString(name.substr(server_prefix.size())));
  } catch (const odbc::ConnectionStringError& error) {
    const UINT message = IDS_CONNECTION_STRING_REFUSED + static_cast<UINT>(error.reason());
    throw StoreLocationError{text(message, {std::to_wstring(error.part())})};
  }
}

OpenedStore open_store(StoreLocation& location, const StoreOpening& opening) {
  return {location.open(opening), location.description(), location.text()};
}

std::wstring printable_argument(const std::wstring& argument, std::span<const std::wstring> arguments) {
  // The shell cuts a connection string that is not quoted at its blanks, so that any argument may be a part of the
  // password.
  std::wstring all;
  for (const std::wstring& one : arguments) all += one;
  return holds_password(all) || holds_any(argument, {server_prefix}) ? L"..." : argument;
}

std::wstring server_name(const ServerFields& fields) {
  ConnectionString options;
  options.set(L"Server", fields.server);
  if (!fields.port.empty()) options.set(L"Port", fields.port);
  options.set(L"Database", fields.database);
  if (!fields.user.empty()) options.set(L"Uid", fields.user);
  return std::wstring(server_prefix) + options.text();
}

}  // namespace workbench
