#pragma once

#include "TavrinCore/Text/Texts.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace tavrin {

/// "Failed to " + what + " because " + reason: the form of every error the user reads. `what` is an
/// action, translated where it is a literal.
inline std::string failure(std::string_view what, std::string_view reason) {
  return translated("Failed to {action} because {reason}",
                    {{"action", translation(what)}, {"reason", reason}});
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
