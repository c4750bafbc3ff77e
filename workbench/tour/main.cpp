#include <windows.h>
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "ScreenReader.h"
#include "TextEncoding.h"

namespace {

constexpr int bad_arguments = 2;
constexpr char usage[] =
    "usage: screen-reader windows\n"
    "       screen-reader controls TITLE\n"
    "       screen-reader rows TITLE ID\n"
    "       screen-reader parts TITLE ID\n";

/// A line stays one line whatever the texts hold.
std::wstring on_one_line(std::wstring text) {
  for (wchar_t& unit : text)
    if (unit < L' ') unit = L' ';
  return text;
}

void print(const std::vector<tour::Line>& lines) {
  std::string output;
  for (const tour::Line& line : lines) {
    for (size_t index = 0; index < line.size(); ++index)
      output += (index == 0 ? "" : "\t") + base::to_utf8(on_one_line(line[index]));
    output += '\n';
  }
  _setmode(_fileno(stdout), _O_BINARY);
  std::fwrite(output.data(), 1, output.size(), stdout);
}

int read_screen(const std::vector<std::wstring>& words) {
  if (words.size() == 1 && words[0] == L"windows") {
    print(tour::read_windows());
  } else if (words.size() == 2 && words[0] == L"controls") {
    print(tour::read_controls(words[1]));
  } else if (words.size() == 3 && words[0] == L"rows") {
    print(tour::read_rows(words[1], std::stoi(words[2])));
  } else if (words.size() == 3 && words[0] == L"parts") {
    print(tour::read_parts(words[1], std::stoi(words[2])));
  } else {
    std::fputs(usage, stderr);
    return bad_arguments;
  }
  return EXIT_SUCCESS;
}

}  // namespace

/// Prints what the windows of other programs show, so that a script can check it.
int wmain(int count, wchar_t** arguments) {
  try {
    return read_screen({arguments + 1, arguments + count});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "screen-reader: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
