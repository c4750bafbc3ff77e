#include "StoreWriter.h"

#include "ModulePath.h"

StoreWriter::StoreWriter(const std::wstring& arguments, const std::wstring& program)
    : started_(base::path_beside_program(program), arguments) {}

std::optional<StoreWriterProgress> StoreWriter::next_progress() {
  StoreWriterProgress said{.acknowledged = true};
  bool any = false;
  char c = 0;
  DWORD count = 0;
  while (ReadFile(started_.output(), &c, 1, &count, nullptr) && count == 1) {
    if (c == '\n') return any ? std::optional(said) : std::nullopt;
    if (c == '?') said.acknowledged = false;
    if (c < '0' || c > '9') continue;
    said.number = said.number * 10 + static_cast<unsigned>(c - '0');
    any = true;
  }
  return std::nullopt;
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
