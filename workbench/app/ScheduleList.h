#pragma once

#include "ListPane.h"
#include "ScheduleModel.h"

namespace workbench {

/// The list of contracts with their dates; in a comparison the old dates stand beside the new ones.
class ScheduleList final : public ListPane {
 public:
  explicit ScheduleList(HWND parent);

  void show(const Schedule& schedule, bool comparison);

 protected:
  std::wstring cell(size_t row, size_t column) const override;
  std::optional<COLORREF> row_color(size_t row) const override;

 private:
  std::vector<ScheduleLine> lines_;
  bool comparison_ = false;
};

}  // namespace workbench
