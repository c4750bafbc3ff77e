#include "RuleRows.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace zd_expiration_rule_plugin {

namespace {

using Word = std::uint64_t;
static_assert(std::endian::native == std::endian::little);

constexpr int longest_key = 1024;

/// Appends a key for a text and returns its size in words. By their words, keys have the order of the items in a sorted
/// list view, and comparing them costs a fraction of comparing texts. 0 when the system has no key of a sensible
/// length.
std::size_t append_sort_key(const wchar_t* text, std::vector<Word>& keys) {
  char bytes[longest_key];
  const int size = LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_SORTKEY | NORM_IGNORECASE, text, -1,
                                reinterpret_cast<wchar_t*>(bytes), longest_key);
  const std::size_t before = keys.size();
  // The first byte of a key decides first, so it becomes the highest byte of a word.
  for (int done = 0; done < size; done += sizeof(Word)) {
    Word word = 0;
    std::memcpy(&word, bytes + done, std::min<std::size_t>(sizeof word, size - done));
    keys.push_back(__builtin_bswap64(word));
  }
  return keys.size() - before;
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
  std::stable_sort(rows_.begin(), rows_.end(), [this](const Row& left, const Row& right) {
    return std::ranges::lexicographical_compare(key(right), key(left));
  });
}

}  // namespace zd_expiration_rule_plugin
