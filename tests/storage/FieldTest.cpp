#include "ComStrings.h"
#include "StorageTest.h"
#include "zdStorageGetFieldHelper.h"

namespace storage_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Field : public StorageTest {
 protected:
  IkvTablePtr row = table({{{KVFIELD_RULE_ID, 42}, {KVFIELD_RULE_NAME, L"IF"}}});

  long number(tagKVFIELDID id = KVFIELD_RULE_ID) { return GetField<long>(row, id); }
  _bstr_t text(tagKVFIELDID id = KVFIELD_RULE_NAME) { return GetField<_bstr_t>(row, id); }
  void set(long value) { SetField(row, KVFIELD_RULE_ID, value); }
  void set(const wchar_t* value) { SetField(row, KVFIELD_RULE_NAME, _bstr_t(value)); }

  ~Field() override {
    row = nullptr;
    EXPECT_THAT(host.living(), ElementsAre("kvStorage with references: 4")) << "every field is released";
  }
};

TEST_F(Field, ReadsANumber) {
  EXPECT_EQ(42, number());
  EXPECT_THAT(calls(), ElementsAre("IkvTable::GetFieldByID(1025)", "IkvField::GetLong(1025)"));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(Field, ReadsTheLimitsOfANumber) {
  for (const long limit : {LONG_MIN, LONG_MAX, -1L}) {
    set(limit);
    EXPECT_EQ(limit, number());
  }
}

TEST_F(Field, ReadsAText) {
  EXPECT_EQ(L"IF", std::wstring(text()));
  EXPECT_THAT(calls(), ElementsAre("IkvTable::GetFieldByID(1077)", "IkvField::GetText(1077)"));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(Field, ReadsANullTextAsAnEmptyHolder) {
  host.odd_values()[KVFIELD_RULE_NAME] = {};
  const _bstr_t value = text();
  EXPECT_EQ(0u, value.length());
  EXPECT_TRUE(platform::same_text(value, _bstr_t(L"")));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(Field, KeepsEveryUnitOfAText) {
  const std::wstring odd(L"\"%s\" \xD83D\xDE00 \xD800 \x0001 \t\n\0 end", 19);
  host.odd_values()[KVFIELD_RULE_NAME] = odd;
  const _bstr_t value = text();
  EXPECT_EQ(odd, std::wstring(static_cast<const wchar_t*>(value), value.length()));
}

TEST_F(Field, OfNoTableIsAnErrorInBothDirections) {
  row = nullptr;
  EXPECT_EQ(E_POINTER, thrown_by([&] { number(); }));
  EXPECT_EQ(E_POINTER, thrown_by([&] { text(); }));
  EXPECT_EQ(E_POINTER, thrown_by([&] { set(1); }));
  EXPECT_EQ(E_POINTER, thrown_by([&] { set(L"a"); }));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(Field, ThatIsMissingReadsAsZeroWithAnAssertionAndAReport) {
  EXPECT_EQ(0, number(KVFIELD_SETTING_NAME));
  EXPECT_THAT(reports(), ElementsAre("ASSERT field != 0 | zdStorageGetFieldHelper.h:21 GetField",
                                     "ASSERT 00000001 | zdStorageGetFieldHelper.h:22 GetField"));
}

TEST_F(Field, ThatIsMissingReadsAsEmptyWithAnAssertionAndAReport) {
  EXPECT_EQ(0u, text(KVFIELD_SETTING_NAME).length());
  EXPECT_THAT(reports(), ElementsAre("ASSERT field != 0 | zdStorageGetFieldHelper.h:37 GetField",
                                     "ASSERT 00000001 | zdStorageGetFieldHelper.h:38 GetField"));
}

TEST_F(Field, LookedUpWithoutResultIsAssertedAlone) {
  host.calls().fail_all("IkvTable::GetFieldByID", {S_OK, Fault::Out::null});
  EXPECT_EQ(0, number());
  EXPECT_EQ(0u, text().length());
  EXPECT_THAT(reports(), ElementsAre("ASSERT field != 0 | zdStorageGetFieldHelper.h:21 GetField",
                                     "ASSERT field != 0 | zdStorageGetFieldHelper.h:37 GetField"));
}

TEST_F(Field, LookedUpWithAFailureIsReportedWithIt) {
  host.calls().fail_all("IkvTable::GetFieldByID", {E_FAIL, Fault::Out::untouched});
  EXPECT_EQ(0, number());
  EXPECT_EQ(0u, text().length());
  EXPECT_THAT(reports(), ElementsAre("ASSERT field != 0 | zdStorageGetFieldHelper.h:21 GetField",
                                     "ASSERT 80004005 | zdStorageGetFieldHelper.h:22 GetField",
                                     "ASSERT field != 0 | zdStorageGetFieldHelper.h:37 GetField",
                                     "ASSERT 80004005 | zdStorageGetFieldHelper.h:38 GetField"));
}

TEST_F(Field, ThatIsGivenInSpiteOfTheResultIsReportedAndRead) {
  for (const HRESULT result : {E_FAIL, S_FALSE}) {
    host.calls().fail_all("IkvTable::GetFieldByID", {result, Fault::Out::given});
    EXPECT_EQ(42, number());
    EXPECT_EQ(L"IF", std::wstring(text()));
    host.calls().clear_faults();
  }
  EXPECT_THAT(reports(), ElementsAre("ASSERT 80004005 | zdStorageGetFieldHelper.h:22 GetField",
                                     "ASSERT 80004005 | zdStorageGetFieldHelper.h:38 GetField",
                                     "ASSERT 00000001 | zdStorageGetFieldHelper.h:22 GetField",
                                     "ASSERT 00000001 | zdStorageGetFieldHelper.h:38 GetField"));
}

TEST_F(Field, ThatCannotBeReadIsReportedAndReadsAsNothing) {
  for (const Fault::Out out : {Fault::Out::untouched, Fault::Out::null, Fault::Out::given}) {
    host.calls().fail("IkvField::GetLong", {E_OUTOFMEMORY, out});
    host.calls().fail("IkvField::GetText", {E_OUTOFMEMORY, out});
    EXPECT_EQ(0, number());
    EXPECT_EQ(0u, text().length());
    EXPECT_THAT(reports(), ElementsAre("ASSERT 8007000e | zdStorageGetFieldHelper.h:26 GetField",
                                       "ASSERT 8007000e | zdStorageGetFieldHelper.h:42 GetField"));
  }
}

TEST_F(Field, OfAnotherKindIsReportedAndReadsAsNothing) {
  EXPECT_EQ(0, number(KVFIELD_RULE_NAME));
  EXPECT_EQ(0u, text(KVFIELD_RULE_ID).length());
  EXPECT_THAT(reports(), ElementsAre("ASSERT 80020005 | zdStorageGetFieldHelper.h:26 GetField",
                                     "ASSERT 80020005 | zdStorageGetFieldHelper.h:42 GetField"));
}

TEST_F(Field, ReadWithAnotherSuccessIsReportedAndCounts) {
  host.calls().fail("IkvField::GetLong", {S_FALSE, Fault::Out::given});
  host.calls().fail("IkvField::GetText", {S_FALSE, Fault::Out::given});
  EXPECT_EQ(42, number());
  EXPECT_EQ(L"IF", std::wstring(text()));
  EXPECT_THAT(reports(), ElementsAre("ASSERT 00000001 | zdStorageGetFieldHelper.h:26 GetField",
                                     "ASSERT 00000001 | zdStorageGetFieldHelper.h:42 GetField"));
}

TEST_F(Field, ReadWithoutAResultIsNothing) {
  host.calls().fail("IkvField::GetLong", {S_OK, Fault::Out::untouched});
  host.calls().fail("IkvField::GetText", {S_OK, Fault::Out::untouched});
  EXPECT_EQ(0, number());
  EXPECT_EQ(0u, text().length());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(Field, IsWritten) {
  set(7);
  set(L"CU");
  EXPECT_THAT(calls(), ElementsAre("IkvTable::GetFieldByID(1025)", "IkvField::SetLong(1025, 7)",
                                   "IkvTable::GetFieldByID(1077)", "IkvField::SetText(1077, \"CU\")"));
  EXPECT_EQ(7, number());
  EXPECT_EQ(L"CU", std::wstring(text()));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(Field, ThatIsMissingIsReportedWhenWritten) {
  SetField(row, KVFIELD_SETTING_NAME, 1L);
  SetField(row, KVFIELD_SETTING_NAME, _bstr_t(L"a"));
  EXPECT_THAT(reports(), ElementsAre("ASSERT 00000001 | zdStorageGetFieldHelper.h:210 SetField",
                                     "ASSERT 00000001 | zdStorageGetFieldHelper.h:210 SetField"));
}

TEST_F(Field, LookedUpWithoutResultIsNotWritten) {
  host.calls().fail_all("IkvTable::GetFieldByID", {S_OK, Fault::Out::null});
  set(7);
  set(L"CU");
  EXPECT_THAT(host.calls().all("IkvField::"), IsEmpty());
}

TEST_F(Field, ThatIsGivenInSpiteOfTheResultIsReportedAndWritten) {
  host.calls().fail_all("IkvTable::GetFieldByID", {E_FAIL, Fault::Out::given});
  set(7);
  set(L"CU");
  EXPECT_THAT(reports(), ElementsAre("ASSERT 80004005 | zdStorageGetFieldHelper.h:210 SetField",
                                     "ASSERT 80004005 | zdStorageGetFieldHelper.h:210 SetField"));
  host.calls().clear_faults();
  EXPECT_EQ(7, number());
  EXPECT_EQ(L"CU", std::wstring(text()));
}

TEST_F(Field, ThatCannotBeWrittenIsReported) {
  for (const HRESULT result : {E_FAIL, S_FALSE}) {
    host.calls().fail("IkvField::SetLong", {result});
    host.calls().fail("IkvField::SetText", {result});
    set(7);
    set(L"CU");
  }
  EXPECT_THAT(reports(), ElementsAre("ASSERT 80004005 | zdStorageGetFieldHelper.h:212 SetField",
                                     "ASSERT 80004005 | zdStorageGetFieldHelper.h:212 SetField",
                                     "ASSERT 00000001 | zdStorageGetFieldHelper.h:212 SetField",
                                     "ASSERT 00000001 | zdStorageGetFieldHelper.h:212 SetField"));
  EXPECT_EQ(42, number());
}

TEST_F(Field, IsReportedWithTheFullSignatureAndWithoutADescription) {
  host.calls().fail("IkvField::GetLong", {E_FAIL});
  number();
  const auto reported = test_support::take_records();
  ASSERT_EQ(1u, reported.size());
  EXPECT_THAT(field_text(reported[0], L"$FuncSig"), testing::HasSubstr(L"GetField"));
  EXPECT_GT(field_text(reported[0], L"$FuncSig").size(), std::wstring(L"GetField").size());
  EXPECT_EQ(nullptr, find_field(reported[0], L"Description"));
}

}  // namespace
}  // namespace storage_test
