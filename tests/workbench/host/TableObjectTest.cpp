#include "HostObjects.h"
#include "TableObject.h"

using workbench::TableObject;

namespace {

class TableObjectTest : public HostObjects {
 protected:
  base::ComPtr<IkvTable> table_{static_cast<IkvTable*>(new TableObject), false};
};

constexpr long rule_fields[] = {1025, 1077, 1078, 1079, 1080, 1081, 1082, 1083, 1084, 1085, 1160};

TEST_F(TableObjectTest, EmptyTableIsAtItsEnd) {
  EXPECT_EQ(row_count(table_), 0);
  EXPECT_TRUE(at_end(table_));
  EXPECT_EQ(table_->MoveFirst(), S_OK);
  EXPECT_TRUE(at_end(table_));
  EXPECT_EQ(table_->MoveLast(), S_OK);
  EXPECT_TRUE(at_end(table_));
  EXPECT_EQ(table_->MoveNext(), S_FALSE);
}

TEST_F(TableObjectTest, FreeStandingRowHoldsTheDefaults) {
  for (const long field : rule_fields) EXPECT_EQ(table_->AddField(field, 0, 0, 0), S_OK);
  EXPECT_EQ(table_->AppendRow(), S_OK);
  EXPECT_EQ(table_->MoveLast(), S_OK);
  EXPECT_EQ(row_count(table_), 1);
  EXPECT_FALSE(at_end(table_));
  for (const long field : rule_fields) {
    if (field == KVFIELD_RULE_NAME)
      EXPECT_EQ(text_in(table_, field), L"");
    else
      EXPECT_EQ(number_in(table_, field), 0);
  }
}

TEST_F(TableObjectTest, WalkVisitsEveryRowOnce) {
  table_->AddField(KVFIELD_RULE_ID, 0, 0, 0);
  for (long i = 1; i <= 3; ++i) {
    table_->AppendRow();
    table_->MoveLast();
    EXPECT_EQ(field_of(table_, KVFIELD_RULE_ID)->SetLong(i), S_OK);
  }
  long expected = 1;
  for (table_->MoveFirst(); !at_end(table_); table_->MoveNext())
    EXPECT_EQ(number_in(table_, KVFIELD_RULE_ID), expected++);
  EXPECT_EQ(expected, 4);
  EXPECT_EQ(table_->MoveNext(), S_FALSE);
  EXPECT_TRUE(at_end(table_));
}

TEST_F(TableObjectTest, MissingFieldIsSFalseAndNull) {
  table_->AddField(KVFIELD_RULE_ID, 0, 0, 0);
  auto* field = reinterpret_cast<IkvField*>(1);
  EXPECT_EQ(table_->GetFieldByID(KVFIELD_RULE_NAME, &field), S_FALSE);
  EXPECT_EQ(field, nullptr);
}

TEST_F(TableObjectTest, UnknownFieldAndFieldOfAFilledTableAreRefused) {
  EXPECT_EQ(table_->AddField(1086, 0, 0, 0), E_INVALIDARG);
  EXPECT_EQ(table_->AddField(0, 0, 0, 0), E_INVALIDARG);
  EXPECT_EQ(table_->AddField(KVFIELD_RULE_ID, 0, 0, 0), S_OK);
  EXPECT_EQ(table_->AddField(KVFIELD_RULE_ID, 0, 0, 0), S_OK);
  table_->AppendRow();
  EXPECT_EQ(table_->AddField(KVFIELD_RULE_NAME, 0, 0, 0), E_INVALIDARG);
}

TEST_F(TableObjectTest, FieldOfTheWrongTypeIsRefusedAndUnchanged) {
  table_->AddField(KVFIELD_RULE_ID, 0, 0, 0);
  table_->AddField(KVFIELD_RULE_NAME, 0, 0, 0);
  table_->AppendRow();
  const base::ComPtr<IkvField> number = field_of(table_, KVFIELD_RULE_ID);
  const base::ComPtr<IkvField> name = field_of(table_, KVFIELD_RULE_NAME);
  BSTR text = nullptr;
  long value = 5;
  EXPECT_EQ(number->SetText(L"5"), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(number->GetText(&text), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(name->SetLong(5), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(name->GetLong(&value), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(number_in(table_, KVFIELD_RULE_ID), 0);
  EXPECT_EQ(text_in(table_, KVFIELD_RULE_NAME), L"");
}

TEST_F(TableObjectTest, ValuesComeBackAsTheyWereSet) {
  table_->AddField(KVFIELD_RULE_ID, 0, 0, 0);
  table_->AddField(KVFIELD_RULE_NAME, 0, 0, 0);
  table_->AppendRow();
  for (const long value : {LONG_MIN, -1L, 0L, LONG_MAX}) {
    EXPECT_EQ(field_of(table_, KVFIELD_RULE_ID)->SetLong(value), S_OK);
    EXPECT_EQ(number_in(table_, KVFIELD_RULE_ID), value);
  }
  for (const wchar_t* text : {L"沪深300 100%s", L"\xD800 lone", L""}) {
    EXPECT_EQ(field_of(table_, KVFIELD_RULE_NAME)->SetText(text), S_OK);
    EXPECT_EQ(text_in(table_, KVFIELD_RULE_NAME), text);
  }
  field_of(table_, KVFIELD_RULE_NAME)->SetText(L"something");
  EXPECT_EQ(field_of(table_, KVFIELD_RULE_NAME)->SetText(nullptr), S_OK);
  EXPECT_EQ(text_in(table_, KVFIELD_RULE_NAME), L"");
}

TEST_F(TableObjectTest, FieldFollowsTheCurrentRowAndRefusesBeyondTheLast) {
  table_->AddField(KVFIELD_RULE_ID, 0, 0, 0);
  table_->AppendRow();
  table_->AppendRow();
  const base::ComPtr<IkvField> field = field_of(table_, KVFIELD_RULE_ID);
  EXPECT_EQ(field.GetInterfacePtr(), field_of(table_, KVFIELD_RULE_ID).GetInterfacePtr());
  field->SetLong(1);
  table_->MoveNext();
  field->SetLong(2);
  table_->MoveFirst();
  EXPECT_EQ(number_in(table_, KVFIELD_RULE_ID), 1);
  table_->MoveLast();
  EXPECT_EQ(number_in(table_, KVFIELD_RULE_ID), 2);
  table_->MoveNext();
  long value = 5;
  EXPECT_EQ(field->GetLong(&value), DISP_E_BADINDEX);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(field->SetLong(3), DISP_E_BADINDEX);
}

TEST_F(TableObjectTest, FieldOutlivesItsTable) {
  table_->AddField(KVFIELD_RULE_NAME, 0, 0, 0);
  table_->AppendRow();
  const base::ComPtr<IkvField> field = field_of(table_, KVFIELD_RULE_NAME);
  field->SetText(L"kept");
  table_.Release();
  BSTR text = nullptr;
  EXPECT_EQ(field->GetText(&text), S_OK);
  EXPECT_STREQ(text, L"kept");
  SysFreeString(text);
}

TEST_F(TableObjectTest, NullOutPointersAreRefused) {
  table_->AddField(KVFIELD_RULE_NAME, 0, 0, 0);
  table_->AppendRow();
  EXPECT_EQ(table_->GetRowCount(nullptr), E_POINTER);
  EXPECT_EQ(table_->IsEOF(nullptr), E_POINTER);
  EXPECT_EQ(table_->GetFieldByID(KVFIELD_RULE_NAME, nullptr), E_POINTER);
  EXPECT_EQ(field_of(table_, KVFIELD_RULE_NAME)->GetText(nullptr), E_POINTER);
  EXPECT_EQ(field_of(table_, KVFIELD_RULE_NAME)->GetLong(nullptr), E_POINTER);
}

}  // namespace
