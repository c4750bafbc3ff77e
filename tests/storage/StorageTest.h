#pragma once

#include <gmock/gmock.h>

#include "ExpectedReports.h"
#include "FieldIds.h"
#include "FilledBlock.h"
#include "RecordingHost.h"
#include "ThrownBy.h"

namespace storage_test {

using test_support::Fault;
using test_support::HostRow;
using test_support::thrown_by;

/// A host with an empty storage.
class StorageTest : public testing::Test {
 protected:
  IkvTablePtr table(const std::vector<HostRow>& rows) { return host.table(rows).GetInterfacePtr(); }
  const std::vector<std::string>& calls() { return host.calls().all(); }
  /// What was reported since the last call. Every test takes all reports: one that is left fails it.
  static std::vector<std::string> reports() { return test_support::take_reports(); }

  test_support::RecordingHost host;
  StorageBlock block = test_support::filled_block(host.storage());
};

}  // namespace storage_test
