#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tavrin {

/// "Failed to " + what + " because " + reason: the form of every error the user reads.
inline std::string failure(std::string_view what, std::string_view reason) {
  std::string text = "Failed to ";
  text.append(what).append(" because ").append(reason);
  return text;
}

/// A file that could not be read, written or made. `what()` is the whole sentence.
class FileError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
  FileError(const std::string& sentence, std::string_view reason)
      : std::runtime_error(sentence), reason_(reason) {}

  /// The clause after "because", to build another sentence from; the whole one where the error
  /// was made without.
  std::string reason() const { return reason_.empty() ? what() : reason_; }

private:
  std::string reason_;
};

} // namespace tavrin
