#include "TestServer.h"

#include <cstdlib>

#include "TextEncoding.h"

namespace test_support {

std::optional<std::wstring> test_server() {
  const char* server = std::getenv("ZD_TEST_SERVER");
  return server ? std::optional(base::from_utf8(server)) : std::nullopt;
}

}  // namespace test_support
