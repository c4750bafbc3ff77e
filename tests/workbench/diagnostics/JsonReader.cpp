#include "JsonReader.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

namespace snagtrap_test {
namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Json whole() {
    Json json = value();
    if (at_ != text_.size()) fail("something behind the value");
    return json;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw std::runtime_error(what + " at byte " + std::to_string(at_) + " of " + std::string(text_));
  }

  bool next_is(char character) const { return at_ < text_.size() && text_[at_] == character; }

  bool take(char character) {
    const bool taken = next_is(character);
    if (taken) ++at_;
    return taken;
  }

  void expect(char character) {
    if (!take(character)) fail(std::string("no ") + character);
  }

  unsigned char byte() {
    if (at_ == text_.size()) fail("the text ends too early");
    return static_cast<unsigned char>(text_[at_++]);
  }

  Json value() {
    if (next_is('{')) return object();
    if (next_is('"')) return {Json::Kind::text, {}, text(), {}};
    if (word("null")) return {};
    if (word("true")) return {Json::Kind::boolean, "true", {}, {}};
    if (word("false")) return {Json::Kind::boolean, "false", {}, {}};
    return {Json::Kind::number, number(), {}, {}};
  }

  bool word(std::string_view expected) {
    const bool found = text_.substr(at_, expected.size()) == expected;
    if (found) at_ += expected.size();
    return found;
  }

  Json object() {
    Json json{Json::Kind::object, {}, {}, {}};
    expect('{');
    if (take('}')) return json;
    do {
      std::wstring name = text();
      if (json.has(name)) fail("a name twice");
      expect(':');
      json.members.emplace_back(std::move(name), value());
    } while (take(','));
    expect('}');
    return json;
  }

  void digits() {
    const auto is_digit = [this] { return at_ < text_.size() && text_[at_] >= '0' && text_[at_] <= '9'; };
    if (!is_digit()) fail("no digit");
    while (is_digit()) ++at_;
  }

  std::string number() {
    const std::size_t start = at_;
    take('-');
    if (!take('0')) digits();
    if (take('.')) digits();
    if (take('e') || take('E')) {
      if (!take('+')) take('-');
      digits();
    }
    return std::string(text_.substr(start, at_ - start));
  }

  std::wstring text() {
    std::wstring units;
    expect('"');
    while (!take('"')) {
      if (take('\\')) {
        units += escape();
      } else {
        append_code_point(units, code_point());
      }
    }
    return units;
  }

  wchar_t escape() {
    static constexpr std::string_view letters = "\"\\/bfnrt";
    static constexpr std::wstring_view meanings = L"\"\\/\b\f\n\r\t";
    const auto letter = static_cast<char>(byte());
    if (letter == 'u') return four_digits();
    const std::size_t index = letters.find(letter);
    if (index == std::string_view::npos) fail("an unknown escape");
    return meanings[index];
  }

  wchar_t four_digits() {
    unsigned unit = 0;
    for (int i = 0; i < 4; ++i) {
      static constexpr std::string_view hexadecimal = "0123456789abcdef";
      const std::size_t digit = hexadecimal.find(static_cast<char>(byte()));
      if (digit == std::string_view::npos) fail("no hexadecimal digit");
      unit = unit << 4 | static_cast<unsigned>(digit);
    }
    return static_cast<wchar_t>(unit);
  }

  std::uint32_t code_point() {
    const unsigned char first = byte();
    if (first < 0x20) fail("a control character");
    if (first < 0x80) return first;
    const int following = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4) fail("no UTF-8");
    std::uint32_t value = first & (0x3Fu >> following);
    for (int i = 0; i < following; ++i) {
      const unsigned char more = byte();
      if ((more & 0xC0) != 0x80) fail("no UTF-8");
      value = value << 6 | (more & 0x3F);
    }
    static constexpr std::uint32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    if (value < smallest[following] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) fail("no UTF-8");
    return value;
  }

  static void append_code_point(std::wstring& units, std::uint32_t value) {
    if (value < 0x10000) {
      units += static_cast<wchar_t>(value);
    } else {
      units += static_cast<wchar_t>(0xD800 + ((value - 0x10000) >> 10));
      units += static_cast<wchar_t>(0xDC00 + (value & 0x3FF));
    }
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

auto find_member(const Json& json, std::wstring_view name) {
  return std::find_if(json.members.begin(), json.members.end(),
                      [&](const auto& member) { return member.first == name; });
}

}  // namespace

const Json& Json::operator[](std::wstring_view name) const {
  static const Json none;
  const auto member = find_member(*this, name);
  return member != members.end() ? member->second : none;
}

bool Json::has(std::wstring_view name) const { return find_member(*this, name) != members.end(); }

Json read_json(std::string_view text) { return Reader(text).whole(); }

std::vector<Json> read_json_lines(std::string_view text) {
  std::vector<Json> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) throw std::runtime_error("the last line has no end");
    lines.push_back(read_json(text.substr(0, end)));
    text.remove_prefix(end + 1);
  }
  return lines;
}

}  // namespace snagtrap_test
