#pragma once

#include "InterfaceSupport.h"

namespace IKV_kvudfcom {

/// One field of a table's current row.
struct IkvField : IDispatch {
  KV_RESERVED_SLOT(7);
  KV_RESERVED_SLOT(8);
  KV_RESERVED_SLOT(9);
  KV_RESERVED_SLOT(10);
  KV_RESERVED_SLOT(11);
  KV_RESERVED_SLOT(12);
  KV_RESERVED_SLOT(13);
  KV_RESERVED_SLOT(14);
  KV_RESERVED_SLOT(15);
  KV_RESERVED_SLOT(16);
  KV_RESERVED_SLOT(17);
  KV_RESERVED_SLOT(18);
  KV_RESERVED_SLOT(19);
  KV_RESERVED_SLOT(20);
  /// The caller owns the string.
  virtual HRESULT STDMETHODCALLTYPE GetText(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetText(const wchar_t* text) = 0;
  KV_RESERVED_SLOT(23);
  KV_RESERVED_SLOT(24);
  virtual HRESULT STDMETHODCALLTYPE GetLong(long* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetLong(long value) = 0;
};

/// An in-memory rowset with one current row, filled by a service or row by row by its owner.
struct IkvTable : IDispatch {
  KV_RESERVED_SLOT(7);
  KV_RESERVED_SLOT(8);
  KV_RESERVED_SLOT(9);
  virtual HRESULT STDMETHODCALLTYPE GetRowCount(long* count) = 0;
  KV_RESERVED_SLOT(11);
  KV_RESERVED_SLOT(12);
  KV_RESERVED_SLOT(13);
  /// The field of the current row; S_FALSE and null when the table does not have it.
  virtual HRESULT STDMETHODCALLTYPE GetFieldByID(long fieldId, IkvField** field) = 0;
  KV_RESERVED_SLOT(15);
  virtual HRESULT STDMETHODCALLTYPE AddField(long fieldId, long reserved1, long reserved2, long reserved3) = 0;
  KV_RESERVED_SLOT(17);
  KV_RESERVED_SLOT(18);
  virtual HRESULT STDMETHODCALLTYPE AppendRow() = 0;
  virtual HRESULT STDMETHODCALLTYPE MoveLast() = 0;
  KV_RESERVED_SLOT(21);
  KV_RESERVED_SLOT(22);
  virtual HRESULT STDMETHODCALLTYPE MoveFirst() = 0;
  KV_RESERVED_SLOT(24);
  KV_RESERVED_SLOT(25);
  virtual HRESULT STDMETHODCALLTYPE MoveNext() = 0;
  /// Non-zero once the current row is past the last row, at once for an empty table.
  virtual HRESULT STDMETHODCALLTYPE IsEOF(long* flag) = 0;
};

}  // namespace IKV_kvudfcom

/// The storage object's main interface; only `QueryInterface` is called on it.
struct IkvStorage : IDispatch {};

/// A further interface of the storage object; nothing is called on it.
struct IkvStorageSession : IDispatch {};

/// Selects the rules that `load_rules` delivers.
struct IkvRuleFilter : IDispatch {
  KV_RESERVED_SLOT(7);
  /// Selects the rule with this number, or every rule for 0.
  virtual HRESULT STDMETHODCALLTYPE SetRuleID(long ruleId) = 0;
};

/// Delivers the symbol source settings. Fills an empty table and leaves its first row current.
struct IkvSymbolSourceService : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE load_symbol_source_settings(IkvRuleFilter* filter,
                                                                IKV_kvudfcom::IkvTable* table) = 0;
};

/// Keeps the expiration rules.
struct IkvExpirationRuleService : IDispatch {
  /// Fills an empty table and leaves its first row current.
  virtual HRESULT STDMETHODCALLTYPE load_rules(IkvRuleFilter* filter, IKV_kvudfcom::IkvTable* table) = 0;
  KV_RESERVED_SLOT(8);
  KV_RESERVED_SLOT(9);
  /// Sets `ok` to 1 when the rule was deleted.
  virtual HRESULT STDMETHODCALLTYPE delete_rule(long ruleId, long* ok) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_rule(BSTR ruleName, long rollOffset, long dayType, long dayMode,
                                             long dayOfMonth, long dayMonth, long weekOrdinal, long weekday,
                                             long weekdayMonth, long moveToNextTradingDay, long* ruleId) = 0;
  virtual HRESULT STDMETHODCALLTYPE update_rule(long ruleId, BSTR ruleName, long rollOffset, long dayType, long dayMode,
                                                long dayOfMonth, long dayMonth, long weekOrdinal, long weekday,
                                                long weekdayMonth, long moveToNextTradingDay) = 0;
};

class kvStorage;     ///< names the class of the host's storage object
class kvTable;       ///< names the class of the host's table object
class kvRuleFilter;  ///< names the class of the host's rule filter

KV_UUID(class, kvStorage, "F33B7AFD-0EE3-4D0C-81E2-850D0CC4AE04")
KV_UUID(struct, IkvStorage, "F31B0682-457C-498E-8B9E-8044A8550CFA")
KV_UUID(struct, IkvStorageSession, "2AF9BF52-D25D-4CFF-9DB6-BD5CC4EEDDA9")
KV_UUID(struct, IkvSymbolSourceService, "03F5B253-C02C-4F52-AB35-FA62A3EDFB01")
KV_UUID(struct, IkvExpirationRuleService, "918E43DD-9915-44A7-A1F7-AB3858CDD881")
KV_UUID(class, kvTable, "F611484D-B5F5-4A63-AAA4-4D8E73A6E27D")
KV_UUID_IN(IKV_kvudfcom, struct, IkvTable, "77A6F624-AC87-4E4D-980E-501398C2E343")
KV_UUID_IN(IKV_kvudfcom, struct, IkvField, "BA681102-9599-4166-8ABC-155210EC2CA1")
KV_UUID(class, kvRuleFilter, "D3D48A44-F034-418B-996D-889CF0537E3B")
KV_UUID(struct, IkvRuleFilter, "7B454D2E-C854-44BE-B7AE-9E89D3A6DBF3")
