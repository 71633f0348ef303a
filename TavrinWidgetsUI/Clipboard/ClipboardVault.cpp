#include "TavrinWidgetsUI/Clipboard/ClipboardVault.h"

#include "TavrinCore/Base/Wipe.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinStorage/AESGCM.h"

#include <set>
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

ClipboardList merged(const ClipboardList& list, const ClipboardList& older) {
  std::set<UUID> known;
  for (const auto& entry : list)
    known.insert(entry->item.id);
  ClipboardList all = list;
  for (const auto& entry : older)
    if (!known.contains(entry->item.id))
      all.push_back(entry);
  return all;
}

} // namespace

template <class Work> std::optional<ClipboardTrouble> ClipboardVault::guarded(const Work& work) {
  using Kind = ClipboardTrouble::Kind;
  const auto unreadable = [this](const std::exception& error) {
    return ClipboardTrouble{Kind::persistenceFailed,
                            failure("read " + url_.string(), error.what())};
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

ClipboardVault::Outcome ClipboardVault::read() {
  Outcome outcome;
  outcome.trouble = guarded([&] {
    auto file = readFile(url_, longestFile);
    if (!file)
      return;
    const SecretText plaintext(crypto_.open({std::move(*file)}));
    outcome.found = decodeClipboard(plaintext.text());
  });
  if (!outcome.trouble)
    state_ = State::read;
  else if (outcome.trouble->kind != ClipboardTrouble::Kind::keychainFailed)
    state_ = State::damaged;
  return outcome;
}

ClipboardVault::Outcome ClipboardVault::save(const ClipboardList& list,
                                             const ClipboardSettings& settings, Date now) {
  Outcome outcome;
  if (state_ == State::unread) {
    outcome = read();
    if (state_ == State::unread)
      return outcome;
  }
  outcome.trouble = guarded([&] {
    // Sealed where it was written, and overwritten where that fails.
    const auto box = crypto_.seal(
        encodeClipboard(ClipboardBoard::retained(merged(list, outcome.found), settings, now)));
    if (state_ == State::damaged)
      putAside(url_);
    writeFileAtomically(url_, box.combined, FileAccess::ownerOnly);
    state_ = State::read;
  });
  return outcome;
}

void ClipboardVault::forget() {
  std::error_code ignored;
  std::filesystem::remove(url_, ignored);
  for (int number = 1; number <= mostDamaged; ++number)
    std::filesystem::remove(damagedURL(url_, number), ignored);
  state_ = State::read;
}

} // namespace tavrin
