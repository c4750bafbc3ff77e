#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "ExpirationRulesListDialog.h"
#include "FilledBlock.h"
#include "Recorder.h"
#include "RecordingHost.h"
#include "Reports.h"
#include "TextEncoding.h"

namespace list_test {

using test_support::Fault;
using test_support::HostRule;
using test_support::HostSetting;
using zd_expiration_rule_plugin::CExpirationRulesListDialog;

using Texts = std::vector<std::string>;
using Names = std::vector<std::wstring>;

/// The number of the rule that the tests look up.
constexpr long rule_id = 5;

/// A host, and a dialog object that is not open: what it asks of the host.
class LookupTest : public testing::Test {
 protected:
  ~LookupTest() override {
    block = {};
    EXPECT_THAT(host.living(), testing::IsEmpty());
  }

  std::string name_of(long rule) {
    const _bstr_t name = dialog.expiration_rule_name(rule);
    return base::to_utf8({static_cast<const wchar_t*>(name), name.length()});
  }

  const Texts& calls() { return host.calls().all(); }
  Texts reports() const { return test_support::reports(recorder); }

  test_support::Recorder recorder;
  test_support::RecordingHost host;
  StorageBlock block = test_support::filled_block(host.storage());
  CExpirationRulesListDialog dialog{&block};
};

/// The failures that hosts return.
inline const HRESULT failures[] = {E_FAIL, E_OUTOFMEMORY, E_NOINTERFACE, RPC_E_DISCONNECTED};

/// What is reported when an exception with this HRESULT ends a method of the dialog.
std::string caught(const char* function, int line, HRESULT hresult);
/// What is reported when a call of the host fails at this line.
std::string failed(const char* function, int line, HRESULT hresult);

}  // namespace list_test
