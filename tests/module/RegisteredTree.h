#pragma once

#include <string>

#include "RegistryTree.h"

namespace module_test {

/// What registering the module at `path` writes below the classes root, value by value.
test_support::RegistryTree registered_tree(const std::wstring& path);

/// The key of the module's type library below the classes root.
std::wstring type_library_key();

/// The part of a tree that is not about the type library, whose entries are the automation library's own business.
test_support::RegistryTree without_type_library(const test_support::RegistryTree& tree);

}  // namespace module_test
