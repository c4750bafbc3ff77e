// The rule list reads its rules anew from the host and shows them, against the same by hand, and against the bare
// insertion of the same texts.

#include "BareList.h"
#include "Benchmark.h"
#include "ExpirationRulesListDialog.h"
#include "FairList.h"
#include "RuleHost.h"

namespace {

using zd_expiration_rule_plugin::CExpirationRulesListDialog;

/// A modeless dialog on the screen.
template <class Dialog>
struct Shown {
  template <class... Arguments>
  explicit Shown(Arguments&&... arguments) : dialog(std::forward<Arguments>(arguments)...) {
    ShowWindow(dialog.Create(nullptr), SW_SHOWNOACTIVATE);
  }
  ~Shown() { DestroyWindow(dialog.m_hWnd); }
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;

  Dialog dialog;
};

struct RuleList {
  explicit RuleList(const std::vector<std::wstring>& names) : host(names), block(host.storage_block()), shown(&block) {}

  bench::RuleHost host;
  StorageBlock block;
  Shown<CExpirationRulesListDialog> shown;
};

/// What a refill leaves to be painted is the same for both and does not count.
template <class Refill>
bench::Reading measure(HWND dialog, int repetitions, const Refill& refill) {
  bench::Stopwatch watch;
  for (int i = 0; i < repetitions; ++i) {
    watch.start();
    refill();
    watch.stop();
    RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  }
  return watch.reading(repetitions);
}

bench::BaselineComparison refill_comparison(int count, int repetitions) {
  bench::prepare_controls();
  const std::vector<std::wstring> names = bench::rule_names(count);
  const auto list = std::make_shared<RuleList>(names);
  const auto fair = std::make_shared<Shown<bench::FairList>>(list->block, L"");
  const auto bare = std::make_shared<Shown<bench::BareList>>(names);
  return {[=] {
            auto& dialog = list->shown.dialog;
            return measure(dialog.m_hWnd, repetitions, [&] { dialog.update_expiration_rule_list(); });
          },
          // The rules belong to the list.
          [=, owner = list] { return measure(fair->dialog.m_hWnd, repetitions, [&] { fair->dialog.fill(); }); },
          [=] { return measure(bare->dialog.m_hWnd, repetitions, [&] { bare->dialog.fill(); }); }};
}

const bench::Registration ten({"refill of 10 rules", 1.15, 0, 1.25, 1.0, [] { return refill_comparison(10, 20); }});
const bench::Registration thousand({"refill of 1,000 rules", 1.08, 0, 1.1, 1.0,
                                    [] { return refill_comparison(1'000, 1); }});
const bench::Registration many({"refill of 20,000 rules", 1.08, 0, 1.1, 1.0,
                                [] { return refill_comparison(20'000, 1); }});

}  // namespace
