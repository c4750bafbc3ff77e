#include <gtest/gtest.h>

#include <set>

#include "StoreMessages.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {
namespace {

TEST(Texts, MissingTextIsEmpty) { EXPECT_EQ(text(9999), L""); }

TEST(Texts, InsertsTakeTheirPlaces) {
  EXPECT_EQ(text(IDS_WEEKDAY_OF_MONTH, {L"[1]", L"[2]", L"[3]"}), L"[1]第 [2] 个[3]");
}

TEST(Texts, PercentSignsOfAnInsertAreLeftAlone) {
  EXPECT_EQ(text(IDS_RULE_COUNT, {L"%1 %2 %n %s"}), L"%1 %2 %n %s 条规则");
}

TEST(Texts, HresultIsDescribedWithItsNumber) {
  EXPECT_NE(describe(E_ACCESSDENIED).find(L"0x80070005"), std::wstring::npos);
  EXPECT_NE(describe(static_cast<HRESULT>(0xA0123456)).find(L"0xA0123456"), std::wstring::npos);
}

TEST(StoreMessages, EveryKindOfRefusalHasAMessageOfItsOwnThatNamesItsSubject) {
  std::set<std::wstring> messages;
  constexpr int kinds = static_cast<int>(StoreErrorKind::uncertain) + 1;
  for (int kind = 0; kind < kinds; ++kind) {
    const std::wstring message = store_message({static_cast<StoreErrorKind>(kind), L"SUBJECT", "detail"});
    EXPECT_NE(message.find(L"SUBJECT"), std::wstring::npos) << kind;
    messages.insert(message);
  }
  EXPECT_EQ(messages.size(), static_cast<size_t>(kinds));
}

TEST(StoreMessages, DuplicateWhoseNameIsNotKnownNamesNoStore) {
  const std::wstring said = store_message({StoreErrorKind::duplicate_name, L"", "detail"});
  EXPECT_EQ(said, text(IDS_STORE_DUPLICATE_NAMES));
  EXPECT_EQ(said.find(L'“'), std::wstring::npos);
}

TEST(StoreMessages, UncertainChangeIsNotCalledUnsaved) {
  const StoreError uncertain(StoreErrorKind::uncertain, L"SUBJECT", "detail");
  const StoreError lost(StoreErrorKind::connection_lost, L"SUBJECT", "detail");
  const Rule rule{.name = L"NAME"};
  for (const Rule* unsaved : {static_cast<const Rule*>(nullptr), &rule}) {
    EXPECT_NE(store_failure(lost, unsaved).find(L"保持不变"), std::wstring::npos);
    EXPECT_EQ(store_failure(uncertain, unsaved).find(L"保持不变"), std::wstring::npos);
    EXPECT_EQ(store_failure(uncertain, unsaved).find(L"没有保存。"), std::wstring::npos);
    EXPECT_NE(store_failure(uncertain, unsaved).find(store_message(uncertain)), std::wstring::npos);
  }
  EXPECT_NE(store_failure(uncertain, &rule).find(L"NAME"), std::wstring::npos);
}

}  // namespace
}  // namespace workbench
