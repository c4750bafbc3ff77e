#pragma once

#include <string>

#include "Dialog.h"
#include "ExpirationRule.h"
#include "Owned.h"
#include "SpinControlHelper.h"
#include "StorageBlock.h"
#include "resource.h"

namespace zd_expiration_rule_plugin {

/// The modal dialog in which the user creates one expiration rule or changes an existing one. It is constructed for one
/// rule, shown once and discarded; nothing is written to the storage before OK.
class CEditExpirationRuleDialog final : public platform::CDialogImpl<CEditExpirationRuleDialog> {
 public:
  static constexpr int IDD = IDD_EDIT_EXPIRATION_RULE;

  /// Opens the rule with this number, or a new rule for 0. `storage` must outlive the dialog. Throws a `_com_error`
  /// when the host's objects cannot be created, and `std::bad_alloc`.
  CEditExpirationRuleDialog(StorageBlock* storage, long rule_id);
  ~CEditExpirationRuleDialog() override = default;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId = 0) override;

  /// The number of the edited rule: 0 for a new rule until it has been stored.
  long rule_id() const;

 private:
  /// How far the dialog is. A call of the host or a message box may dispatch messages, and with them a second OK or a
  /// Cancel.
  enum class Progress {
    editing,
    checking,  ///< a further OK is ignored
    storing,   ///< the rule is on its way to the storage: a further OK and Cancel are ignored
  };

  /// While one lives the input is checked; afterwards it can be edited again unless the dialog went on.
  class ScopedChecking {
   public:
    explicit ScopedChecking(Progress* progress) noexcept : progress_(progress) { *progress_ = Progress::checking; }
    ~ScopedChecking() {
      if (*progress_ == Progress::checking) *progress_ = Progress::editing;
    }
    ScopedChecking(const ScopedChecking&) = delete;
    ScopedChecking& operator=(const ScopedChecking&) = delete;

   private:
    Progress* progress_;
  };

  LRESULT OnInitDialog();
  BOOL OnCommand(WORD id, WORD notification);
  void OnSpinScrolled(WPARAM wParam);
  void OnOffsetTyped();
  void OnOk();
  void OnCancel();

  ExpirationRule read_rule() const;
  void fill_name(const ExpirationRule& rule);
  void fill_offset(const ExpirationRule& rule);
  void fill_day_mode(const ExpirationRule& rule);
  void make_modes_reachable();
  void fill_combos(const ExpirationRule& rule);
  void fill_months(int combo_id, long month);
  void prepare_description();

  void update_controls_state();
  void update_description();
  bool validate_input();
  bool is_expiration_rule_name_not_unique(const _bstr_t& name, const bool editing);
  bool find_same_name(const _bstr_t& name, const bool editing);
  void flush_data_to_database();
  ExpirationRule collect_rule() const;
  void save_rule();

  platform::CWindow control(int id) const noexcept;
  std::wstring control_text(int id) const;
  bool is_checked(int id) const noexcept;
  void set_checked(int id, bool checked) const noexcept;
  unsigned long long get_current_combobox_value(int id) const noexcept;
  void show_message(int string_id);

  StorageBlock* storage_;
  RuleRow row_;
  ui_helper::CSpin spin_;
  ui_helper::CCustomEditForSpin offset_edit_;
  platform::CWindow description_;
  std::wstring title_;
  base::Font bold_font_;
  Progress progress_ = Progress::editing;
  long checked_id_ = 0;  ///< the rule's number as the last check of the input read it
};

}  // namespace zd_expiration_rule_plugin
