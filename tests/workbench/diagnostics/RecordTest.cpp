#include <gtest/gtest.h>

#include "Record.h"
#include "TestRecords.h"

namespace snagtrap_test {
namespace {

using workbench::live_dispatch_objects;

TEST(Record, KeepsFieldsInTheOrderOfTheirFirstSetting) {
  RecordPtr record = create_record();
  set_text(*record, L"b", L"1");
  set_text(*record, L"a", L"2");
  set_text(*record, L"b", L"3");
  ASSERT_EQ(record->fields().size(), 2u);
  EXPECT_EQ(record->fields()[0].name, L"b");
  EXPECT_EQ(record->text(L"b"), L"3");
  EXPECT_EQ(record->text(L"a"), L"2");
}

TEST(Record, CopiesWhatItIsGiven) {
  RecordPtr record = create_record();
  VARIANT value{};
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(L"before");
  set(*record, L"a", value);
  value.bstrVal[0] = L'x';
  VariantClear(&value);
  EXPECT_EQ(record->text(L"a"), L"before");
}

TEST(Record, CopiesWhatIsOnlyReferredTo) {
  RecordPtr record = create_record();
  LONG number = 5;
  VARIANT value{};
  value.vt = VT_I4 | VT_BYREF;
  value.plVal = &number;
  EXPECT_EQ(set(*record, L"a", value), S_OK);
  number = 6;
  EXPECT_EQ(record->find(L"a")->vt, VT_I4);
  EXPECT_EQ(record->integer(L"a"), 5);
}

TEST(Record, RefusesANullNameANullReferenceAndAnUnknownType) {
  RecordPtr record = create_record();
  VARIANT value{};
  EXPECT_EQ(record->SetField(nullptr, value), E_INVALIDARG);
  value.vt = VT_I4 | VT_BYREF;
  EXPECT_EQ(set(*record, L"a", value), E_INVALIDARG);
  value.vt = 0x0FFE;
  EXPECT_TRUE(FAILED(set(*record, L"a", value)));
  EXPECT_TRUE(record->fields().empty());
}

TEST(Record, RefusesItself) {
  RecordPtr record = create_record();
  EXPECT_EQ(set_object(*record, L"Inner", record), E_INVALIDARG);
}

TEST(Record, HoldsObjectsUntilItIsDestroyed) {
  const long before = live_dispatch_objects;
  RecordPtr outer = create_record();
  {
    RecordPtr inner = create_record();
    set_object(*outer, L"Inner", inner);
  }
  EXPECT_EQ(live_dispatch_objects, before + 2);
  outer = nullptr;
  EXPECT_EQ(live_dispatch_objects, before);
}

TEST(Record, HasALocation) {
  RecordPtr record = create_record();
  EXPECT_FALSE(record->location());
  set_text(*record, L"File", L"Some.cpp");
  EXPECT_EQ(record->location()->line, 0);
  set_number(*record, L"Line", 70);
  EXPECT_EQ(record->location()->file, L"Some.cpp");
  EXPECT_EQ(record->location()->line, 70);
}

TEST(Record, IsRecognisedAmongOtherObjects) {
  RecordPtr record = create_record();
  EXPECT_EQ(snagtrap::own_record(static_cast<IDispatch*>(record)), record.GetInterfacePtr());
  EXPECT_EQ(snagtrap::own_record(nullptr), nullptr);
  IMalloc* other = nullptr;
  ASSERT_EQ(CoGetMalloc(1, &other), S_OK);
  EXPECT_EQ(snagtrap::own_record(other), nullptr);
  other->Release();
}

}  // namespace
}  // namespace snagtrap_test
