#pragma once

#include "TavrinCore/Kinds/Clipboard/ClipboardBoard.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardCrypto.h"

#include <filesystem>

namespace tavrin {

/// Why the history is not kept, in the panel's words.
struct ClipboardTrouble {
  enum class Kind { persistenceFailed, keychainFailed };
  Kind kind = Kind::persistenceFailed;
  /// The error's own sentence.
  std::string text;

  std::string title() const {
    return kind == Kind::keychainFailed ? "Cannot reach the Keychain" : "Cannot save the clipboard";
  }
  bool operator==(const ClipboardTrouble&) const = default;
};

/// The encrypted file. Waits for disk and keychain; used from one thread at a time.
class ClipboardVault {
public:
  ClipboardVault(std::filesystem::path url, Keychain& keychain)
      : url_(std::move(url)), crypto_(keychain) {}

  const std::filesystem::path& url() const { return url_; }

  struct Outcome {
    std::optional<ClipboardTrouble> trouble;
    /// What was found in the file, when it was read.
    ClipboardList found;
  };
  /// A missing file is an empty history. A file that cannot be read is left alone and, unless the
  /// keychain was the reason, put aside by the next `save`.
  Outcome read();
  /// Writes `list`. Where the file could not be read before for the keychain's sake, what it holds
  /// is read first and kept behind the list's own entries.
  Outcome save(const ClipboardList& list, const ClipboardSettings& settings, Date now);
  /// Removes the file, and those that were put aside; the key stays.
  void forget();

private:
  enum class State { unread, read, damaged };
  template <class Work> std::optional<ClipboardTrouble> guarded(const Work& work);

  std::filesystem::path url_;
  ClipboardCrypto crypto_;
  State state_ = State::unread;
};

} // namespace tavrin
