#include <gtest/gtest.h>

#include "ComPtr.h"
#include "Depth.h"
#include "GuardedBytes.h"
#include "ImportProbe.h"
#include "ModulePath.h"
#include "RandomCases.h"
#include "Registration.h"
#include "RegistryTree.h"
#include "ScratchRoot.h"
#include "resource.h"

ZD_IMPORT_PROBE(LockResource, LockResourceProbe);
ZD_IMPORT_PROBE(SizeofResource, SizeofResourceProbe);

namespace {

using test_support::Bytes;
using test_support::registry_tree;
using test_support::RegistryTree;

const platform::Replacements replacements = {{L"APPID", L"{1}"},
                                             {L"CLSID", L"{2}"},
                                             {L"FriendlyName", L"Sample Object"},
                                             {L"MODULE", L"C:\\a b\\it's %ID%.dll"},
                                             {L"MODULETYPE", L"InprocServer32"},
                                             {L"MODULEGUID", L"{3}"}};

constexpr std::uint8_t values[] = {0x00, 0x7F, 0x80, '\\'};
constexpr int scripts[] = {IDR_APPID, IDR_EXPIRATION_RULE_PLUGIN};

Bytes resource(int id) {
  HMODULE module = base::module_instance();
  HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(id), L"REGISTRY");
  const auto* start = static_cast<const std::uint8_t*>(LockResource(LoadResource(module, found)));
  return Bytes(start, start + SizeofResource(module, found));
}

/// The module's own registration scripts with damaged bytes, run on a registry in which others have their entries.
class DamagedScript : public testing::Test {
 protected:
  DamagedScript() {
    write_foreign_entries();
    foreign = registry_tree(HKEY_CLASSES_ROOT);
  }

  static void write_foreign_entries() {
    for (const wchar_t* key : {L"", L"AppID", L"CLSID", L"CLSID\\{9}", L"Other.Object\\CLSID"}) {
      test_support::write_registry_text(HKEY_CLASSES_ROOT, key, L"", L"foreign");
    }
  }

  /// Registers and unregisters with these bytes as the script. Returns whether the script could be read; one that could
  /// not must leave everything as it was, any other the entries of others.
  bool play(const Bytes& script) {
    LockResourceProbe lock;
    SizeofResourceProbe size;
    const std::span<const std::uint8_t> held = memory.hold(script);
    lock.replace([&](HGLOBAL) { return const_cast<std::uint8_t*>(held.data()); });
    size.replace([&](HMODULE, HRSRC) { return static_cast<DWORD>(held.size()); });
    const bool read = run(platform::run_registration_script);
    EXPECT_EQ(read, run(platform::run_unregistration_script));
    if (read) {
      expect_foreign_entries();
    } else {
      EXPECT_EQ(foreign, registry_tree(HKEY_CLASSES_ROOT)) << "a script that is refused does nothing";
    }
    return read;
  }

  test_support::ScratchRoot scratch{HKEY_CLASSES_ROOT};
  test_support::GuardedBytes memory{4096};
  RegistryTree foreign;

 private:
  template <class Run>
  static bool run(const Run& script) {
    try {
      script(IDR_APPID, replacements, platform::RegistrationScope::machine);
    } catch (const platform::RegistryScriptError&) {
      return false;
    } catch (const _com_error&) {
      // The registry refused a name.
    }
    return true;
  }

  void expect_foreign_entries() const {
    const RegistryTree left = registry_tree(HKEY_CLASSES_ROOT);
    if (left == foreign) return;
    for (const auto& [name, text] : foreign) {
      const auto entry = left.find(name);
      const bool kept = entry != left.end() && entry->second == text;
      EXPECT_TRUE(kept) << "lost or changed: " << testing::PrintToString(name);
    }
    RegDeleteTreeW(HKEY_CLASSES_ROOT, nullptr);
    write_foreign_entries();
  }
};

/// From one tried byte or length of a script to the next; a prime, so that every kind of byte is tried.
const std::size_t step = test_support::deep() ? 1 : 7;

TEST_F(DamagedScript, InAnyByteIsReadOrRefusedAndLeavesTheEntriesOfOthers) {
  int read = 0;
  int refused = 0;
  for (const int id : scripts) {
    const Bytes whole = resource(id);
    Bytes script = whole;
    for (std::size_t position = 0; position < whole.size() && !HasFailure(); position += step) {
      for (const std::uint8_t value : values) {
        SCOPED_TRACE("script " + std::to_string(id) + ", byte " + std::to_string(position) + " is " +
                     std::to_string(value));
        script[position] = value;
        ++(play(script) ? read : refused);
      }
      script[position] = whole[position];
    }
  }
  EXPECT_GT(read, 0);
  EXPECT_GT(refused, 0);
}

TEST_F(DamagedScript, InSeveralBytesIsReadOrRefusedAndLeavesTheEntriesOfOthers) {
  test_support::RandomCases random;
  int read = 0;
  for (int number = 0; number < test_support::repetitions(1500, 150) && !HasFailure(); ++number) {
    SCOPED_TRACE(random.trace(number));
    Bytes script = resource(scripts[random.below(2)]);
    random.damage(script, 4);
    if (play(script)) ++read;
  }
  EXPECT_GT(read, 0);
}

TEST_F(DamagedScript, CutOffAtAnyLengthIsRefused) {
  for (const int id : scripts) {
    Bytes script = resource(id);
    // The white space behind the last brace is nothing to miss.
    while (script.back() != '}') script.pop_back();
    while (!script.empty()) {
      script.resize(script.size() - std::min(step, script.size()));
      ASSERT_FALSE(play(script)) << id << " at length " << script.size();
    }
  }
}

TEST(ScriptProperties, AMutatedScriptIsReadOrRefused) {
  const std::wstring whole =
      L"HKCR { NoRemove CLSID { ForceRemove '%ID%' = s 'it''s' { val Flags = d 12 val M = s x } } }";
  test_support::RandomCases random;
  int read = 0;
  int refused = 0;
  for (int number = 0; number < test_support::repetitions(5000, 500); ++number) {
    SCOPED_TRACE(random.trace(number));
    std::wstring script = whole;
    for (unsigned left = 1 + random.below(4); left > 0; --left)
      script.replace(random.below(static_cast<unsigned>(script.size())), random.below(3), random.text(3));
    try {
      platform::parse_registry_script(script, {{L"ID", L"{1}"}});
      ++read;
    } catch (const platform::RegistryScriptError&) {
      ++refused;
    }
  }
  EXPECT_GT(read, 0);
  EXPECT_GT(refused, 0);
}

}  // namespace
