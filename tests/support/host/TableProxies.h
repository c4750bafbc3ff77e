#pragma once

#include <ocidl.h>

#include <set>

#include "HostStorage.h"
#include "ProxyObject.h"

namespace test_support {

/// A table of the host. It is runnable, as an object of a real host may be, so that running it can fail.
class TableProxy final : public workbench::TableSlots<ProxyObject<IKV_kvudfcom::IkvTable, IRunnableObject>> {
 public:
  TableProxy(std::shared_ptr<HostState> host, const base::ComPtr<IUnknown>& table)
      : TableSlots(std::move(host), "kvTable", table) {}

  HRESULT STDMETHODCALLTYPE GetRowCount(long* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetFieldByID(long field_id, IKV_kvudfcom::IkvField** field) noexcept override;
  HRESULT STDMETHODCALLTYPE AddField(long field_id, long reserved1, long reserved2, long reserved3) noexcept override;
  HRESULT STDMETHODCALLTYPE AppendRow() noexcept override;
  HRESULT STDMETHODCALLTYPE MoveLast() noexcept override;
  HRESULT STDMETHODCALLTYPE MoveFirst() noexcept override;
  HRESULT STDMETHODCALLTYPE MoveNext() noexcept override;
  HRESULT STDMETHODCALLTYPE IsEOF(long* flag) noexcept override;

  HRESULT STDMETHODCALLTYPE Run(IBindCtx* context) noexcept override;
  HRESULT STDMETHODCALLTYPE GetRunningClass(CLSID*) noexcept override { return E_NOTIMPL; }
  BOOL STDMETHODCALLTYPE IsRunning() noexcept override { return TRUE; }
  HRESULT STDMETHODCALLTYPE LockRunning(BOOL, BOOL) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetContainedObject(BOOL) noexcept override { return E_NOTIMPL; }

 private:
  std::shared_ptr<std::set<long>> written_ = std::make_shared<std::set<long>>();  // the fields that a client wrote
};

}  // namespace test_support
