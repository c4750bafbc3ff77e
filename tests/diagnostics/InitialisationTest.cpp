#include <optional>

#include "ImportProbe.h"
#include "ModulePath.h"
#include "RecorderTest.h"
#include "SnagtrapClient.h"

ZD_IMPORT_PROBE(InitializeCriticalSectionAndSpinCount, SectionProbe);

namespace diagnostics_test {
namespace {

using SnagtrapUtil::SnagtrapClient;
using test_support::Out;
using test_support::Recorder;
using testing::ElementsAre;
using testing::IsEmpty;

/// Each test creates clients of its own.
class Initialisation : public testing::Test {
 protected:
  Initialisation() : objects_before(recorder.live_objects()) {}

  long objects() const { return recorder.live_objects() - objects_before; }

  Recorder recorder;
  long objects_before;
};

TEST_F(Initialisation, CreatingAClientSendsNothing) {
  SnagtrapClient client;
  EXPECT_FALSE(client.initialised());
  EXPECT_THAT(recorder.words(), IsEmpty());
}

TEST_F(Initialisation, ClientThatCannotBeCreatedIsThrownAsTheHresult) {
  const std::pair<DWORD, HRESULT> failures[] = {{ERROR_NOT_ENOUGH_MEMORY, HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY)},
                                                {ERROR_ACCESS_DENIED, E_ACCESSDENIED},
                                                {ERROR_SUCCESS, E_FAIL}};
  for (const auto& [error, expected] : failures) {
    SectionProbe section;
    section.fail(1, FALSE, error);
    HRESULT thrown = S_OK;
    try {
      SnagtrapClient client;
    } catch (const HRESULT& hresult) {
      thrown = hresult;
    }
    EXPECT_EQ(expected, thrown);
  }
  EXPECT_THAT(recorder.words(), IsEmpty());
}

TEST_F(Initialisation, SendsInitAndThenConfigures) {
  SnagtrapClient client;
  EXPECT_TRUE(client.ensure_initialised());
  EXPECT_TRUE(client.initialised());
  EXPECT_THAT(recorder.words(), ElementsAre(L"ST_InitObject", L"CREATE", L"INIT", L"Configure"));
}

TEST_F(Initialisation, RecordHasItsFieldsInOrderAndTyped) {
  SnagtrapClient client;
  client.ensure_initialised();
  EXPECT_THAT(recorder.commands(L"INIT").at(0).fields,
              ElementsAre(text(L"LogDirectory", L""),
                          number(L"ModuleAddr", VT_UI8, reinterpret_cast<ULONGLONG>(GetModuleHandleW(nullptr))),
                          text(L"ModuleName", base::module_file_name()),
                          test_support::RecordedField{L"ReleaseMode", VT_BOOL, L"true", {}, 0},
                          text(L"ClientVersion", L"2.2 05.05.2006")));
}

TEST_F(Initialisation, ConfiguresWithTheProcessIdInDecimal) {
  SnagtrapClient client;
  client.ensure_initialised();
  const auto call = recorder.commands(L"Configure").at(0);
  EXPECT_EQ(test_support::field_text(call, L"text"), L"");
  EXPECT_EQ(test_support::field_text(call, L"number"), std::to_wstring(GetCurrentProcessId()));
  EXPECT_EQ(test_support::field_text(call, L"flag"), L"1");
}

TEST_F(Initialisation, HappensOnce) {
  SnagtrapClient client;
  client.ensure_initialised();
  EXPECT_TRUE(client.ensure_initialised());
  EXPECT_EQ(recorder.commands(L"INIT").size(), 1u);
}

TEST_F(Initialisation, KeepsNothingButTheRoot) {
  {
    SnagtrapClient client;
    client.ensure_initialised();
    EXPECT_EQ(objects(), 1);
  }
  EXPECT_EQ(objects(), 0);
}

struct Failure {
  const wchar_t* word;
  HRESULT hresult;
  Out out;
};

class FailingInitialisation : public Initialisation, public testing::WithParamInterface<Failure> {};

TEST_P(FailingInitialisation, LetsTheLibraryGoAndIsNotRepeated) {
  const Failure& failure = GetParam();
  recorder.set_result(failure.word, failure.hresult, failure.out);
  SnagtrapClient client;
  EXPECT_FALSE(client.ensure_initialised());
  EXPECT_FALSE(client.initialised());
  EXPECT_EQ(recorder.words().back(), failure.word);
  EXPECT_EQ(objects(), 0);

  recorder.reset();
  EXPECT_FALSE(client.ensure_initialised());
  EXPECT_EQ(client.command(L"PROCESS"), E_FAIL);
  client.shutdown();
  EXPECT_THAT(recorder.words(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    AtEveryStep, FailingInitialisation,
    testing::Values(Failure{L"ST_InitObject", E_FAIL, Out::untouched},
                    Failure{L"ST_InitObject", E_OUTOFMEMORY, Out::null}, Failure{L"ST_InitObject", S_OK, Out::null},
                    Failure{L"ST_InitObject", S_OK, Out::untouched}, Failure{L"CREATE", E_FAIL, Out::untouched},
                    Failure{L"CREATE", E_FAIL, Out::created}, Failure{L"CREATE", S_OK, Out::null},
                    Failure{L"INIT", E_FAIL, Out::untouched}, Failure{L"Configure", E_FAIL, Out::untouched}));

TEST_F(Initialisation, GoesOnWhenTheLibrarysResultIsPositive) {
  for (const wchar_t* word : {L"ST_InitObject", L"CREATE", L"INIT", L"Configure"}) {
    recorder.reset();
    recorder.set_result(word, S_FALSE);
    SnagtrapClient client;
    EXPECT_TRUE(client.ensure_initialised());
  }
}

TEST_F(Initialisation, ReportFromInsideIsDropped) {
  SnagtrapClient client;
  std::optional<bool> inside;
  recorder.on_command([&](const test_support::RecordedCommand& command) {
    if (command.word == L"INIT") inside = client.ensure_initialised();
  });
  EXPECT_TRUE(client.ensure_initialised());
  EXPECT_EQ(inside, false);
  EXPECT_EQ(recorder.commands(L"INIT").size(), 1u);
}

class ClientCommand : public Initialisation {
 protected:
  ClientCommand() {
    client.ensure_initialised();
    recorder.reset();
  }

  SnagtrapClient client;
};

TEST_F(ClientCommand, OfEveryNameSendsItsWordAndReturnsTheLibrarysResult) {
  const std::pair<const wchar_t*, HRESULT (SnagtrapClient::*)()> commands[] = {
      {L"IS CLEAN", &SnagtrapClient::is_clean},
      {L"DO CLEAN", &SnagtrapClient::do_clean},
      {L"REPORTDIALOG", &SnagtrapClient::report_dialog},
      {L"TRACEENABLED", &SnagtrapClient::trace_enabled},
  };
  for (const auto& [word, send] : commands) {
    recorder.reset();
    recorder.set_result(word, 5);
    EXPECT_EQ((client.*send)(), 5);
    EXPECT_THAT(recorder.words(), ElementsAre(word));
  }
}

TEST_F(ClientCommand, ReleasesWhatTheLibraryCreatesUnasked) {
  EXPECT_EQ(client.command(L"CREATE"), S_OK);
  EXPECT_EQ(objects(), 1) << "only the root is left";
}

TEST_F(ClientCommand, ShutdownSendsDeinitOnceAndLetsTheLibraryGo) {
  client.shutdown();
  client.shutdown();
  EXPECT_THAT(recorder.words(), ElementsAre(L"DEINIT"));
  EXPECT_FALSE(client.initialised());
  EXPECT_EQ(objects(), 0);
}

TEST_F(ClientCommand, AfterShutdownReachesNoLibrary) {
  client.shutdown();
  recorder.reset();
  EXPECT_FALSE(client.ensure_initialised());
  EXPECT_EQ(client.is_clean(), E_FAIL);
  EXPECT_THAT(recorder.words(), IsEmpty());
}

TEST_F(ClientCommand, DestructionSendsNothing) {
  { SnagtrapClient other; }
  EXPECT_THAT(recorder.words(), IsEmpty());
}

TEST(ClientCommandBeforeInitialisation, ReturnsAFailure) {
  SnagtrapClient client;
  EXPECT_EQ(client.is_clean(), E_FAIL);
  EXPECT_EQ(client.do_clean(), E_FAIL);
  EXPECT_EQ(client.report_dialog(), E_FAIL);
  EXPECT_EQ(client.trace_enabled(), E_FAIL);
}

}  // namespace
}  // namespace diagnostics_test
