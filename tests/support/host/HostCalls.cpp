#include "HostCalls.h"

#include <algorithm>
#include <iterator>

#include "TextEncoding.h"

namespace test_support {
namespace {

std::string shown(const HostArgument& argument) {
  if (const long* number = std::get_if<long>(&argument)) return std::to_string(*number);
  if (const auto* object = std::get_if<IUnknown*>(&argument)) return *object ? "object" : "null";
  if (const auto* word = std::get_if<const char*>(&argument)) return *word;
  const wchar_t* text = std::get<const wchar_t*>(argument);
  return text ? '"' + base::to_utf8(text) + '"' : "null";
}

std::string shown(const char* name, std::initializer_list<HostArgument> arguments) {
  std::string text = name;
  const char* separator = "(";
  for (const HostArgument& argument : arguments) {
    text += separator + shown(argument);
    separator = ", ";
  }
  return arguments.size() != 0 ? text + ')' : text;
}

}  // namespace

std::vector<std::string> HostCalls::all(const std::string& prefix) const {
  std::vector<std::string> selected;
  std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(selected),
               [&](const std::string& call) { return call.compare(0, prefix.size(), prefix) == 0; });
  return selected;
}

void HostCalls::fail(const std::string& pattern, const Fault& fault, long nth) {
  planned_.push_back({pattern, static_cast<std::size_t>(nth), false, fault});
}

void HostCalls::fail_all(const std::string& pattern, const Fault& fault) {
  planned_.push_back({pattern, 1, true, fault});
}

void HostCalls::fail_number(std::size_t number, const Fault& fault) {
  if (number > calls_.size()) planned_.push_back({{}, number - calls_.size(), fault.lasting, fault});
}

std::optional<Fault> HostCalls::record(const char* name, std::initializer_list<HostArgument> arguments) {
  const std::string text = shown(name, arguments);
  calls_.push_back(text);
  act(name, text);
  return take_fault(name, text);
}

void HostCalls::act(const std::string& name, const std::string& text) {
  const auto found = std::find_if(acts_.begin(), acts_.end(), [&](const Act& candidate) {
    return candidate.pattern == name || candidate.pattern == text;
  });
  if (found == acts_.end()) return;
  const std::function<void()> act = std::move(found->act);
  acts_.erase(found);
  act();
}

std::optional<Fault> HostCalls::take_fault(const std::string& name, const std::string& text) {
  std::optional<Fault> fault;
  std::vector<Planned> left;
  for (Planned& plan : planned_) {
    const bool matches = plan.pattern.empty() || plan.pattern == name || plan.pattern == text;
    const bool is_due = matches && --plan.countdown == 0;
    if (is_due) fault = plan.fault;
    if (is_due && plan.every) plan.countdown = 1;
    if (plan.countdown != 0) left.push_back(plan);
  }
  planned_ = std::move(left);
  if (fault) faulted_calls_.push_back(text);
  return fault;
}

}  // namespace test_support
