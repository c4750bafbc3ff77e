#include "RuleRows.h"

#include <algorithm>

namespace zd_expiration_rule_plugin {

namespace {

constexpr int longest_key = 1024;

/// Appends a key for a text and returns its size. By their bytes, keys have the order of the items in a sorted list
/// view, and comparing them costs a fraction of comparing texts. 0 when the system has no key of a sensible length.
std::size_t append_sort_key(const wchar_t* text, std::string& keys) {
  char key[longest_key];
  const int size = LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_SORTKEY | NORM_IGNORECASE, text, -1,
                                reinterpret_cast<wchar_t*>(key), longest_key);
  keys.append(key, static_cast<std::size_t>(size));
  return static_cast<std::size_t>(size);
}

}  // namespace

void RuleRows::add(const _bstr_t& name, long rule_id) {
  Row row = {names_.size(), keys_.size(), 0, rule_id};
  if (name.length()) names_.append(static_cast<const wchar_t*>(name), name.length());
  names_ += L'\0';
  row.key_size = append_sort_key(names_.c_str() + row.name, keys_);
  rows_.push_back(row);
}

void RuleRows::sort_backwards() noexcept {
  std::stable_sort(rows_.begin(), rows_.end(),
                   [this](const Row& left, const Row& right) { return key(left) > key(right); });
}

}  // namespace zd_expiration_rule_plugin
