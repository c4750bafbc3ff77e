#include <gmock/gmock.h>
#include <winsock2.h>

#include <cstdlib>
#include <filesystem>

#include "FaultyOdbc.h"
#include "OdbcConnection.h"
#include "OdbcError.h"
#include "TemporaryFolder.h"
#include "TestServer.h"
#include "WithinSeconds.h"

using namespace workbench::odbc;

namespace {

const DriverProfile server_profile{{L"PostgreSQL Unicode", L"PostgreSQL Unicode(x64)"},
                                   {{L"Debug", L"0"}, {L"CommLog", L"0"}, {L"LFConversion", L"0"}},
                                   {},
                                   {L"SSLmode", L"verify-full"}};

/// What a real driver and a real server do with this layer's calls.
class ServerOdbc : public testing::Test {
 protected:
  void SetUp() override {
    const auto server = test_support::test_server();
    if (!server) GTEST_SKIP() << test_support::no_test_server;
    options_ = ConnectionString(*server);
  }

  OdbcConnection connect() { return {odbc_.api(), options_, server_profile, std::chrono::seconds(10)}; }

  /// The SQLSTATE with which a connection is refused; empty when it is not.
  std::string refused() {
    try {
      connect();
      return {};
    } catch (const OdbcError& error) {
      return error.state();
    }
  }

