#include "ReportText.h"

#include "Json.h"
#include "SnagtrapResource.h"
#include "TextEncoding.h"
#include "Texts.h"

namespace snagtrap {

namespace {

constexpr wchar_t line_end[] = L"\r\n";

struct KindRow {
  const wchar_t* kind;
  UINT caption;
};

constexpr KindRow kinds[] = {
    {L"ASSERT", IDS_ASSERTION_CAPTION},
    {L"CREATE ERROR", IDS_ERROR_CAPTION},
    {L"ERROR", IDS_EXCEPTION_CAPTION},
};

/// Whether the field holds an error code for which the system has a message.
bool is_system_code(std::wstring_view name) { return name == L"HRESULT" || name == L"Last Error Code"; }

std::wstring field_text(const std::wstring& name, const VARIANT& value) {
  std::wstring text = readable(value);
  if (!is_system_code(name) || (value.vt != VT_I4 && value.vt != VT_UI4)) return text;
  wchar_t hexadecimal[16] = {};
  _snwprintf(hexadecimal, 15, L"0x%08lx", value.ulVal);
  const std::wstring message = system_message(value.ulVal);
  return message.empty() ? hexadecimal : hexadecimal + (L" " + message);
}

std::wstring headline(const Record& record) {
  const std::wstring_view description = record.text(L"Description");
  if (!description.empty()) return std::wstring(description);
  const VARIANT* hresult = record.find(L"HRESULT");
  if (!hresult) return load_text(IDS_NO_DESCRIPTION);
  return load_text(IDS_FAILED_CALL) + L' ' + field_text(L"HRESULT", *hresult);
}

/// Leaves markers out, which have no value; an inner record follows with its own fields, indented.
void append_fields(std::wstring& text, const Record& record, const std::wstring& indent) {
  constexpr std::size_t deepest_indent = 8;
  for (const Field& field : record.fields()) {
    const VARIANT& value = field.value.get();
    if (value.vt == VT_EMPTY) continue;
    const bool is_object = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
    const Record* inner = is_object && indent.size() < deepest_indent ? own_record(value.punkVal) : nullptr;
    text += indent + field.name + L": " + (inner ? L"" : field_text(field.name, value)) + line_end;
    if (inner) append_fields(text, *inner, indent + L"  ");
  }
}

}  // namespace

std::optional<UINT> caption_of(const Record& record) {
  const std::wstring_view kind = record.text(L"$Type");
  for (const KindRow& row : kinds) {
    if (kind == row.kind) return row.caption;
  }
  return std::nullopt;
}

ReportText report_text(const Record& record, UINT caption, HRESULT logged) {
  ReportText text{load_text(caption), headline(record), {}, record.location().has_value()};
  append_fields(text.details, record, L"");
  if (FAILED(logged)) {
    text.details += load_text(IDS_NOT_LOGGED) + L' ' + system_message(static_cast<DWORD>(logged)) + line_end;
  }
  return text;
}

std::wstring recent_text(std::string_view lines) {
  if (lines.empty()) return load_text(IDS_NO_RECENT);
  std::wstring text;
  for (const wchar_t unit : base::from_utf8(lines)) {
    if (unit == L'\n') text += L'\r';
    text += unit;
  }
  return text;
}

}  // namespace snagtrap
