#include <gtest/gtest.h>

#include <vector>

#include "Owned.h"

namespace base {
namespace {

std::vector<int> released;
void (*on_release)() = nullptr;

struct NumberTraits {
  using Handle = int;
  static Handle none() noexcept { return -1; }
  static void release(Handle handle) noexcept {
    released.push_back(handle);
    if (on_release) on_release();
  }
};
using Number = Owned<NumberTraits>;

class OwnedTest : public testing::Test {
 protected:
  void SetUp() override {
    released.clear();
    on_release = nullptr;
  }
  void TearDown() override { on_release = nullptr; }
};

TEST_F(OwnedTest, ReleasesAtTheEndOfItsScope) {
  {
    const Number number(7);
    EXPECT_EQ(number.get(), 7);
    EXPECT_TRUE(number);
  }
  EXPECT_EQ(released, std::vector<int>{7});
}

TEST_F(OwnedTest, ReleasesNothingWhenItOwnsNothing) {
  {
    Number number;
    EXPECT_FALSE(number);
    number.reset();
    EXPECT_EQ(number.get(), -1);
  }
  EXPECT_TRUE(released.empty());
}

TEST_F(OwnedTest, ZeroIsAHandleWhereNoneIsAnotherValue) {
  { const Number number(0); }
  EXPECT_EQ(released, std::vector<int>{0});
}

TEST_F(OwnedTest, ResetReleasesTheOldHandleOnly) {
  Number number(1);
  number.reset(2);
  EXPECT_EQ(released, std::vector<int>{1});
  EXPECT_EQ(number.get(), 2);
}

TEST_F(OwnedTest, DetachedHandleIsTheCallers) {
  {
    Number number(3);
    EXPECT_EQ(number.detach(), 3);
    EXPECT_FALSE(number);
  }
  EXPECT_TRUE(released.empty());
}

TEST_F(OwnedTest, MovingHandsOver) {
  {
    Number from(4);
    const Number to(std::move(from));
    EXPECT_FALSE(from);
    EXPECT_EQ(to.get(), 4);
    EXPECT_TRUE(released.empty());
  }
  EXPECT_EQ(released, std::vector<int>{4});
}

TEST_F(OwnedTest, MoveAssignmentReleasesWhatStoodThere) {
  Number from(5);
  Number to(6);
  to = std::move(from);
  EXPECT_EQ(released, std::vector<int>{6});
  EXPECT_EQ(to.get(), 5);
  EXPECT_FALSE(from);
}

TEST_F(OwnedTest, MoveToItselfKeepsTheHandle) {
  Number number(8);
  Number& same = number;
  number = std::move(same);
  EXPECT_EQ(number.get(), 8);
  EXPECT_TRUE(released.empty());
}

TEST_F(OwnedTest, OutParameterReleasesTheOldHandleAndTakesTheNewOne) {
  {
    Number number(9);
    *number.put() = 10;
    EXPECT_EQ(released, std::vector<int>{9});
  }
  EXPECT_EQ(released, (std::vector<int>{9, 10}));
}

Number* reentered = nullptr;

TEST_F(OwnedTest, ReleaseThatComesBackFindsTheNewHandle) {
  Number number(11);
  reentered = &number;
  on_release = [] { EXPECT_EQ(reentered->get(), 12); };
  number.reset(12);
  on_release = nullptr;
  EXPECT_EQ(released, std::vector<int>{11});
}

TEST_F(OwnedTest, RegistryKeyIsClosed) {
  HKEY raw = nullptr;
  {
    RegistryKey key;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, key.put()), ERROR_SUCCESS);
    raw = key.get();
  }
  EXPECT_EQ(RegQueryInfoKeyW(raw, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr),
            ERROR_INVALID_HANDLE);
}

TEST_F(OwnedTest, FileThatCannotBeOpenedIsNone) {
  const FileHandle file(
      CreateFileW(L"no such folder\\file", GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  EXPECT_FALSE(file);
  EXPECT_FALSE(FileHandle());
}

TEST_F(OwnedTest, ModuleIsFreed) {
  ASSERT_EQ(GetModuleHandleW(L"msimg32.dll"), nullptr) << "the test needs a system module that is not loaded";
  {
    const LoadedModule module(LoadLibraryW(L"msimg32.dll"));
    EXPECT_TRUE(module);
  }
  EXPECT_EQ(GetModuleHandleW(L"msimg32.dll"), nullptr);
}

TEST_F(OwnedTest, GdiObjectsAreDeleted) {
  HFONT font = nullptr;
  HRGN region = nullptr;
  HBITMAP bitmap = nullptr;
  HDC dc = nullptr;
  {
    const Font owned_font(CreateFontW(-12, 0, 0, 0, FW_BOLD, 0, 0, 0, 0, 0, 0, 0, 0, L"Tahoma"));
    const Region owned_region(CreateRectRgn(0, 0, 2, 2));
    const Bitmap owned_bitmap(CreateBitmap(2, 2, 1, 1, nullptr));
    const MemoryDc owned_dc(CreateCompatibleDC(nullptr));
    font = owned_font.get();
    region = owned_region.get();
    bitmap = owned_bitmap.get();
    dc = owned_dc.get();
    EXPECT_EQ(GetObjectType(font), static_cast<DWORD>(OBJ_FONT));
    EXPECT_EQ(GetObjectType(region), static_cast<DWORD>(OBJ_REGION));
    EXPECT_EQ(GetObjectType(bitmap), static_cast<DWORD>(OBJ_BITMAP));
    EXPECT_EQ(GetObjectType(dc), static_cast<DWORD>(OBJ_MEMDC));
  }
  EXPECT_EQ(GetObjectType(font), 0u);
  EXPECT_EQ(GetObjectType(region), 0u);
  EXPECT_EQ(GetObjectType(bitmap), 0u);
  EXPECT_EQ(GetObjectType(dc), 0u);
}

}  // namespace
}  // namespace base
