#include "TavrinCore/Desktop/DesktopEntry.h"

#include <utility>

namespace tavrin {
namespace {

/// Splits a command line, one character at a time.
class ExecReader {
public:
  ExecReader(std::string_view exec, const ExecFields& fields) : exec_(exec), fields_(fields) {}

  std::vector<std::string> read() {
    for (place_ = 0; place_ < exec_.size(); ++place_)
      take(exec_[place_]);
    finish();
    return std::move(words_);
  }

private:
  bool hasNext() const { return place_ + 1 < exec_.size(); }

  void take(char c) {
    if (c == '"') {
      isQuoted_ = !isQuoted_;
      isWord_ = true;
    } else if (c == '\\' && hasNext() && escapes(exec_[place_ + 1])) {
      put(exec_[++place_]);
    } else if ((c == ' ' || c == '\t' || c == '\n') && !isQuoted_) {
      finish();
    } else if (c == '%' && hasNext()) {
      code(exec_[++place_]);
    } else {
      put(c);
    }
  }

  /// Inside quotes only these have an escape; outside any character has.
  bool escapes(char c) const { return !isQuoted_ || c == '"' || c == '`' || c == '$' || c == '\\'; }

  void code(char c) {
    switch (c) {
    case '%':
      put('%');
      break;
    case 'c':
      append(fields_.name);
      break;
    case 'k':
      append(fields_.file);
      break;
    case 'i':
      // Two words, or none.
      if (!fields_.icon.empty()) {
        finish();
        words_.emplace_back("--icon");
        words_.push_back(fields_.icon);
      }
      break;
    default:
      break;
    }
  }

  void put(char c) {
    word_.push_back(c);
    isWord_ = true;
  }
  void append(const std::string& text) {
    word_ += text;
    isWord_ = isWord_ || !text.empty();
  }
  void finish() {
    if (std::exchange(isWord_, false))
      words_.push_back(std::exchange(word_, {}));
  }

  std::string_view exec_;
  const ExecFields& fields_;
  std::size_t place_ = 0;
  std::vector<std::string> words_;
  std::string word_;
  bool isWord_ = false;
  bool isQuoted_ = false;
};

} // namespace

std::vector<std::string> execWords(std::string_view exec, const ExecFields& fields) {
  return ExecReader(exec, fields).read();
}

} // namespace tavrin
