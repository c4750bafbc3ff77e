#pragma once

#include <gtest/gtest.h>

#include "Bstr.h"
#include "ComPtr.h"
#include "DispatchObject.h"
#include "HostStorage.h"

using IKV_kvudfcom::IkvField;
using IKV_kvudfcom::IkvTable;

/// Fails a test after which an object of the host is still alive.
class HostObjects : public testing::Test {
 protected:
  ~HostObjects() override { EXPECT_EQ(workbench::live_dispatch_objects, before_); }

 private:
  long before_ = workbench::live_dispatch_objects;
};

/// The field of the current row, or null.
inline base::ComPtr<IkvField> field_of(IkvTable* table, long id) {
  base::ComPtr<IkvField> field;
  table->GetFieldByID(id, &field);
  return field;
}

inline long number_in(IkvTable* table, long id) {
  long value = -77;
  EXPECT_EQ(field_of(table, id)->GetLong(&value), S_OK);
  return value;
}

inline std::wstring text_in(IkvTable* table, long id) {
  base::OwnedBstr text;
  EXPECT_EQ(field_of(table, id)->GetText(text.put()), S_OK);
  return std::wstring(base::view_of(text.get()));
}

inline long row_count(IkvTable* table) {
  long count = -77;
  EXPECT_EQ(table->GetRowCount(&count), S_OK);
  return count;
}

inline bool at_end(IkvTable* table) {
  long flag = -77;
  EXPECT_EQ(table->IsEOF(&flag), S_OK);
  return flag != 0;
}
