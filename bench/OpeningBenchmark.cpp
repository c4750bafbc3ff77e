// The module's dialogs, from the host's call to their first paint, against dialogs of the same templates that are
// filled by hand, and against bare ones.

#include "BareList.h"
#include "Benchmark.h"
#include "BenchmarkHost.h"
#include "FairEditor.h"
#include "FairList.h"
#include "RegistryHelper.h"

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
  bench::BenchmarkHost host{names};
  StorageBlock block = host.rules().storage_block();
};

template <class... Open>
bench::BaselineComparison comparison(const Open&... open) {
  bench::prepare_controls();
  const auto opening = std::make_shared<Opening>();
  return {[=] { return opening->owner.time_to_first_paint([&] { open(*opening); }); }...};
}

bench::BaselineComparison list_comparison() {
  const std::wstring path = static_cast<const wchar_t*>(zd_common::ZDRegistryPath());
  return comparison([](Opening& opening) { opening.host.open_list(); },
                    [=](Opening& opening) {
                      bench::FairList(opening.block, path + L"\\Windows Placement").DoModal(opening.owner.window());
                    },
                    [](Opening& opening) { bench::BareList(opening.names).DoModal(opening.owner.window()); });
}

bench::BaselineComparison editor_comparison() {
  return comparison(
      [](Opening& opening) { opening.host.show_rule(shown_rule); },
      [](Opening& opening) { bench::FairEditor(opening.block, shown_rule).DoModal(opening.owner.window()); },
      [](Opening& opening) { BareEditor().DoModal(opening.owner.window()); });
}

const bench::Registration list({"opening the list of 40 rules", 1.05, 1.15, 1.8, 1.07, list_comparison});
// The bare dialog does not even fill its controls.
const bench::Registration editor({"opening the editor", 1.05, 0, 1.07, 1.05, editor_comparison});

}  // namespace
