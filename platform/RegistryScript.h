#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// A registration script that cannot be read.
class RegistryScriptError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The texts that stand for %NAME% in a script; names are compared exactly.
using Replacements = std::vector<std::pair<std::wstring, std::wstring>>;

/// A value of a key: text or a 32-bit number.
struct RegistryValue {
  std::wstring name;  ///< empty for the key's default value
  bool is_number = false;
  std::wstring text;
  std::uint32_t number = 0;
  std::size_t keys_before = 0;  ///< how many keys of its block stand before it

  bool operator==(const RegistryValue&) const = default;
};

/// One key of a script with what stands in it, in the order of the script.
struct RegistryNode {
  enum class Removal {
    own,       ///< unregistering takes away what the script wrote, and the key when nothing else is left in it
    none,      ///< NoRemove: unregistering keeps the key
    complete,  ///< ForceRemove: deleted whole when unregistering and before registering
  };

  std::wstring name;
  Removal removal = Removal::own;
  std::vector<RegistryValue> values;
  std::vector<RegistryNode> keys;

  bool operator==(const RegistryNode&) const = default;
};

/// Reads a script of the form
///   HKCR { NoRemove Key = s 'text' { 'Sub key' = d 1  val Name = s '%NAME%' } }
/// and returns the keys below its root, which is always HKCR (the classes root). Words may stand in single quotes, in
/// which a doubled quote is a quote. Replacements happen inside a word, so what they insert is never read as syntax.
/// Throws `RegistryScriptError` for anything else, a null, an unknown %NAME% and more than 512 nested blocks included.
std::vector<RegistryNode> parse_registry_script(std::wstring_view script, const Replacements& replacements);

}  // namespace platform
