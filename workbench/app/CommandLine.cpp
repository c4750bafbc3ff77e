#include "CommandLine.h"

#include <shellapi.h>

#include <cwchar>

#include "Owned.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr int decimal = 10;

/// Walks the arguments; an option takes the one after it as its value.
class Arguments {
 public:
  explicit Arguments(std::span<const std::wstring> arguments) : rest_(arguments) {}

  bool at_end() const { return rest_.empty(); }

  const std::wstring& next() {
    const std::wstring& argument = rest_.front();
    rest_ = rest_.subspan(1);
    return argument;
  }

  const std::wstring& value_of(const std::wstring& option) {
    if (at_end() || rest_.front().empty() || rest_.front().starts_with(L"--"))
      throw CommandLineError{IDS_MISSING_VALUE, option};
    return next();
  }

 private:
  std::span<const std::wstring> rest_;
};

long rule_number(const std::wstring& argument) {
  wchar_t* end = nullptr;
  errno = 0;
  const long number = std::wcstol(argument.c_str(), &end, decimal);
  if (errno != 0 || *end != L'\0' || number < 1) throw CommandLineError{IDS_BAD_RULE_NUMBER, argument};
  return number;
}

std::optional<Language> language_named(const std::wstring& name) {
  if (name == L"zh") return Language::chinese;
  if (name == L"en") return Language::english;
  return std::nullopt;
}

void refuse_unless_language(const std::wstring& name) {
  if (!language_named(name)) throw CommandLineError{IDS_BAD_LANGUAGE, name};
}

void read_argument(Arguments& arguments, CommandLine& line) {
  const std::wstring& argument = arguments.next();
  if (argument == L"--store") {
    line.store = arguments.value_of(argument);
  } else if (argument == L"--module") {
    line.module = arguments.value_of(argument);
  } else if (argument == L"--language") {
    refuse_unless_language(arguments.value_of(argument));
  } else if (argument == L"--show") {
    line.shown_rule = rule_number(arguments.value_of(argument));
  } else if (argument == L"--print-rules") {
    line.action = CommandLine::Action::print_rules;
  } else if (argument == L"--version") {
    line.action = CommandLine::Action::version;
  } else if (argument == L"--help") {
    line.action = CommandLine::Action::help;
  } else {
    throw CommandLineError{IDS_UNKNOWN_ARGUMENT, argument};
  }
}

}  // namespace

CommandLine parse_command_line(std::span<const std::wstring> arguments) {
  CommandLine line;
  Arguments rest(arguments);
  while (!rest.at_end()) read_argument(rest, line);
  return line;
}

std::optional<Language> try_find_language(std::span<const std::wstring> arguments) {
  std::optional<Language> found;
  for (size_t at = 1; at < arguments.size(); ++at) {
    if (arguments[at - 1] != L"--language") continue;
    if (const std::optional<Language> named = language_named(arguments[at])) found = named;
  }
  return found;
}

std::vector<std::wstring> without_language(std::span<const std::wstring> arguments) {
  std::vector<std::wstring> others;
  for (Arguments rest(arguments); !rest.at_end();) {
    const std::wstring& argument = rest.next();
    if (argument == L"--language") {
      refuse_unless_language(rest.value_of(argument));
    } else {
      others.push_back(argument);
    }
  }
  return others;
}

std::vector<std::wstring> process_arguments() {
  int count = 0;
  const base::OwnedBy<wchar_t**, &LocalFree> arguments(CommandLineToArgvW(GetCommandLineW(), &count));
  if (!arguments || count < 1) return {};
  return {arguments.get() + 1, arguments.get() + count};
}

}  // namespace workbench
