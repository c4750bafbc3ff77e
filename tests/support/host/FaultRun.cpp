#include "FaultRun.h"

#include <gtest/gtest.h>

#include <optional>

#include "Depth.h"
#include "FaultLoop.h"

namespace test_support {
namespace {

std::string name_of(HRESULT result) {
  switch (result) {
    case S_OK:
      return "S_OK";
    case S_FALSE:
      return "S_FALSE";
    case E_FAIL:
      return "E_FAIL";
    case E_OUTOFMEMORY:
      return "E_OUTOFMEMORY";
    case E_NOINTERFACE:
      return "E_NOINTERFACE";
    case RPC_E_DISCONNECTED:
      return "RPC_E_DISCONNECTED";
    default:
      return std::to_string(result);
  }
}

}  // namespace

std::string described(const Fault& fault) {
  const char* const outs[] = {"untouched", "null", "given", "a number"};
  return name_of(fault.result) + ", out " + outs[static_cast<int>(fault.out)] + (fault.lasting ? ", from then on" : "");
}

std::vector<Fault> faults_to_inject() {
  using Out = Fault::Out;
  const Fault lost_host = {RPC_E_DISCONNECTED, Out::untouched, true};
  const std::vector<Fault> faults = {{E_FAIL, Out::untouched},
                                     {E_FAIL, Out::null},
                                     {E_OUTOFMEMORY, Out::untouched},
                                     {E_NOINTERFACE, Out::null},
                                     {RPC_E_DISCONNECTED, Out::untouched},
                                     {RPC_E_DISCONNECTED, Out::null},
                                     {S_FALSE, Out::untouched},
                                     {S_FALSE, Out::null},
                                     {S_FALSE, Out::given},
                                     {S_OK, Out::untouched},
                                     {S_OK, Out::null},
                                     lost_host};
  return deep() ? faults : std::vector(1, faults.front());
}

std::size_t fail_each_call(const Fault& fault,
                           const std::function<void(RecordingHost& host, const std::function<void()>& arm)>& scenario) {
  return fail_each_call([&](std::size_t number) -> std::optional<std::string> {
    RecordingHost host;
    scenario(host, [&] {
      host.record_queries(true);
      host.calls().forget();
      host.calls().fail_number(number, fault);
    });
    for (const std::string& object : host.living()) ADD_FAILURE() << "not released: " << object;
    if (host.calls().faulted_calls().empty()) return std::nullopt;
    return host.calls().all()[number - 1] + " with " + described(fault);
  });
}

}  // namespace test_support
