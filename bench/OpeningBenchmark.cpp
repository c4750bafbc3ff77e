// The module's dialogs, from the host's call to their first paint, against dialogs of the same templates with nothing
// behind them.

#include "BareList.h"
#include "Benchmark.h"
#include "BenchmarkHost.h"

namespace {

constexpr int rule_count = 40;
constexpr long shown_rule = 7;

class BareEditor : public platform::CDialogImpl<BareEditor> {
 public:
  static constexpr int IDD = IDD_EDIT_EXPIRATION_RULE;

  BOOL ProcessWindowMessage(HWND, UINT, WPARAM, LPARAM, LRESULT&, DWORD) override { return FALSE; }
};

struct Opening {
  std::vector<std::wstring> names = bench::rule_names(rule_count);
  bench::DialogOwner owner;
  bench::BenchmarkHost stage{names};
};

bench::BaselineComparison list_comparison() {
  bench::prepare_controls();
  const auto opening = std::make_shared<Opening>();
  return {[=] { return opening->owner.time_to_first_paint([&] { opening->stage.open_list(); }); },
          [=] {
            return opening->owner.time_to_first_paint(
                [&] { bench::BareList(opening->names).DoModal(opening->owner.window()); });
          }};
}

bench::BaselineComparison editor_comparison() {
  bench::prepare_controls();
  const auto opening = std::make_shared<Opening>();
  return {[=] { return opening->owner.time_to_first_paint([&] { opening->stage.show_rule(shown_rule); }); },
          [=] { return opening->owner.time_to_first_paint([&] { BareEditor().DoModal(opening->owner.window()); }); }};
}

const bench::Registration list({"opening the list of 40 rules", 1.15, list_comparison});
// No goal: the bare dialog does not even fill its controls.
const bench::Registration editor({"opening the editor", 0, editor_comparison});

}  // namespace
