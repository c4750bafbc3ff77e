#include <windows.h>

#include "ImportProbe.h"
#include "ModuleTest.h"

namespace module_test {
namespace {

using testing::Each;
using testing::SizeIs;
using testing::StartsWith;

ZD_IMPORT_PROBE(LoadLibraryW, LoadLibraryProbe);

/// The host's texts are missing. While the module reports that, the host may dispatch messages and call again.
class MissingTexts : public HostedTest {
 protected:
  MissingTexts() {
    libraries_.replace([this](const wchar_t* name) {
      return lstrcmpiW(name, L"zdCommonRes.DLL") == 0 ? nullptr : libraries_.original(name);
    });
  }

  /// Initialises another plug-in inside the first report.
  void initialize_inside_the_report() {
    test_support::on_command([this](const test_support::RecordedCommand& command) {
      if (command.word != L"PROCESS" || inside_++ > 0) return;
      EXPECT_EQ(S_OK, other_->Initialize(menu_, control_bar_, context_menu_, hot_keys_, registry_path_, storage_));
    });
  }

  void TearDown() override {
    other_ = nullptr;
    HostedTest::TearDown();
  }

  LoadLibraryProbe libraries_{module_.handle()};
  base::ComPtr<IkvPlugin> other_ = module_.plugin();
  int inside_ = 0;
};

TEST_F(MissingTexts, LetAnotherPluginInitializeInsideTheReport) {
  initialize_inside_the_report();
  EXPECT_EQ(S_OK, initialize());
  EXPECT_GT(inside_, 0);
  EXPECT_EQ(4u, host_.commands().size()) << "both have their command and their hot key";
  // The other plug-in asks for four texts, this one for the two that the submenu of the other leaves over; and that the
  // module cannot be loaded is reported once.
  EXPECT_THAT(take_reports(), testing::AllOf(SizeIs(7), Each(StartsWith("ASSERT hInstance | ResourceMgr.cpp:"))));
}

}  // namespace
}  // namespace module_test
