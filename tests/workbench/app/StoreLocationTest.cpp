#include <gmock/gmock.h>

#include <array>

#include "ConnectionString.h"
#include "Credentials.h"
#include "MemoryOdbc.h"
#include "StoreLocation.h"
#include "StoreSamples.h"
#include "TemporaryFolder.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "resource.h"

namespace workbench {
namespace {

using Texts = std::vector<std::wstring>;

constexpr wchar_t marker[] = L"p4ssw0rd";

std::wstring refusal_of(const std::wstring& name) {
  try {
    find_store(name);
    return {};
  } catch (const StoreLocationError& error) {
    return error.message;
  }
}

TEST(StoreLocation, WhatIsNoConnectionStringIsAFile) {
  EXPECT_EQ(find_store(L"a b.db")->description(), std::filesystem::absolute(L"a b.db").wstring());
  EXPECT_EQ(find_store(L"C:\\odbc\\x.db")->text(), L"C:\\odbc\\x.db");
}

TEST(StoreLocation, FileOpensAndIsCreatedOnlyWhereItMayBe) {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / L"rules.db";
  EXPECT_EQ(refusal_kind([&] { find_store(path.wstring())->open({.may_create = false}); }), StoreErrorKind::missing);
  EXPECT_EQ(snapshot_of(*find_store(path.wstring())->open({.first_content = sample_content()})).rules.size(), 2u);
}

TEST(StoreLocation, CancelledCreationLeavesNoFile) {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / L"rules.db";
  const auto cancel = [](std::size_t, std::size_t) { return false; };
  EXPECT_THROW(find_store(path.wstring())->open({.first_content = sample_content(), .progress = cancel}),
               schedule::Cancelled);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(StoreLocation, ServerIsNamedWithoutThePassword) {
  for (const wchar_t* prefix : {L"odbc:", L"ODBC:"}) {
    const auto server = find_store(
        prefix + std::wstring(L"Server=db;Port=5433;Database={a;b};Uid=anna;Pwd={p4ssw0rd};SSLmode=require"));
    EXPECT_EQ(server->description(), L"anna@db:5433/a;b (SSLmode=require)") << prefix;
    EXPECT_EQ(server->text(), L"odbc:Server=db;Port=5433;Database={a;b};Uid=anna;SSLmode=require;");
    EXPECT_EQ(find_store(server->text())->description(), server->description());
  }
  EXPECT_EQ(find_store(L"odbc:DSN=desk")->description(), L"DSN=desk");
}

TEST(StoreLocation, BlanksAroundANameDoNotCount) {
  EXPECT_EQ(find_store(L" \todbc:Server=db;Uid=anna;Pwd=p4ssw0rd ")->description(), L"anna@db");
  EXPECT_EQ(find_store(L" C:\\x y.db ")->text(), L"C:\\x y.db");
}

TEST(StoreLocation, ConnectionStringWithoutItsPrefixIsNoFile) {
  choose_language(Language::english);
  for (const wchar_t* name : {L"Server=db;Pwd=p4ssw0rd", L"PWD = p4ssw0rd", L"Server=db;Password=p4ssw0rd"}) {
    const std::wstring said = refusal_of(name);
    EXPECT_TRUE(said.starts_with(L"The name of the store holds a password")) << name;
    EXPECT_EQ(said.find(marker), std::wstring::npos) << name;
  }
}

TEST(StoreLocation, ArgumentsAreShownWithoutConnectionStrings) {
  const auto shown = [](const std::wstring& argument) { return printable_argument(argument, std::array{argument}); };
  EXPECT_EQ(shown(L"--stor"), L"--stor");
  EXPECT_EQ(shown(L""), L"");
  for (const wchar_t* secret : {L"Odbc:Server=db", L"--store=odbc:Server=db;Pwd=p4ssw0rd", L"Unicode};PWD = p4ssw0rd",
                                L"Server=db;password=p4ssw0rd"})
    EXPECT_EQ(shown(secret), L"...") << secret;
}

TEST(StoreLocation, NoArgumentIsShownBesideAPasswordThatTheShellMayHaveCut) {
  const std::vector<std::wstring> command_lines[] = {
      {L"--store", L"odbc:Server=db;Pwd={my", marker, L"word};Uid=anna", L"--calendars"},
      {L"--store", L"odbc:Server=db;", L"Pwd=my", marker},
      {L"--store", L"odbc:Server=db;PWD", L"=", L"{my", marker, L"}"},
      {L"--store", L"Server=db;Password={my", marker, L"--x};"},
  };
  for (const std::vector<std::wstring>& arguments : command_lines)
    for (const std::wstring& argument : arguments)
      EXPECT_EQ(printable_argument(argument, arguments), L"...") << argument;
  EXPECT_EQ(printable_argument(L"--shwo", std::array<std::wstring, 3>{L"--store", L"odbc:DSN=desk", L"--shwo"}),
            L"--shwo");
}

TEST(StoreLocation, RefusedConnectionStringIsExplainedWithoutItsValues) {
  choose_language(Language::english);
  for (const auto& [text, reason] :
       {std::pair(L"odbc:Server=db;p4ssw0rd", L"Part 2 of the connection string is no key"),
        std::pair(L"odbc:Pwd={p4ssw0rd", L"Part 1 of the connection string begins with {"),
        std::pair(L"odbc:Pwd={p4}ssw0rd", L"Something follows the } in part 1 of the"),
        std::pair(L"odbc:Pwd=x;pwd=p4ssw0rd", L"Part 2 of the connection string has a key"),
        std::pair(L"odbc:p4ssw0rd=x", L"Part 1 of the connection string has an unknown")}) {
    const std::wstring said = refusal_of(text);
    EXPECT_TRUE(said.starts_with(reason)) << text;
    EXPECT_EQ(said.find(marker), std::wstring::npos) << text;
  }
}

/// A server that takes one password, in front of a driver in memory, which then says that there is no schema. The
/// driver refuses a missing password with a text of its own, and a wrong one as a server that cannot be reached.
class PasswordServer {
 public:
  explicit PasswordServer(const std::wstring& password, const wchar_t* said_without = L"fe_sendauth: no password")
      : api_(driver_.api()) {
    wanted_ = password;
    said_without_ = said_without;
    tried_.clear();
    connect_ = api_.connect;
    api_.connect = &connect;
    api_.get_diagnostic = &diagnose;
  }

  const odbc::OdbcApi* api() const { return &api_; }
  /// The passwords in the order in which they were tried; - for none.
  static const Texts& tried() { return tried_; }

 private:
  static SQLRETURN SQL_API connect(SQLHDBC connection, SQLHWND window, SQLWCHAR* string, SQLSMALLINT length,
                                   SQLWCHAR* out, SQLSMALLINT room, SQLSMALLINT* size, SQLUSMALLINT prompt) {
    const std::wstring text(reinterpret_cast<const wchar_t*>(string), static_cast<std::size_t>(length));
    const std::wstring password = odbc::ConnectionString(text).find(L"Pwd").value_or(L"-");
    tried_.push_back(password);
    if (password == wanted_) return connect_(connection, window, string, length, out, room, size, prompt);
    return SQL_ERROR;
  }

  static SQLRETURN SQL_API diagnose(SQLSMALLINT, SQLHANDLE, SQLSMALLINT record, SQLWCHAR* state, SQLINTEGER* native,
                                    SQLWCHAR* text, SQLSMALLINT, SQLSMALLINT* length) {
    if (record > 1) return SQL_NO_DATA;
    const std::wstring said = tried_.back() == L"-" ? said_without_ : L"";
    std::wcscpy(reinterpret_cast<wchar_t*>(state), L"08001");
    std::wcscpy(reinterpret_cast<wchar_t*>(text), said.c_str());
    *native = 0;
    *length = static_cast<SQLSMALLINT>(said.size());
    return SQL_SUCCESS;
  }

  inline static std::wstring wanted_;
  inline static const wchar_t* said_without_ = nullptr;
  inline static Texts tried_;
  inline static decltype(&SQLDriverConnectW) connect_ = nullptr;

  test_support::MemoryOdbc driver_;
  odbc::OdbcApi api_;
};

constexpr StoreErrorKind connected = StoreErrorKind::unavailable;  // the server has no schema

class PasswordTest : public testing::Test {
 protected:
  ~PasswordTest() override { drop_credential(target); }

  std::optional<StoreErrorKind> opened(const std::wstring& name, const PasswordServer& server) {
    const auto location = find_store(name);
    const StoreOpening opening{.ask_password = [this](const PasswordRequest& request) { return answer(request); },
                               .odbc = server.api()};
    const auto first = refusal_kind([&] { location->open(opening); });
    EXPECT_EQ(location->text().find(L"Pwd"), std::wstring::npos);
    if (first == connected) {
      EXPECT_EQ(refusal_kind([&] { location->open(opening); }), connected) << "it is asked for once";
    }
    return first;
  }

  std::optional<EnteredPassword> answer(const PasswordRequest& request) {
    requests_.push_back(request);
    if (requests_.size() > answers_.size()) return std::nullopt;
    return EnteredPassword{answers_[requests_.size() - 1]};
  }

  static constexpr wchar_t target[] = L"zdExpirationRules:anna@localhost/rules";
  static constexpr wchar_t desk[] = L"odbc:Driver=x;Database=rules;Uid=anna;SSLmode=prefer";
  Texts answers_;
  std::vector<PasswordRequest> requests_;
};

TEST_F(PasswordTest, WhoNeedsNoneIsNotAsked) {
  const PasswordServer server(L"-");
  EXPECT_EQ(opened(desk, server), connected);
  EXPECT_TRUE(requests_.empty());
}

TEST_F(PasswordTest, GivenPasswordIsTheOnlyOneThatIsTried) {
  const PasswordServer server(L"right");
  EXPECT_EQ(opened(desk + std::wstring(L";Pwd=wrong"), server), StoreErrorKind::unreachable);
  EXPECT_EQ(server.tried(), Texts{L"wrong"});
  EXPECT_TRUE(requests_.empty());
}

TEST_F(PasswordTest, MissingPasswordIsAskedForUntilItIsRight) {
  const PasswordServer server(L"right");
  answers_ = {L"wrong", L"right"};
  EXPECT_EQ(opened(desk, server), connected);
  EXPECT_EQ(server.tried(), (Texts{L"-", L"wrong", L"right", L"right"}));
  ASSERT_EQ(requests_.size(), 2u);
  EXPECT_EQ(requests_[0].store, L"anna@localhost/rules (SSLmode=prefer)");
  EXPECT_EQ(requests_[0].refusal, L"");
  EXPECT_NE(requests_[1].refusal, L"");
  EXPECT_FALSE(requests_[1].remembered);
}

TEST_F(PasswordTest, WrongPasswordOfTheDriversOwnMeansIsReportedAndAnotherAskedFor) {
  const wchar_t* said = L"FATAL:  password authentication failed for user \"anna\"";
  {
    const PasswordServer server(L"right", said);
    answers_ = {L"right"};
    EXPECT_EQ(opened(desk, server), connected);
    EXPECT_EQ(server.tried(), (Texts{L"-", L"right", L"right"}));
    ASSERT_EQ(requests_.size(), 1u);
    EXPECT_EQ(requests_[0].refusal, text(IDS_STORE_LOGIN_REFUSED, {L"anna@localhost/rules (SSLmode=prefer)"}));
  }
  const PasswordServer server(L"right", said);
  EXPECT_EQ(refusal_kind([&] { find_store(desk)->open({.odbc = server.api()}); }), StoreErrorKind::login_refused);
}

TEST_F(PasswordTest, ThreeWrongPasswordsAreEnough) {
  const PasswordServer server(L"right");
  answers_ = {L"a", L"b", L"c", L"right"};
  EXPECT_EQ(opened(desk, server), StoreErrorKind::unreachable);
  EXPECT_EQ(server.tried(), (Texts{L"-", L"a", L"b", L"c"}));
}

TEST_F(PasswordTest, WhoEntersNoneCancels) {
  const PasswordServer server(L"right");
  EXPECT_THROW(opened(desk, server), schedule::Cancelled);
}

TEST_F(PasswordTest, ServerThatCannotBeReachedIsNoReasonToAsk) {
  const PasswordServer server(L"right", L"no route to the host");
  EXPECT_EQ(opened(desk, server), StoreErrorKind::unreachable);
  EXPECT_EQ(server.tried(), Texts{L"-"});
  EXPECT_TRUE(requests_.empty());
}

TEST_F(PasswordTest, PasswordOfWindowsIsTriedBeforeTheUserIsAsked) {
  if (!try_write_credential(target, L"anna", L"right")) GTEST_SKIP() << "Windows keeps no passwords here";
  EXPECT_EQ(try_read_credential(target), L"right");
  {
    const PasswordServer server(L"right");
    EXPECT_EQ(opened(desk, server), connected);
    EXPECT_EQ(server.tried(), (Texts{L"-", L"right", L"right"}));
    EXPECT_TRUE(requests_.empty());
  }
  const PasswordServer server(L"new");
  answers_ = {L"new"};
  EXPECT_EQ(opened(desk, server), connected);
  EXPECT_EQ(server.tried(), (Texts{L"-", L"right", L"new", L"new"}));
  ASSERT_EQ(requests_.size(), 1u);
  EXPECT_TRUE(requests_[0].remembered);
  drop_credential(target);
  EXPECT_EQ(try_read_credential(target), std::nullopt);
}

}  // namespace
}  // namespace workbench
