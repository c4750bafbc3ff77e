#pragma once

#include <memory>
#include <string>

#include "OdbcConnection.h"
#include "RuleStore.h"
#include "ServerRuleStore.h"

/// A schema of its own on the server of this run, whose owner is a user of the same name with the password "password".
/// Only where there is a server.
class TestSchema {
 public:
  TestSchema();

  const std::wstring& name() const { return name_; }

  /// What leads to the schema as its owner, or to the server as another user with the same password.
  workbench::odbc::ConnectionString options() const { return options_as(name_); }
  static workbench::odbc::ConnectionString options_as(const std::wstring& user);

  std::unique_ptr<workbench::RuleStore> open(const workbench::ServerStoreOptions& settings = {}) const {
    return open_server_store(options(), settings);
  }

  /// Runs statements as the administrator, in this schema.
  void run(const std::wstring& sql) const { administrator_.execute(sql); }

  /// The state with which the server refuses them; empty when it does not.
  std::string refused(const std::wstring& sql) const;

  /// The tables of the schema with their columns.
  std::wstring tables() const;

  /// Takes from the store in the schema what the version before the present one did not have.
  void make_older() const;

  /// The first column of the first row of a query; empty when there is none.
  std::wstring text(const std::wstring& sql) const;

 private:
  std::wstring name_;
  workbench::odbc::OdbcConnection administrator_;
};
