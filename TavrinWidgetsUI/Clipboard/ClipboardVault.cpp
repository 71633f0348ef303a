#include "TavrinWidgetsUI/Clipboard/ClipboardVault.h"

#include "TavrinCore/Base/Wipe.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/DocumentLock.h"
#include "TavrinStorage/AESGCM.h"
#include "TavrinStorage/SharedDocument.h"

#include <system_error>

namespace tavrin {
namespace {

constexpr std::size_t longestFile = std::size_t{2} * 1024 * 1024 * 1024;
constexpr const char* damagedSuffix = ".damaged";
/// Of files that are put aside; the last of them makes room.
constexpr int mostDamaged = 100;

std::filesystem::path damagedURL(const std::filesystem::path& url, int number) {
  return url.string() + damagedSuffix + (number > 1 ? "-" + std::to_string(number) : "");
}

/// Somebody may still have the key, or know what happened to the file: each is kept. Throws where
/// it cannot be, for then it must not be replaced.
void putAside(const std::filesystem::path& url) {
  if (!std::filesystem::exists(url))
    return;
  int number = 1;
  while (number < mostDamaged && std::filesystem::exists(damagedURL(url, number)))
    ++number;
  std::filesystem::rename(url, damagedURL(url, number));
}

} // namespace

template <class Work> std::optional<ClipboardTrouble> ClipboardVault::guarded(const Work& work) {
  using Kind = ClipboardTrouble::Kind;
  const auto unreadable = [this](const std::exception& error) {
    return ClipboardTrouble{
        Kind::persistenceFailed,
        failure(translated("read {path}", {{"path", url_.string()}}), error.what())};
  };
  try {
    work();
    return std::nullopt;
  } catch (const KeychainError& error) {
    return ClipboardTrouble{Kind::keychainFailed, error.what()};
  } catch (const CipherError& error) {
    return unreadable(error);
  } catch (const JSONError& error) {
    return unreadable(error);
  } catch (const CodingError& error) {
    return unreadable(error);
  } catch (const std::exception& error) {
    return ClipboardTrouble{Kind::persistenceFailed, error.what()};
  }
}

/// No value in `found` where there is no file, or where it cannot be read.
std::optional<ClipboardTrouble> ClipboardVault::readInto(std::optional<ClipboardList>& found) {
  const auto trouble = guarded([&] {
    auto file = readFile(url_, longestFile);
    if (!file)
      return;
    const SecretText plaintext(crypto_.open({std::move(*file)}));
    found = decodeClipboard(plaintext.text());
  });
  if (!trouble)
    state_ = State::read;
  else if (trouble->kind != ClipboardTrouble::Kind::keychainFailed)
    state_ = State::damaged;
  return trouble;
}

ClipboardVault::Outcome ClipboardVault::read() {
  Outcome outcome;
  // Taken before: what is written meanwhile is then read once more.
  seen_ = fileStamp(url_);
  outcome.trouble = readInto(outcome.stored);
  stored_ = ClipboardBoard::traceOf(outcome.stored.value_or(ClipboardList{}));
  return outcome;
}

ClipboardVault::Outcome ClipboardVault::save(const ClipboardList& list,
                                             const ClipboardSettings& settings, Date now,
                                             const std::set<UUID>& dropped) {
  Outcome outcome;
  const auto attempt = [&](const FileStamp& seen) {
    std::optional<ClipboardList> theirs;
    if (state_ == State::unread || seen != seen_) {
      outcome.trouble = readInto(theirs);
      if (outcome.trouble && state_ != State::damaged)
        return true; // without the key nothing can be written
      outcome.stored = theirs;
      outcome.base = stored_;
    }
    auto all = theirs ? ClipboardBoard::merged(stored_, list, *theirs) : list;
    std::erase_if(all, [&](const auto& entry) { return dropped.contains(entry->item.id); });
    all = ClipboardBoard::retained(all, settings, now);
    // Sealed where it was written, and overwritten where that fails.
    const auto box = crypto_.seal(encodeClipboard(all));
    if (state_ == State::damaged) {
      putAside(url_);
      state_ = State::read;
      seen_ = fileStamp(url_);
      return false; // once more, beside nothing
    }
    if (!writeFileIfUnchanged(url_, box.combined, seen, FileAccess::ownerOnly))
      return false;
    seen_ = fileStamp(url_);
    stored_ = ClipboardBoard::traceOf(all);
    outcome = {{}, std::move(all), ClipboardBoard::traceOf(list)};
    return true;
  };
  if (const auto trouble = guarded([&] { changeSharedFile(url_, attempt); }))
    outcome.trouble = trouble;
  return outcome;
}

void ClipboardVault::forget() {
  // Also where others keep the lock: what is to be forgotten goes.
  const DocumentLock lock(url_);
  std::error_code ignored;
  std::filesystem::remove(url_, ignored);
  for (int number = 1; number <= mostDamaged; ++number)
    std::filesystem::remove(damagedURL(url_, number), ignored);
  state_ = State::read;
  seen_ = fileStamp(url_);
  stored_.clear();
}

} // namespace tavrin
