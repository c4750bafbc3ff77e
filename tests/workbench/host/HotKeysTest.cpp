#include <gtest/gtest.h>

#include <ostream>

#include "HotKeys.h"
#include "StandInPlugin.h"

namespace workbench {
namespace {

constexpr long control_key = FVIRTKEY | FCONTROL;

class HotKeysTest : public testing::Test {
 protected:
  HRESULT add(long flags, long key, base::ComPtr<IDispatch>& hot_key) {
    return dispatch_->AddHotKey(flags, key, plugin_, &hot_key);
  }

  long id_of_new_key(long flags, long key) {
    base::ComPtr<IDispatch> dispatch;
    EXPECT_EQ(add(flags, key, dispatch), S_OK);
    const base::ComPtr<IkvHotKey> hot_key = dispatch;
    long id = 0;
    EXPECT_EQ(hot_key ? hot_key->get_CommandID(&id) : E_NOINTERFACE, S_OK);
    return id;
  }

  std::vector<ACCEL> table() const {
    const int count = keys_->accelerators() ? CopyAcceleratorTableW(keys_->accelerators(), nullptr, 0) : 0;
    std::vector<ACCEL> entries(static_cast<size_t>(count));
    if (count > 0) CopyAcceleratorTableW(keys_->accelerators(), entries.data(), count);
    return entries;
  }

  CommandTargets targets_;
  std::shared_ptr<HotKeys> keys_ = std::make_shared<HotKeys>(targets_);
  base::ComPtr<IkvHotKeyCollection> dispatch_ = base::own(keys_->create_dispatch());
  StandInPlugin* const plugin_ = new StandInPlugin;
  const base::ComPtr<IkvPlugin> plugin_owner_ = base::own<IkvPlugin>(plugin_);
};

TEST_F(HotKeysTest, WithoutKeysThereIsNoTable) { EXPECT_EQ(keys_->accelerators(), nullptr); }

TEST_F(HotKeysTest, FlagsNineAndKey55AreControlU) {
  const long id = id_of_new_key(9, 0x55);
  ASSERT_EQ(table().size(), 1u);
  EXPECT_EQ(table()[0].fVirt & (FVIRTKEY | FCONTROL | FSHIFT | FALT), FVIRTKEY | FCONTROL);
  EXPECT_EQ(table()[0].key, 'U');
  EXPECT_EQ(table()[0].cmd, id);
}

TEST_F(HotKeysTest, KeysIdLeadsToItsTarget) {
  const long id = id_of_new_key(control_key, 'U');
  EXPECT_EQ(targets_.run(id), S_OK);
  EXPECT_EQ(plugin_->commands, std::vector<long>{id});
}

TEST_F(HotKeysTest, EveryKeyIsInTheTable) {
  id_of_new_key(control_key, 'U');
  id_of_new_key(control_key | FSHIFT, 'U');
  id_of_new_key(FVIRTKEY, VK_F9);
  EXPECT_EQ(table().size(), 3u);
}

TEST_F(HotKeysTest, SameKeyGoesOverToTheNewestCommand) {
  const long first = id_of_new_key(control_key, 'U');
  const long second = id_of_new_key(control_key, 'U');
  ASSERT_EQ(table().size(), 1u);
  EXPECT_EQ(table()[0].cmd, second);
  EXPECT_EQ(targets_.run(first), DISP_E_BADINDEX);
  EXPECT_EQ(targets_.run(second), S_OK);
}

struct BadKey {
  long flags;
  long key;
};

void PrintTo(const BadKey& bad, std::ostream* out) { *out << "flags " << bad.flags << " key " << bad.key; }

class BadHotKey : public HotKeysTest, public testing::WithParamInterface<BadKey> {};

TEST_P(BadHotKey, IsRefused) {
  base::ComPtr<IDispatch> hot_key;
  EXPECT_EQ(add(GetParam().flags, GetParam().key, hot_key), E_INVALIDARG);
  EXPECT_FALSE(hot_key);
  EXPECT_EQ(keys_->accelerators(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(HotKeys, BadHotKey,
                         testing::Values(BadKey{0x40, 'U'}, BadKey{-1, 'U'}, BadKey{FVIRTKEY, 0}, BadKey{FVIRTKEY, -5},
                                         BadKey{FVIRTKEY, 0xFF}, BadKey{FVIRTKEY, 0x10055}, BadKey{0, 0x10000}));

TEST_F(HotKeysTest, NullArgumentsAreRefused) {
  IDispatch* hot_key = reinterpret_cast<IDispatch*>(1);
  EXPECT_EQ(dispatch_->AddHotKey(control_key, 'U', plugin_, nullptr), E_POINTER);
  EXPECT_EQ(dispatch_->AddHotKey(control_key, 'U', nullptr, &hot_key), E_INVALIDARG);
  EXPECT_EQ(hot_key, nullptr);
}

TEST_F(HotKeysTest, CollectionOutlivesTheKeysDisconnected) {
  keys_.reset();
  base::ComPtr<IDispatch> hot_key;
  EXPECT_EQ(add(control_key, 'U', hot_key), RPC_E_DISCONNECTED);
}

TEST_F(HotKeysTest, EveryObjectIsDestroyedAfterItsLastRelease) {
  const long before = live_dispatch_objects;
  id_of_new_key(control_key, 'U');
  EXPECT_EQ(live_dispatch_objects, before);
}

}  // namespace
}  // namespace workbench
