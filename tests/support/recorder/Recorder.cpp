#include "Recorder.h"

#include <algorithm>
#include <iterator>
#include <ostream>
#include <stdexcept>

#include "ModulePath.h"
#include "TextEncoding.h"

namespace test_support {
namespace {

template <class Function>
Function export_of(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

template <class Predicate>
std::vector<RecordedCommand> select(const std::vector<RecordedCommand>& commands, Predicate predicate) {
  std::vector<RecordedCommand> selected;
  std::copy_if(commands.begin(), commands.end(), std::back_inserter(selected), predicate);
  return selected;
}

Out default_out(HRESULT result) { return SUCCEEDED(result) ? Out::created : Out::untouched; }

}  // namespace

std::wstring recorder_path() { return base::path_beside_program(L"recorder\\SnagtrapUtil3.0_x64.dll"); }

Recorder::Recorder(const std::wstring& path) : library_(LoadLibraryW(path.c_str())) {
  if (!library_) throw std::runtime_error("the recorder cannot be loaded");
  const auto control = export_of<RecorderControlFunction>(library_.get(), "recorder_control");
  if (!control) throw std::runtime_error("another diagnostics library is loaded in place of the recorder");
  control_ = control();
  reset();
}

Recorder::~Recorder() { control_->reset(); }

std::vector<RecordedCommand> Recorder::commands() const {
  std::vector<RecordedCommand> all;
  control_->visit_commands(
      [](void* context, const RecordedCommand& command) {
        static_cast<std::vector<RecordedCommand>*>(context)->push_back(command);
      },
      &all);
  return all;
}

std::vector<RecordedCommand> Recorder::commands(const std::wstring& word) const {
  return select(commands(), [&](const RecordedCommand& command) { return command.word == word; });
}

std::vector<RecordedCommand> Recorder::processed(const std::wstring& kind) const {
  return select(commands(L"PROCESS"),
                [&](const RecordedCommand& command) { return field_text(command, L"$Type") == kind; });
}

std::vector<std::wstring> Recorder::texts(const std::wstring& kind, const std::wstring& field) const {
  std::vector<std::wstring> texts;
  for (const RecordedCommand& record : processed(kind)) texts.push_back(field_text(record, field));
  return texts;
}

std::vector<std::wstring> Recorder::words() const {
  std::vector<std::wstring> words;
  for (const RecordedCommand& command : commands()) words.push_back(command.word);
  return words;
}

void Recorder::set_result(const std::wstring& word, HRESULT result) { set_result(word, result, default_out(result)); }

void Recorder::set_result(const std::wstring& word, HRESULT result, Out out) {
  control_->set_result(word.c_str(), result, out, false);
}

void Recorder::set_next_result(const std::wstring& word, HRESULT result) {
  control_->set_result(word.c_str(), result, default_out(result), true);
}

void Recorder::on_command(Hook hook) {
  control_->set_hook(nullptr, nullptr);
  hook_ = std::move(hook);
  if (!hook_) return;
  control_->set_hook([](void* context, const RecordedCommand& command) { (*static_cast<Hook*>(context))(command); },
                     &hook_);
}

void Recorder::reset() {
  control_->reset();
  hook_ = nullptr;
}

const RecordedField* find_field(const RecordedCommand& command, const std::wstring& name) {
  const auto field = std::find_if(command.fields.begin(), command.fields.end(),
                                  [&](const RecordedField& candidate) { return candidate.name == name; });
  return field != command.fields.end() ? &*field : nullptr;
}

std::wstring field_text(const RecordedCommand& command, const std::wstring& name) {
  const RecordedField* field = find_field(command, name);
  return field ? field->text : std::wstring();
}

void PrintTo(const RecordedField& field, std::ostream* out) {
  *out << '"' << base::to_utf8(field.name) << "\" type " << field.type << " = " << base::to_utf8(field.text);
  for (const RecordedField& inner : field.inner) {
    *out << " / ";
    PrintTo(inner, out);
  }
}

void PrintTo(const RecordedCommand& command, std::ostream* out) {
  *out << base::to_utf8(command.word) << " {";
  for (const RecordedField& field : command.fields) {
    *out << ' ';
    PrintTo(field, out);
    *out << ';';
  }
  *out << " }";
}

}  // namespace test_support
