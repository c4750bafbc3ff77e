#include <gtest/gtest.h>

#include <algorithm>

#include "GuardedBytes.h"
#include "RandomCases.h"
#include "VersionBlocks.h"
#include "VersionRecord.h"

namespace common_test {
namespace {

using zd_common::version_record_in;
using zd_common::VersionRecord;

constexpr std::size_t largest_block = 0xFFFF;

const wchar_t* const names[] = {L"CompanyName",     L"ProductName", L"ProductVersion",
                                L"FileDescription", L"FileVersion", L"LegalCopyright"};

std::vector<std::wstring> texts_of(const VersionRecord& record) {
  return {record.company_name,     record.product_name, record.product_version,
          record.file_description, record.file_version, record.legal_copyright};
}

/// A block of two languages, of which the second one is the first translation.
Bytes sound_block() {
  Texts texts;
  for (const wchar_t* name : names) texts.emplace_back(name, std::wstring(L"Some ") + name);
  return version_block({string_table(L"040904e4", {{L"CompanyName", L"English"}}), string_table(L"080404B0", texts)},
                       translations({0x0804, 0x04B0, 0x0409, 0x04E4}));
}

void tell_length(Bytes& block, std::size_t length) {
  if (!block.empty()) block[0] = static_cast<std::uint8_t>(length);
  if (block.size() > 1) block[1] = static_cast<std::uint8_t>(length >> 8);
}

class HostileVersionBlock : public testing::Test {
 protected:
  VersionRecord read(const Bytes& block) { return version_record_in(memory.hold(block)); }

  /// Reads a block of which nothing is known but that no text can be longer than it is.
  VersionRecord survive(const Bytes& block) {
    VersionRecord record = read(block);
    for (const std::wstring& text : texts_of(record)) EXPECT_LE(2 * text.size(), block.size());
    return record;
  }

  test_support::GuardedBytes memory{largest_block + 1};
  const Bytes whole = sound_block();
};

TEST_F(HostileVersionBlock, IsRefusedWhenItIsShorterThanItSays) {
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    ASSERT_EQ(VersionRecord(), read(cut)) << length;
  }
  EXPECT_NE(VersionRecord(), read(whole));
}

TEST_F(HostileVersionBlock, CutOffAtAnyLengthGivesWhatIsLeftOfItsTexts) {
  const auto complete = texts_of(read(whole));
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    tell_length(cut, length);
    const auto left = texts_of(read(cut));
    for (std::size_t index = 0; index < left.size(); ++index) {
      ASSERT_EQ(0u, complete[index].find(left[index])) << "text " << index << " at length " << length;
    }
  }
}

TEST_F(HostileVersionBlock, CutOffAtAnyLengthBeforeZerosGivesWhatIsLeftOfItsTexts) {
  const auto complete = texts_of(read(whole));
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    Bytes cut = whole;
    std::fill(cut.begin() + static_cast<std::ptrdiff_t>(length), cut.end(), std::uint8_t{0});
    const auto left = texts_of(read(cut));
    for (std::size_t index = 0; index < left.size(); ++index) {
      ASSERT_EQ(0u, complete[index].find(left[index])) << "text " << index << " at length " << length;
    }
  }
}

TEST_F(HostileVersionBlock, MayHaveAnyValueInAnyByte) {
  Bytes block = whole;
  for (std::size_t position = 0; position < block.size() && !HasFailure(); ++position) {
    SCOPED_TRACE(position);
    for (int value = 0; value <= 0xFF; ++value) {
      block[position] = static_cast<std::uint8_t>(value);
      survive(block);
    }
    block[position] = whole[position];
  }
}

TEST_F(HostileVersionBlock, MayBeDamagedInManyPlaces) {
  test_support::RandomCases random;
  int read = 0;
  for (int number = 0; number < 20'000 && !HasFailure(); ++number) {
    SCOPED_TRACE(random.trace(number));
    Bytes block = whole;
    random.damage(block, 8);
    block.resize(random.below(4) ? block.size() : random.below(static_cast<unsigned>(block.size())));
    if (random.below(2)) tell_length(block, block.size());
    if (survive(block) != VersionRecord()) ++read;
  }
  EXPECT_GT(read, 0);
}

TEST_F(HostileVersionBlock, MayBeAsLargeAsItsLengthCanTell) {
  Bytes block = whole;
  block.resize(largest_block);
  tell_length(block, largest_block);
  EXPECT_EQ(read(whole), read(block));
}

/// What the system's own reader finds, for a block that it can be trusted with.
std::wstring system_text(const Bytes& block, const std::wstring& name) {
  void* value = nullptr;
  UINT units = 0;
  if (!VerQueryValueW(block.data(), (L"\\StringFileInfo\\080404b0\\" + name).c_str(), &value, &units)) return {};
  const std::wstring text(static_cast<const wchar_t*>(value), units);
  return text.substr(0, text.find(L'\0'));
}

TEST(SoundVersionBlock, IsReadAsTheSystemReadsIt) {
  test_support::RandomCases random;
  for (int number = 0; number < 1000; ++number) {
    SCOPED_TRACE(random.trace(number));
    Texts texts;
    for (const wchar_t* name : names) {
      if (random.below(5)) texts.emplace_back(name, random.text(300));
    }
    std::shuffle(texts.begin(), texts.end(), random.generator());
    const auto says_text = [&] { return random.below(2) != 0; };
    std::vector<Bytes> tables = {string_table(random.below(2) ? L"080404b0" : L"080404B0", texts, says_text),
                                 string_table(L"040904e4", {{L"CompanyName", random.text(20)}})};
    if (random.below(2)) std::swap(tables[0], tables[1]);
    const Bytes block = version_block(tables, translations({0x0804, 0x04B0, 0x0409, 0x04E4}));
    const auto read = texts_of(version_record_in(block));
    for (std::size_t index = 0; index < read.size(); ++index) ASSERT_EQ(system_text(block, names[index]), read[index]);
  }
}

}  // namespace
}  // namespace common_test
