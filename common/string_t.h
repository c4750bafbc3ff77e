#pragma once

#include <windows.h>

#include <string>

namespace resource_string {

/// The text of a string resource, whatever its length. An empty handle means the module's own resources. A missing
/// string is reported as an assertion and reads as empty. Throws `std::bad_alloc`. The spelling of the name is fixed,
/// because it appears in reports.
std::wstring resourse_2_string_impl(int id, HINSTANCE module = nullptr);

}  // namespace resource_string