  ConnectionString options_;
  test_support::FaultyOdbc odbc_{system_odbc()};
};

TEST_F(ServerOdbc, TextsAndNumbersTravelUnchanged) {
  {
    const OdbcConnection connection = connect();
    OdbcStatement statement = connection.prepare(
        L"select cast(? as text), cast(? as bigint), cast(? as text), cast(? as integer), cast(? as text)");
    const std::wstring longest(100'000, L'\x4E2D');
    const std::wstring texts[] = {L"",
                                  L"'; drop table x; --",
                                  L"\xD83D\xDCC8 \x6CAA\xFFFD\xFFFF\xFFFE\xFEFF",
                                  L"\r\n line\nend\r",
                                  L"\\u0041 \\ ? {ts '1'} $1 %s",
                                  std::wstring(511, L'x'),
                                  std::wstring(512, L'x'),
                                  std::wstring(2001, L'x')};
    for (const std::wstring& text : texts) {
      statement.bind(1, text).bind(2, -9'000'000'000).bind_null(3).bind(4, 7).bind(5, longest).execute();
      ASSERT_TRUE(statement.fetch());
      EXPECT_EQ(statement.text(0), text);
      EXPECT_EQ(statement.integer(1), -9'000'000'000);
      EXPECT_EQ(statement.try_text(2), std::nullopt);
      EXPECT_EQ(statement.integer(3), 7);
      EXPECT_EQ(statement.text(4), longest);
      EXPECT_FALSE(statement.fetch());
    }
  }
  EXPECT_EQ(odbc_.live_handles(), 0);
}

TEST_F(ServerOdbc, TransactionHappensWhollyOrNotAtAll) {
  OdbcConnection connection = connect();
  connection.execute(L"create temporary table numbers (number integer unique)");
  OdbcStatement insert = connection.prepare(L"insert into numbers values (?)");
  {
    OdbcTransaction transaction(connection);
    EXPECT_EQ(insert.bind(1, 1).execute(), 1);
    transaction.commit();
  }
  {
    const OdbcTransaction transaction(connection);
    insert.bind(1, 2).execute();
  }
  try {
    const OdbcTransaction transaction(connection);
    insert.bind(1, 3).execute();
    insert.bind(1, 1).execute();
    ADD_FAILURE() << "a number stands twice";
  } catch (const OdbcError& error) {
    EXPECT_EQ(error.state(), "23505");
  }
  OdbcStatement count = connection.prepare(L"select count(*), max(number) from numbers");
  count.execute();
  ASSERT_TRUE(count.fetch());
  EXPECT_EQ(count.integer(0), 1);
  EXPECT_EQ(count.integer(1), 1);
}

TEST_F(ServerOdbc, PasswordMayHoldWhatConnectionStringsAreMadeOf) {
  connect().execute(L"drop role if exists braces; create role braces login password ' p;q}r{=\\ '");
  options_.set(L"Uid", L"braces");
  options_.set(L"Pwd", L" p;q}r{=\\ ");
  EXPECT_EQ(refused(), "");
  options_.set(L"Pwd", L" p;q}r{=\\");
  EXPECT_EQ(refused(), "08001");
}

TEST_F(ServerOdbc, OtherNamesThatNeedBracesAreNotFoundAndLeadNowhereElse) {
  const OdbcConnection administrator = connect();
  for (const wchar_t* name : {L"na;me", L"na}me", L"{name}"}) {
    administrator.execute(std::wstring(L"drop database if exists \"") + name + L'"');
    administrator.execute(std::wstring(L"create database \"") + name + L'"');
  }
  administrator.execute(L"drop role if exists \"na;me\"; create role \"na;me\" superuser login password 'password'");
  const ConnectionString options = options_;
  const auto refused_with = [&](const wchar_t* keyword, const wchar_t* name) {
    options_ = options;
    options_.set(keyword, name);
    if (std::wstring_view(keyword) == L"Uid") options_.set(L"Pwd", L"password");
    return refused();
  };
  // The driver takes the braces for a part of the name.
  for (const wchar_t* name : {L"na;me", L"na}me", L"{name}"}) EXPECT_EQ(refused_with(L"Database", name), "08001");
  EXPECT_EQ(refused_with(L"Uid", L"na;me"), "08001");
  EXPECT_EQ(refused_with(L"Server", L"127.0.0.1;Port=1"), "08001");
  EXPECT_EQ(refused_with(L"Database", L"postgres"), "");
}

TEST_F(ServerOdbc, ServerWithoutEncryptionIsRefusedWhereItIsRequired) {
  options_.set(L"SSLmode", L"verify-full");
  EXPECT_EQ(refused(), "08001");
}

/// Switches the server's encryption on while it lives.
class ScopedEncryption {
 public:
  explicit ScopedEncryption(const OdbcConnection& administrator) : administrator_(administrator) { set(L"on"); }
  ~ScopedEncryption() { set(L"off"); }
  ScopedEncryption(const ScopedEncryption&) = delete;
  ScopedEncryption& operator=(const ScopedEncryption&) = delete;

 private:
  void set(const std::wstring& state) const {
    administrator_.execute(L"alter system set ssl = " + state);
    administrator_.execute(L"select pg_reload_conf()");
    const auto present = [&] {
      OdbcStatement show = administrator_.prepare(L"select current_setting('ssl')");
      show.execute();
      return show.fetch() ? show.text(0) : L"";
    };
    test_support::within_seconds(2, [&] { return present() == state; });
    EXPECT_EQ(present(), state);
  }

  const OdbcConnection& administrator_;
};

/// Lets the driver trust this authority of the run.
void trust(const std::string& authority) {
  const std::filesystem::path folder = std::string("Z:") + std::getenv("ZD_TEST_AUTHORITIES");
  const std::filesystem::path home = std::string("Z:") + std::getenv("ZD_TEST_HOME");
  test_support::write_bytes(home / ".postgresql" / "root.crt", test_support::read_bytes(folder / (authority + ".crt")));
}

TEST_F(ServerOdbc, ServerProvesWhoItIsByACertificateOfATrustedAuthorityAndItsName) {
  const OdbcConnection administrator = connect();
  const ScopedEncryption encryption(administrator);
  options_.set(L"SSLmode", L"verify-full");
  options_.set(L"Server", L"localhost");
  trust("own");
  {
    const OdbcConnection connection = connect();
    OdbcStatement encrypted = connection.prepare(L"select 1 from pg_stat_ssl where pid = pg_backend_pid() and ssl");
    encrypted.execute();
    EXPECT_TRUE(encrypted.fetch());
  }
  trust("other");
  EXPECT_EQ(refused(), "08001") << "the certificate is of another authority";
  trust("own");
  options_.set(L"Server", L"127.0.0.1");
  EXPECT_EQ(refused(), "08001") << "the certificate is of a server of another name";
}

TEST_F(ServerOdbc, DriverThatDoesNotExistIsRefused) {
  options_.set(L"Driver", L"no such driver");
  EXPECT_THAT(refused(), testing::AnyOf("IM002", "IM003", "01000"));
}

TEST_F(ServerOdbc, LostConnectionIsReported) {
  const OdbcConnection connection = connect();
  EXPECT_FALSE(connection.is_lost());
  try {
    connection.execute(L"select pg_terminate_backend(pg_backend_pid())");
    ADD_FAILURE() << "the connection ended itself";
  } catch (const OdbcError& error) {
    EXPECT_EQ(error.state(), "57P01");
  }
  EXPECT_THROW(connection.execute(L"select 1"), OdbcError);
  EXPECT_TRUE(connection.is_lost());
}

/// A port that accepts connections and says nothing.
class SilentServer {
 public:
  SilentServer() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    socket_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(socket_, generic, size) == 0 && listen(socket_, 1) == 0 && getsockname(socket_, generic, &size) == 0)
      port_ = ntohs(address.sin_port);
  }
  ~SilentServer() {
    closesocket(socket_);
    WSACleanup();
  }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

  int port() const { return port_; }

 private:
  SOCKET socket_;
  int port_ = 0;
};

TEST_F(ServerOdbc, SilentServerIsGivenUp) {
  const SilentServer silent;
  ASSERT_NE(silent.port(), 0);
  options_.set(L"Port", std::to_wstring(silent.port()));
  const ULONGLONG start = GetTickCount64();
  EXPECT_THROW(OdbcConnection(odbc_.api(), options_, server_profile, std::chrono::seconds(2)), OdbcError);
  EXPECT_LT(GetTickCount64() - start, 10'000u);
}

}  // namespace
