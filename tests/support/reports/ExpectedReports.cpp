#include "ExpectedReports.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

#include "Reports.h"

namespace test_support {
namespace {

std::optional<Recorder> recorder;

template <class Read>
auto take(const Read& read) {
  auto taken = read(*recorder);
  recorder->reset();
  return taken;
}

/// Loads the recorder before the first report, because the client searches for its library only once.
class RecorderEnvironment : public testing::Environment {
 public:
  void SetUp() override { recorder.emplace(); }
  void TearDown() override { recorder.reset(); }
};

class UnexpectedReports : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override { recorder->reset(); }
  void OnTestEnd(const testing::TestInfo&) override {
    for (const std::string& report : take_reports()) ADD_FAILURE() << "not expected: " << report;
  }
};

[[maybe_unused]] const bool reports_started = [] {
  testing::AddGlobalTestEnvironment(new RecorderEnvironment);
  testing::UnitTest::GetInstance()->listeners().Append(new UnexpectedReports);
  return true;
}();

}  // namespace

std::vector<std::string> take_reports() { return take(reports); }

std::vector<std::string> take_reports_without_lines() { return take(reports_without_lines); }

std::vector<RecordedCommand> take_records() {
  return take([](const Recorder& from) { return from.commands(L"PROCESS"); });
}

void on_command(Recorder::Hook hook) { recorder->on_command(std::move(hook)); }

}  // namespace test_support
