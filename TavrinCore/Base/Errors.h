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
};

} // namespace tavrin
