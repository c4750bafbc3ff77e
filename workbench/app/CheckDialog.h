#pragma once

#include "CheckModel.h"
#include "DatesDialog.h"

namespace workbench {

/// The results of a check.
class CheckResults final : public ListPane {
 public:
  explicit CheckResults(HWND parent);

  void show(CheckedList list);

 protected:
  std::wstring cell(size_t row, size_t column) const override;
  std::optional<COLORREF> row_color(size_t row) const override;

 private:
  CheckedList list_;
};

/// The dialog that compares an imported list of contracts and last trading days with the rules.
class CheckDialog final : public DatesDialog {
 public:
  CheckDialog(const ScheduleData& data, const FileDialogs& files);

 protected:
  void on_init() override;
  void on_command(WORD id, WORD code) override;
  LRESULT on_notify(NMHDR& notification) override;

 private:
  void import();
  void check();
  CheckChoice choice() const;
  void show(const CheckedList& list);

  schedule::DateList dates_;
  bool imported_ = false;
  std::optional<CheckResults> results_;
};

}  // namespace workbench
