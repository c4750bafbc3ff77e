#pragma once

#include "ComStrings.h"
#include "FieldIds.h"
#include "Report.h"
#include "StorageBlock.h"

/// How values of one type are read from a field and written to it, and the lines under which support staff know the
/// failures of reading.
template <class Value>
struct FieldAccess;

template <>
struct FieldAccess<long> {
  static constexpr int missing_line = 21;
  static constexpr int lookup_line = 22;
  static constexpr int read_line = 26;

  static HRESULT read(IKV_kvudfcom::IkvField& field, long& value) { return field.GetLong(&value); }
  static HRESULT write(IKV_kvudfcom::IkvField& field, long value) { return field.SetLong(value); }
};

template <>
struct FieldAccess<_bstr_t> {
  static constexpr int missing_line = 37;
  static constexpr int lookup_line = 38;
  static constexpr int read_line = 42;

  static HRESULT read(IKV_kvudfcom::IkvField& field, _bstr_t& value) {
    BSTR text = nullptr;
    const HRESULT hr = field.GetText(&text);
    value = platform::take_string(text);
    return hr;
  }
  static HRESULT write(IKV_kvudfcom::IkvField& field, const _bstr_t& value) { return field.SetText(value); }
};

/// Looks up a field of the table's current row. `table` must not be null.
inline HRESULT find_field(const IkvTablePtr& table, tagKVFIELDID id, IkvFieldPtr& field) {
  return base::fetch_into(field, [&](IKV_kvudfcom::IkvField** out) { return table->GetFieldByID(id, out); });
}

/// Reads a field of the table's current row as `long` or `_bstr_t`. A missing or unreadable field is reported and reads
/// as 0 or empty. Throws a `_com_error` with E_POINTER for a null table.
template <class Value>
Value GetField(const IkvTablePtr& table, tagKVFIELDID id) {
  using Access = FieldAccess<Value>;
  if (!table) throw _com_error(E_POINTER);
  IkvFieldPtr field;
  const HRESULT found = find_field(table, id, field);
  SnagtrapUtil::expect(field, ZD_LOCATION_AT(Access::missing_line));
  if (found != S_OK) SnagtrapUtil::report_hresult(found, ZD_LOCATION_AT(Access::lookup_line));
  if (!field) return Value();
  Value value = Value();
  const HRESULT read = Access::read(*field, value);
  if (read != S_OK) SnagtrapUtil::report_hresult(read, ZD_LOCATION_AT(Access::read_line));
  return SUCCEEDED(read) ? value : Value();
}

/// Writes a field of the table's current row. A missing field or a failed write is reported. Throws a `_com_error` with
/// E_POINTER for a null table.
template <class Value>
void SetField(const IkvTablePtr& table, tagKVFIELDID id, const Value& value) {
  if (!table) throw _com_error(E_POINTER);
  IkvFieldPtr field;
  const HRESULT found = find_field(table, id, field);
  if (found != S_OK) SnagtrapUtil::report_hresult(found, ZD_LOCATION_AT(210));
  if (!field) return;
  const HRESULT written = FieldAccess<Value>::write(*field, value);
  if (written != S_OK) SnagtrapUtil::report_hresult(written, ZD_LOCATION_AT(212));
}
