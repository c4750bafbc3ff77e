#include "Reports.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

#include "Recorder.h"

namespace test_support {
namespace {

std::optional<Recorder> recorder;

Assertion assertion_in(const RecordedCommand& command) {
  return {field_text(command, L"File"), std::stoi(L"0" + field_text(command, L"Line")),
          field_text(command, L"Description"), field_text(command, L"HRESULT"), field_text(command, L"Function")};
}

/// Loads the recorder before anybody reports: the client looks for its library only once.
class RecorderEnvironment : public testing::Environment {
 public:
  void SetUp() override { recorder.emplace(); }
  void TearDown() override { recorder.reset(); }
};

class UnexpectedReports : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override { recorder->reset(); }
  void OnTestEnd(const testing::TestInfo&) override {
    for (const Assertion& assertion : take_assertions()) {
      ADD_FAILURE() << "nobody expected " << testing::PrintToString(assertion);
    }
  }
};

const auto* const environment = testing::AddGlobalTestEnvironment(new RecorderEnvironment);
const bool listening = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new UnexpectedReports);
  return true;
}();

}  // namespace

void PrintTo(const Assertion& assertion, std::ostream* out) {
  *out << testing::PrintToString(assertion.text) << " in " << testing::PrintToString(assertion.file) << ", line "
       << assertion.line << ", HRESULT " << testing::PrintToString(assertion.hresult) << ", function "
       << testing::PrintToString(assertion.function);
}

std::vector<Assertion> take_assertions() {
  std::vector<Assertion> assertions;
  for (const RecordedCommand& command : recorder->processed(L"ASSERT")) assertions.push_back(assertion_in(command));
  recorder->reset();
  return assertions;
}

}  // namespace test_support
