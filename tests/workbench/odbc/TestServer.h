#pragma once

#include <optional>
#include <string>

namespace test_support {

/// The part of a connection string that leads to the server of this run, as a user who may do everything; nothing where
/// there is no server.
std::optional<std::wstring> test_server();

/// Why a test that needs the server was skipped.
inline constexpr char no_test_server[] = "not run: no server, no driver or no manager of drivers is installed";

}  // namespace test_support
