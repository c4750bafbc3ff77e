#include "ExpirationRule.h"
#include "StorageTest.h"
#include "Tables.h"
#include "zdStorageGetFieldHelper.h"

namespace storage_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Walk : public StorageTest {
 protected:
  IkvTablePtr three_rows() { return table({{{KVFIELD_RULE_ID, 1}}, {{KVFIELD_RULE_ID, 2}}, {{KVFIELD_RULE_ID, 3}}}); }

  /// The rule numbers that a walk visits, without the calls that read them.
  std::vector<long> walk(const IkvTablePtr& rows) {
    std::vector<long> met;
    for_each_row(rows, [&] { met.push_back(GetField<long>(rows, KVFIELD_RULE_ID)); });
    return met;
  }
};

TEST_F(Walk, AnEmptyTableIsAtItsEndAtOnce) {
  const IkvTablePtr empty = table({});
  for_each_row(empty, [] { FAIL() << "there is no row"; });
  EXPECT_THAT(calls(), ElementsAre("IkvTable::MoveFirst", "IkvTable::IsEOF"));
}

TEST_F(Walk, AsksForTheEndBeforeEachRowAndMovesAfterIt) {
  const IkvTablePtr rows = table({{{KVFIELD_RULE_ID, 1}}, {{KVFIELD_RULE_ID, 2}}});
  for_each_row(rows, [&] { rows->GetRowCount(std::make_unique<long>().get()); });
  EXPECT_THAT(calls(),
              ElementsAre("IkvTable::MoveFirst", "IkvTable::IsEOF", "IkvTable::GetRowCount", "IkvTable::MoveNext",
                          "IkvTable::IsEOF", "IkvTable::GetRowCount", "IkvTable::MoveNext", "IkvTable::IsEOF"));
}

TEST_F(Walk, StartsAtTheFirstRowWhereverTheTableStands) {
  const IkvTablePtr rows = three_rows();
  rows->MoveLast();
  EXPECT_THAT(walk(rows), ElementsAre(1, 2, 3));
}

TEST_F(Walk, LooksAtTheEndFlagAlone) {
  const IkvTablePtr rows = three_rows();
  host.calls().fail_all("IkvTable::MoveFirst", {E_FAIL, Fault::Out::given});
  host.calls().fail_all("IkvTable::IsEOF", {RPC_E_DISCONNECTED, Fault::Out::given});
  host.calls().fail_all("IkvTable::MoveNext", {E_OUTOFMEMORY, Fault::Out::given});
  EXPECT_THAT(walk(rows), ElementsAre(1, 2, 3));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(Walk, KeepsAnEndFlagThatTheHostLeavesUntouchedOnce) {
  for (const HRESULT result : {RPC_E_DISCONNECTED, S_FALSE}) {
    const IkvTablePtr rows = three_rows();
    host.calls().fail("IkvTable::IsEOF", {result}, 2);
    EXPECT_THAT(walk(rows), ElementsAre(1, 2, 3));
  }
}

TEST_F(Walk, EndsWhenTheHostLeavesTheEndFlagUntouchedAtFirst) {
  const IkvTablePtr rows = three_rows();
  host.calls().fail("IkvTable::IsEOF");
  EXPECT_THAT(walk(rows), IsEmpty());
}

TEST_F(Walk, EndsWhenTheHostLeavesTheEndFlagUntouchedForGood) {
  for (const HRESULT result : {E_FAIL, S_OK}) {
    const IkvTablePtr rows = three_rows();
    std::vector<long> met;
    for_each_row(rows, [&] {
      met.push_back(GetField<long>(rows, KVFIELD_RULE_ID));
      host.calls().fail_all("IkvTable::IsEOF", {result});
    });
    host.calls().clear_faults();
    EXPECT_THAT(met, ElementsAre(1, 2)) << result;
  }
}

TEST_F(Walk, VisitsARowAgainWhenTheHostDoesNotMoveOn) {
  const IkvTablePtr rows = three_rows();
  host.calls().fail("IkvTable::MoveNext", {E_FAIL});
  EXPECT_THAT(walk(rows), ElementsAre(1, 1, 2, 3));
}

TEST_F(Walk, StopsAtTheRowThatWantsNoMore) {
  const IkvTablePtr rows = three_rows();
  int met = 0;
  walk_rows(
      rows, [](HRESULT, RowMove) {}, [&] { return ++met < 2; });
  EXPECT_EQ(2, met);
  EXPECT_THAT(calls(), ElementsAre("IkvTable::MoveFirst", "IkvTable::IsEOF", "IkvTable::MoveNext", "IkvTable::IsEOF"));
}

TEST_F(Walk, ShowsEveryResultToTheCheck) {
  const IkvTablePtr rows = table({{{KVFIELD_RULE_ID, 1}}});
  host.calls().fail("IkvTable::MoveFirst", {HRESULT(0x00040001), Fault::Out::given});
  host.calls().fail("IkvTable::IsEOF", {HRESULT(0x00040002), Fault::Out::given});
  host.calls().fail("IkvTable::MoveNext", {HRESULT(0x00040003), Fault::Out::given});
  std::vector<HRESULT> seen;
  std::vector<RowMove> moves;
  const auto check = [&](HRESULT hr, RowMove move) {
    seen.push_back(hr);
    moves.push_back(move);
  };
  walk_rows(rows, check, [] { return true; });
  EXPECT_THAT(seen, ElementsAre(0x00040001, 0x00040002, 0x00040003, S_OK));
  EXPECT_THAT(moves, ElementsAre(RowMove::first, RowMove::at_end, RowMove::next, RowMove::at_end));
}

TEST_F(Walk, EndsWithTheExceptionOfTheCheck) {
  const IkvTablePtr rows = three_rows();
  host.calls().fail("IkvTable::MoveNext", {RPC_E_DISCONNECTED});
  const auto check = [](HRESULT hr, RowMove) {
    if (FAILED(hr)) throw _com_error(hr);
  };
  EXPECT_EQ(RPC_E_DISCONNECTED, thrown_by([&] { walk_rows(rows, check, [] { return true; }); }));
}

TEST_F(Walk, OfNoTableIsAnError) {
  EXPECT_EQ(E_POINTER, thrown_by([] { for_each_row(IkvTablePtr(), [] {}); }));
}

}  // namespace
}  // namespace storage_test
