#include "OdbcError.h"

#include <array>
#include <new>
#include <optional>

#include "TextEncoding.h"

namespace workbench::odbc {

namespace {

constexpr SQLSMALLINT most_records = 8;

struct Diagnostic {
  std::string state;
  long native = 0;
  std::string text;
};

/// The record with this number, from 1. A text that is too long is cut.
std::optional<Diagnostic> read_diagnostic(const OdbcApi& api, SQLSMALLINT handle_type, SQLHANDLE handle,
                                          SQLSMALLINT record) {
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, 1024> text{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN code = api.get_diagnostic(handle_type, handle, record, state.data(), &native, text.data(),
                                            static_cast<SQLSMALLINT>(text.size()), &length);
  if (!SQL_SUCCEEDED(code)) return std::nullopt;
  text.back() = 0;
  state.back() = 0;
  const auto wide = [](const SQLWCHAR* units) { return std::wstring(reinterpret_cast<const wchar_t*>(units)); };
  return Diagnostic{base::to_utf8(wide(state.data())), native, base::to_utf8(wide(text.data()))};
}

}  // namespace

void fail(const OdbcApi& api, SQLSMALLINT handle_type, SQLHANDLE handle, const char* call) {
  std::optional<Diagnostic> first;
  std::string text = call;
  for (SQLSMALLINT record = 1; record <= most_records; ++record) {
    const std::optional<Diagnostic> found = read_diagnostic(api, handle_type, handle, record);
    if (!found) break;
    if (!first) first = found;
    text += "; " + found->state + " " + std::to_string(found->native) + " " + found->text;
  }
  if (!first) throw OdbcError({}, 0, text + " failed without a diagnostic");
  if (first->state == "HY001") throw std::bad_alloc();
  throw OdbcError(first->state, first->native, text);
}

}  // namespace workbench::odbc
