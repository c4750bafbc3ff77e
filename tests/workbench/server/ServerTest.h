#pragma once

#include <gmock/gmock.h>

#include <optional>

#include "StoreSamples.h"
#include "TestSchema.h"
#include "TestServer.h"

/// A test on a schema of its own; it is skipped where there is no server.
class ServerTest : public testing::Test {
 protected:
  void SetUp() override {
    if (test_support::test_server())
      schema_.emplace();
    else
      GTEST_SKIP() << test_support::no_test_server;
  }

  std::optional<TestSchema> schema_;
};
