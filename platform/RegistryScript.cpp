#include "RegistryScript.h"

namespace platform {

namespace {

bool is_space(wchar_t unit) { return unit == L' ' || unit == L'\t' || unit == L'\r' || unit == L'\n'; }

bool is_punctuation(wchar_t unit) { return unit == L'{' || unit == L'}' || unit == L'='; }

struct Token {
  enum class Kind { end, punctuation, word };
  Kind kind = Kind::end;
  std::wstring text;
  bool quoted = false;

  bool is(wchar_t mark) const { return kind == Kind::punctuation && text[0] == mark; }
  bool is_keyword(std::wstring_view keyword) const { return kind == Kind::word && !quoted && text == keyword; }
};

/// Splits a script into words and punctuation.
class Lexer {
 public:
  explicit Lexer(std::wstring_view script) : rest_(script) {}

  Token next() {
    while (!rest_.empty() && is_space(rest_.front())) rest_.remove_prefix(1);
    if (rest_.empty()) return {};
    if (is_punctuation(rest_.front())) {
      Token token{Token::Kind::punctuation, std::wstring(1, rest_.front())};
      rest_.remove_prefix(1);
      return token;
    }
    return rest_.front() == L'\'' ? quoted_word() : plain_word();
  }

 private:
  Token plain_word() {
    std::size_t length = 0;
    while (length < rest_.size() && !is_space(rest_[length]) && !is_punctuation(rest_[length])) ++length;
    Token token{Token::Kind::word, std::wstring(rest_.substr(0, length))};
    rest_.remove_prefix(length);
    return token;
  }

  Token quoted_word() {
    Token token{Token::Kind::word, {}, true};
    rest_.remove_prefix(1);
    for (;;) {
      const std::size_t quote = rest_.find(L'\'');
      if (quote == std::wstring_view::npos) throw RegistryScriptError("a quote is not closed");
      token.text += rest_.substr(0, quote);
      rest_.remove_prefix(quote + 1);
      if (rest_.empty() || rest_.front() != L'\'') return token;
      token.text += L'\'';
      rest_.remove_prefix(1);
    }
  }

  std::wstring_view rest_;
};

/// The registry holds no deeper keys; reading on would only exhaust the stack.
constexpr unsigned deepest_key = 512;

class Parser {
 public:
  Parser(std::wstring_view script, const Replacements& replacements)
      : lexer_(script), replacements_(replacements), token_(lexer_.next()) {}

  std::vector<RegistryNode> script() {
    if (!token_.is_keyword(L"HKCR")) throw RegistryScriptError("a script starts with HKCR");
    advance();
    if (!token_.is(L'{')) throw RegistryScriptError("HKCR has no block");
    RegistryNode root;
    block(root);
    if (token_.kind != Token::Kind::end) throw RegistryScriptError("text after the end of the script");
    return std::move(root.keys);
  }

 private:
  void advance() { token_ = lexer_.next(); }

  void block(RegistryNode& node) {
    if (++depth_ > deepest_key) throw RegistryScriptError("keys are nested too deeply");
    advance();
    while (!token_.is(L'}')) {
      if (token_.is_keyword(L"val")) {
        advance();
        RegistryValue value = assignment(word());
        value.keys_before = node.keys.size();
        node.values.push_back(std::move(value));
      } else {
        node.keys.push_back(key());
      }
    }
    --depth_;
    advance();
  }

  RegistryNode key() {
    RegistryNode node;
    if (token_.is_keyword(L"NoRemove")) {
      node.removal = RegistryNode::Removal::none;
      advance();
    } else if (token_.is_keyword(L"ForceRemove")) {
      node.removal = RegistryNode::Removal::complete;
      advance();
    }
    node.name = word();
    if (node.name.empty()) throw RegistryScriptError("a key has no name");
    if (token_.is(L'=')) node.values.push_back(assignment({}));
    if (token_.is(L'{')) block(node);
    return node;
  }

  RegistryValue assignment(std::wstring name) {
    RegistryValue value;
    value.name = std::move(name);
    if (!token_.is(L'=')) throw RegistryScriptError("a value is not assigned");
    advance();
    value.is_number = token_.is_keyword(L"d");
    if (!value.is_number && !token_.is_keyword(L"s")) throw RegistryScriptError("a value is neither s nor d");
    advance();
    std::wstring text = word();
    if (value.is_number) {
      value.number = number(text);
    } else {
      value.text = std::move(text);
    }
    return value;
  }

  static std::uint32_t number(const std::wstring& digits) {
    std::uint64_t value = 0;
    for (const wchar_t digit : digits) {
      if (digit < L'0' || digit > L'9') throw RegistryScriptError("a number holds something other than digits");
      value = value * 10 + static_cast<std::uint64_t>(digit - L'0');
      if (value > UINT32_MAX) throw RegistryScriptError("a number is too large");
    }
    if (digits.empty()) throw RegistryScriptError("a number is empty");
    return static_cast<std::uint32_t>(value);
  }

  std::wstring word() {
    if (token_.kind != Token::Kind::word) throw RegistryScriptError("a word is missing");
    std::wstring text = replaced(token_.text);
    advance();
    return text;
  }

  std::wstring replaced(std::wstring_view text) const {
    std::wstring result;
    for (;;) {
      const std::size_t start = text.find(L'%');
      if (start == std::wstring_view::npos) return result.append(text);
      const std::size_t end = text.find(L'%', start + 1);
      if (end == std::wstring_view::npos) throw RegistryScriptError("a replacement is not closed");
      result.append(text.substr(0, start)).append(replacement(text.substr(start + 1, end - start - 1)));
      text.remove_prefix(end + 1);
    }
  }

  const std::wstring& replacement(std::wstring_view name) const {
    for (const auto& [known, text] : replacements_) {
      if (known == name) return text;
    }
    throw RegistryScriptError("an unknown replacement");
  }

  Lexer lexer_;
  const Replacements& replacements_;
  Token token_;
  unsigned depth_ = 0;
};

}  // namespace

std::vector<RegistryNode> parse_registry_script(std::wstring_view script, const Replacements& replacements) {
  // The registry ends a name at a null, and a name that is empty then stands for the key above.
  if (script.find(L'\0') != std::wstring_view::npos) throw RegistryScriptError("a null in the script");
  return Parser(script, replacements).script();
}

}  // namespace platform
