#include "StoreWriter.h"

#include <charconv>

#include "ModulePath.h"

StoreWriter::StoreWriter(const std::wstring& arguments, const std::wstring& program)
    : started_(base::path_beside_program(program), arguments) {}

std::optional<std::string> StoreWriter::next_line() {
  std::string line;
  char c = 0;
  DWORD count = 0;
  while (ReadFile(started_.output(), &c, 1, &count, nullptr) && count == 1) {
    if (c == '\n') return line;
    if (c != '\r') line += c;
  }
  return std::nullopt;
}

std::optional<StoreWriterProgress> StoreWriter::next_progress() {
  const std::optional<std::string> line = next_line();
  if (!line) return std::nullopt;
  StoreWriterProgress said{.acknowledged = !line->ends_with('?')};
  const auto result = std::from_chars(line->data(), line->data() + line->size(), said.number);
  return result.ec == std::errc() ? std::optional(said) : std::nullopt;
}

std::optional<unsigned> StoreWriter::next_acknowledged() {
  while (const auto said = next_progress())
    if (said->acknowledged) return said->number;
  return std::nullopt;
}

StoreWriter::~StoreWriter() { kill(); }

void StoreWriter::kill() {
  TerminateProcess(started_.process(), killed);
  exit_code();
}

DWORD StoreWriter::exit_code() {
  WaitForSingleObject(started_.process(), INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(started_.process(), &code);
  return code;
}
