#pragma once

#include "TavrinCore/Kinds/Clipboard/ClipboardBoard.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardCrypto.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <filesystem>
#include <set>

namespace tavrin {

/// Why the history is not kept, in the panel's words.
struct ClipboardTrouble {
  enum class Kind { persistenceFailed, keychainFailed };
  Kind kind = Kind::persistenceFailed;
  /// The error's own sentence.
  std::string text;

  std::string title() const {
    return kind == Kind::keychainFailed ? translated("Cannot reach the Keychain")
                                        : translated("Cannot save the clipboard");
  }
  bool operator==(const ClipboardTrouble&) const = default;
};

/// The encrypted file, which every clipboard widget keeps its history in: a save changes what is
/// there by what became of the list here since the file was read or written last. Waits for disk
/// and keychain; used from one thread at a time.
class ClipboardVault {
public:
  ClipboardVault(std::filesystem::path url, Keychain& keychain)
      : url_(std::move(url)), crypto_(keychain) {}

  const std::filesystem::path& url() const { return url_; }

  struct Outcome {
    std::optional<ClipboardTrouble> trouble;
    /// What the file holds, when it was read or written; `ClipboardBoard::merged` brings it into a
    /// list that was made of `base`.
    std::optional<ClipboardList> stored;
    ClipboardTrace base;
  };
  /// A missing file is an empty history. A file that cannot be read is left alone and, unless the
  /// keychain was the reason, put aside by the next `save`.
  Outcome read();
  /// Writes `list` without the items `dropped`, and with what others have changed. A file that
  /// somebody removed, or that cannot be read any more, changes nothing in the list.
  Outcome save(const ClipboardList& list, const ClipboardSettings& settings, Date now,
               const std::set<UUID>& dropped = {});
  /// Removes the file, and those that were put aside; the key stays.
  void forget();

private:
  enum class State { unread, read, damaged };
  template <class Work> std::optional<ClipboardTrouble> guarded(const Work& work);
  std::optional<ClipboardTrouble> readInto(std::optional<ClipboardList>& found);

  std::filesystem::path url_;
  ClipboardCrypto crypto_;
  State state_ = State::unread;
  /// The file as it was when it was read or written last, and what it held.
  FileStamp seen_;
  ClipboardTrace stored_;
};

} // namespace tavrin
