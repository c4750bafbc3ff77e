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
  /// The field of the current row; S_FALSE and null when the table lacks it.
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

__CRT_UUID_DECL(kvStorage, 0xf33b7afd, 0x0ee3, 0x4d0c, 0x81, 0xe2, 0x85, 0x0d, 0x0c, 0xc4, 0xae, 0x04)
__CRT_UUID_DECL(IkvStorage, 0xf31b0682, 0x457c, 0x498e, 0x8b, 0x9e, 0x80, 0x44, 0xa8, 0x55, 0x0c, 0xfa)
__CRT_UUID_DECL(IkvStorageSession, 0x2af9bf52, 0xd25d, 0x4cff, 0x9d, 0xb6, 0xbd, 0x5c, 0xc4, 0xee, 0xdd, 0xa9)
__CRT_UUID_DECL(IkvSymbolSourceService, 0x03f5b253, 0xc02c, 0x4f52, 0xab, 0x35, 0xfa, 0x62, 0xa3, 0xed, 0xfb, 0x01)
__CRT_UUID_DECL(IkvExpirationRuleService, 0x918e43dd, 0x9915, 0x44a7, 0xa1, 0xf7, 0xab, 0x38, 0x58, 0xcd, 0xd8, 0x81)
__CRT_UUID_DECL(kvTable, 0xf611484d, 0xb5f5, 0x4a63, 0xaa, 0xa4, 0x4d, 0x8e, 0x73, 0xa6, 0xe2, 0x7d)
__CRT_UUID_DECL(IKV_kvudfcom::IkvTable, 0x77a6f624, 0xac87, 0x4e4d, 0x98, 0x0e, 0x50, 0x13, 0x98, 0xc2, 0xe3, 0x43)
__CRT_UUID_DECL(IKV_kvudfcom::IkvField, 0xba681102, 0x9599, 0x4166, 0x8a, 0xbc, 0x15, 0x52, 0x10, 0xec, 0x2c, 0xa1)
__CRT_UUID_DECL(kvRuleFilter, 0xd3d48a44, 0xf034, 0x418b, 0x99, 0x6d, 0x88, 0x9c, 0xf0, 0x53, 0x7e, 0x3b)
__CRT_UUID_DECL(IkvRuleFilter, 0x7b454d2e, 0xc854, 0x44be, 0xb7, 0xae, 0x9e, 0x89, 0xd3, 0xa6, 0xdb, 0xf3)
