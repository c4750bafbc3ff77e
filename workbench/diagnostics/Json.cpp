#include "Json.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace snagtrap {

namespace {

/// Records can hold each other in a circle; nobody reads deeper than this.
constexpr int deepest_record = 8;

bool is_high_surrogate(wchar_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }

bool is_low_surrogate(wchar_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }

void append_utf8(std::string& out, std::uint32_t code_point) {
  const auto byte = [&out](std::uint32_t value) { out += static_cast<char>(static_cast<unsigned char>(value)); };
  if (code_point < 0x80) {
    byte(code_point);
  } else if (code_point < 0x800) {
    byte(0xC0 | code_point >> 6);
    byte(0x80 | (code_point & 0x3F));
  } else if (code_point < 0x10000) {
    byte(0xE0 | code_point >> 12);
    byte(0x80 | (code_point >> 6 & 0x3F));
    byte(0x80 | (code_point & 0x3F));
  } else {
    byte(0xF0 | code_point >> 18);
    byte(0x80 | (code_point >> 12 & 0x3F));
    byte(0x80 | (code_point >> 6 & 0x3F));
    byte(0x80 | (code_point & 0x3F));
  }
}

void append_escaped(std::string& out, wchar_t unit) {
  char escape[8] = {};
  _snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
  out += escape;
}

void append_unit(std::string& out, wchar_t unit) {
  switch (unit) {
    case L'"':
      out += "\\\"";
      return;
    case L'\\':
      out += "\\\\";
      return;
    case L'\n':
      out += "\\n";
      return;
    case L'\r':
      out += "\\r";
      return;
    case L'\t':
      out += "\\t";
      return;
    default:
      break;
  }
  if (unit < 0x20 || unit == 0x7F || is_high_surrogate(unit) || is_low_surrogate(unit)) {
    append_escaped(out, unit);
  } else {
    append_utf8(out, unit);
  }
}

/// Formats with the C rules for numbers, whatever locale the host has set.
template <class Number>
std::string formatted(const char* format, Number number) {
  char text[40] = {};
  _snprintf(text, sizeof text, format, number);
  for (char& character : text) {
    if (character == ',') character = '.';
  }
  return text;
}

std::wstring widened(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

std::wstring address(const void* pointer) {
  return widened(formatted("0x%016llx", reinterpret_cast<unsigned long long>(pointer)));
}

/// What the system makes of a value without regard to the user's language; its type's number when it makes nothing, and
/// for arrays, whose bytes it would take for characters.
std::wstring system_text(const VARIANT& value) {
  Value text;
  const HRESULT changed = value.vt & VT_ARRAY ? DISP_E_TYPEMISMATCH
                                              : VariantChangeTypeEx(text.out(), const_cast<VARIANT*>(&value),
                                                                    LOCALE_INVARIANT, VARIANT_NOVALUEPROP, VT_BSTR);
  if (FAILED(changed)) return L"VARIANT type " + std::to_wstring(value.vt);
  return {text.get().bstrVal ? text.get().bstrVal : L"", SysStringLen(text.get().bstrVal)};
}

/// The JSON of a value that JSON itself knows how to write; empty for all others.
std::string literal_of(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return "null";
    case VT_BOOL:
      return value.boolVal ? "true" : "false";
    case VT_I1:
      return std::to_string(static_cast<signed char>(value.cVal));
    case VT_UI1:
      return std::to_string(value.bVal);
    case VT_I2:
      return std::to_string(value.iVal);
    case VT_UI2:
      return std::to_string(value.uiVal);
    case VT_I4:
    case VT_INT:
      return std::to_string(value.lVal);
    case VT_UI4:
    case VT_UINT:
      return std::to_string(value.ulVal);
    case VT_R4:
      return std::isfinite(value.fltVal) ? formatted("%.9g", static_cast<double>(value.fltVal)) : std::string();
    case VT_R8:
      return std::isfinite(value.dblVal) ? formatted("%.17g", value.dblVal) : std::string();
    default:
      return {};
  }
}

std::wstring text_of(const VARIANT& value) {
  switch (value.vt) {
    case VT_BSTR:
      return {value.bstrVal ? value.bstrVal : L"", SysStringLen(value.bstrVal)};
    case VT_R4:
      return widened(formatted("%g", static_cast<double>(value.fltVal)));
    case VT_R8:
      return widened(formatted("%g", value.dblVal));
    case VT_I8:
      return std::to_wstring(value.llVal);
    case VT_UI8:
      return address(reinterpret_cast<const void*>(value.ullVal));
    case VT_ERROR:
      return widened(formatted("0x%08lx", value.scode));
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

void write_fields(JsonWriter& json, const Record& record, int depth) {
  json.begin_object();
  for (const Field& field : record.fields()) {
    json.name(field.name);
    const VARIANT& value = field.value.get();
    const std::string literal = literal_of(value);
    const Record* inner = depth < deepest_record ? inner_record(value) : nullptr;
    if (!literal.empty()) {
      json.literal(literal);
    } else if (inner) {
      write_fields(json, *inner, depth + 1);
    } else {
      json.text(text_of(value));
    }
  }
  json.end_object();
}

}  // namespace

void JsonWriter::begin_object() {
  separate();
  json_ += '{';
  needs_comma_ = false;
}

void JsonWriter::end_object() {
  json_ += '}';
  needs_comma_ = true;
}

void JsonWriter::name(std::wstring_view name) {
  separate();
  quoted(name);
  json_ += ':';
  needs_comma_ = false;
}

void JsonWriter::text(std::wstring_view text) {
  separate();
  quoted(text);
}

void JsonWriter::literal(std::string_view json) {
  separate();
  json_ += json;
}

void JsonWriter::integer(long long value) { literal(std::to_string(value)); }

void JsonWriter::separate() {
  if (needs_comma_) json_ += ',';
  needs_comma_ = true;
}

void JsonWriter::quoted(std::wstring_view text) {
  const bool cut = text.size() > text_limit_;
  if (cut) text = text.substr(0, text_limit_);
  json_ += '"';
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = is_high_surrogate(text[i]) && i + 1 < text.size() && is_low_surrogate(text[i + 1]);
    if (pair) {
      append_utf8(json_, 0x10000 + ((text[i] & 0x3FFu) << 10) + (text[i + 1] & 0x3FFu));
      ++i;
    } else {
      append_unit(json_, text[i]);
    }
  }
  json_ += cut ? "...\"" : "\"";
}

void write_record(JsonWriter& json, const Record& record) { write_fields(json, record, 0); }

std::wstring readable(const VARIANT& value) {
  const std::string literal = literal_of(value);
  return literal.empty() ? text_of(value) : widened(literal);
}

}  // namespace snagtrap
