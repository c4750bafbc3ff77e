#include "Json.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "Bstr.h"
#include "TextEncoding.h"

namespace snagtrap {

namespace {

using nlohmann::json;

/// How deep inner records are written; records can hold each other in a circle.
constexpr int deepest_record = 8;

std::string dump(const json& value) { return value.dump(-1, ' ', false, json::error_handler_t::replace); }

template <class Number>
std::wstring formatted(const wchar_t* format, Number number) {
  wchar_t text[24] = {};
  _snwprintf(text, 23, format, number);
  return text;
}

std::wstring address(const void* pointer) { return formatted(L"0x%016llx", reinterpret_cast<ULONG_PTR>(pointer)); }

/// What the system converts a value to without regard to the user's language. Arrays, whose bytes it would take for
/// characters, and what it cannot convert are named by the number of their type.
std::wstring system_text(const VARIANT& value) {
  Value text;
  const HRESULT changed = value.vt & VT_ARRAY ? DISP_E_TYPEMISMATCH
                                              : VariantChangeTypeEx(text.out(), const_cast<VARIANT*>(&value),
                                                                    LOCALE_INVARIANT, VARIANT_NOVALUEPROP, VT_BSTR);
  if (FAILED(changed)) return L"VARIANT type " + std::to_wstring(value.vt);
  return std::wstring(base::view_of(text.get().bstrVal));
}

/// Stands for a value that JSON can only hold as a text.
constexpr auto no_literal = json::value_t::discarded;

json real_number(double number) { return std::isfinite(number) ? json(number) : json(no_literal); }

/// The value as JSON's null, truth value or number; discarded when it needs a text.
json literal_of(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return nullptr;
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE;
    case VT_I1:
      return static_cast<signed char>(value.cVal);
    case VT_UI1:
      return value.bVal;
    case VT_I2:
      return value.iVal;
    case VT_UI2:
      return value.uiVal;
    case VT_I4:
    case VT_INT:
      return value.lVal;
    case VT_UI4:
    case VT_UINT:
      return value.ulVal;
    case VT_R4:
      return real_number(static_cast<double>(value.fltVal));
    case VT_R8:
      return real_number(value.dblVal);
    default:
      return no_literal;
  }
}

std::wstring text_of(const VARIANT& value) {
  switch (value.vt) {
    case VT_BSTR:
      return std::wstring(base::view_of(value.bstrVal));
    case VT_UI8:
      return address(reinterpret_cast<const void*>(value.ullVal));
    case VT_ERROR:
      return formatted(L"0x%08lx", value.scode);
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return address(value.punkVal);
    default:
      return system_text(value);
  }
}

const Record* inner_record(const VARIANT& value) noexcept {
  return value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN ? own_record(value.punkVal) : nullptr;
}

std::string fields_json(const Record& record, std::size_t text_limit, int depth) {
  JsonObject object;
  for (const Field& field : record.fields()) {
    const VARIANT& value = field.value.get();
    const Record* inner = depth < deepest_record ? inner_record(value) : nullptr;
    const json literal = literal_of(value);
    if (inner) {
      object.add(field.name, fields_json(*inner, text_limit, depth + 1));
    } else {
      object.add(field.name, literal.is_discarded() ? text_json(text_of(value), text_limit) : dump(literal));
    }
  }
  return object.json();
}

}  // namespace

std::string text_json(std::wstring_view text, std::size_t limit) {
  const bool cut = text.size() > limit;
  std::string utf8 = base::to_utf8(text.substr(0, limit));
  if (cut) utf8 += "...";
  return dump(json(std::move(utf8)));
}

std::string record_json(const Record& record, std::size_t text_limit) { return fields_json(record, text_limit, 0); }

std::wstring readable(const VARIANT& value) {
  const json literal = literal_of(value);
  if (literal.is_discarded()) return text_of(value);
  const std::string ascii = dump(literal);
  return {ascii.begin(), ascii.end()};
}

void JsonObject::add(std::wstring_view name, std::string_view value) {
  if (!members_.empty()) members_ += ',';
  members_ += text_json(name);
  members_ += ':';
  members_ += value;
}

}  // namespace snagtrap
