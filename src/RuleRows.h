#pragma once

#include <windows.h>
#include <comdef.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zd_expiration_rule_plugin {

/// The rules that a refill reads from the storage and puts into the list. All their texts share two buffers: with
/// thousands of rules, an allocation for each text would cost as much as reading it.
class RuleRows {
 public:
  /// Throws `std::bad_alloc`, and then holds what it held before.
  void add(const _bstr_t& name, long rule_id);

  std::size_t size() const noexcept { return rows_.size(); }

  /// Brings the rules into the reverse of the order that a sorted list view gives its items.
  void sort_backwards() noexcept;

  /// Calls `visit(name, rule_id)` for each rule in order. A name ends at its first null.
  template <class Visit>
  void for_each(const Visit& visit) const {
    for (const Row& row : rows_) visit(names_.c_str() + row.name, row.rule_id);
  }

 private:
  struct Row {
    std::size_t name;      ///< where it starts in `names_`
    std::size_t key;       ///< where it starts in `keys_`
    std::size_t key_size;  ///< in words
    long rule_id;
  };

  std::span<const std::uint64_t> key(const Row& row) const noexcept { return {keys_.data() + row.key, row.key_size}; }

  std::wstring names_;  ///< each with its null
  std::vector<std::uint64_t> keys_;
  std::vector<Row> rows_;
};

}  // namespace zd_expiration_rule_plugin
