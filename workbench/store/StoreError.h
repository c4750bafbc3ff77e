#pragma once

#include <stdexcept>
#include <string>

namespace workbench {

/// Why a store refused. Each kind has a message of its own in the host's string table.
enum class StoreErrorKind {
  // Of the file, or of the server:
  read_only,    ///< the file or its folder cannot be written, or the user may not change the store
  locked,       ///< another program held the store for longer than this one waits
  full,         ///< no room on the disk
  damaged,      ///< the content is inconsistent; it was left as it is
  foreign,      ///< the file, or the tables of the store's names, are something else; they were left as they are
  newer,        ///< a newer version of this program created the store; it was left as it is
  unavailable,  ///< the store cannot be opened, read or written for another reason
  // Of the records:
  invalid_value,      ///< a value outside its range
  duplicate_name,     ///< another rule has this name
  not_found,          ///< no rule has this number
  changed,            ///< the rule was changed since it was read
  in_use,             ///< a symbol source setting uses the rule
  setting_not_found,  ///< no symbol source setting has this number
  setting_changed,    ///< the setting was changed since it was read
  // Of the store again:
  missing,  ///< there is no such store, and none may be created
  // Of the server only:
  no_driver,        ///< the driver through which the server is reached is not installed
  unreachable,      ///< the server cannot be reached, or it refused the connection
  login_refused,    ///< the server refused the user or the password
  connection_lost,  ///< the connection to the server ended, or the server did not answer in time
  overloaded,       ///< the server has no connection or no memory left
  // Of the target of a copy:
  exists,  ///< there is a store already, which may hold something; it was left as it is
  // Of the server again:
  uncertain,  ///< the connection was lost while a change was saved, and it may have happened or not
  // Of every store:
  cancelled,  ///< the user gave up waiting for a call of a plug-in
};

/// A refusal of a store. The requested change did not happen, and the old content is intact; only for an `uncertain`
/// change it is not known whether it happened.
class StoreError : public std::runtime_error {
 public:
  /// `detail` is a technical text for logs, in UTF-8.
  StoreError(StoreErrorKind kind, std::wstring subject, const std::string& detail)
      : std::runtime_error(detail), kind_(kind), subject_(std::move(subject)) {}

  StoreErrorKind kind() const noexcept { return kind_; }

  /// What the refusal is about: the path for a failure of the file, the description for one of the server, the field
  /// for an invalid value, else the name or the number of the rule or setting; empty when the store does not say which
  /// of several rules has the name of another.
  const std::wstring& subject() const noexcept { return subject_; }

 private:
  StoreErrorKind kind_;
  std::wstring subject_;
};

StoreError rule_not_found(long number);
StoreError rule_changed(const std::wstring& name);
StoreError rule_in_use(const std::wstring& name);
StoreError duplicate_rule_name(const std::wstring& name);
StoreError setting_not_found(long number);
StoreError setting_changed(const std::wstring& name);

}  // namespace workbench
