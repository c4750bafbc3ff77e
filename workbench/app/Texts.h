#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace workbench {

/// A text of this program's string table in the chosen language; empty when there is none with this id.
std::wstring text(UINT id);

/// The same with %1, %2 and so on replaced by `inserts`, of which there must be enough.
std::wstring text(UINT id, const std::vector<std::wstring>& inserts);

/// What the system says about an HRESULT, with its number.
std::wstring describe(HRESULT hresult);

/// The message about the exception that is being handled, for exceptions without a message of their own.
std::wstring describe_caught_exception();

}  // namespace workbench
