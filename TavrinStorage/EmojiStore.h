#pragma once

#include "TavrinCore/Kinds/Emoji/EmojiHistory.h"
#include "TavrinStorage/SharedRecord.h"

namespace tavrin {

/// The recent emoji's file, shared by the emoji widgets of all processes.
class EmojiStore {
public:
  static constexpr const char* changedNotification = "dev.quellby.tavrin.emoji-changed";

  EmojiStore(std::filesystem::path url, DistributedNotificationCenter& notifications)
      : file_(std::move(url), changedNotification, notifications) {}

  const std::filesystem::path& url() const { return file_.url(); }
  const EmojiHistory& history() const { return file_.value(); }

  void reload() { file_.reload(); }
  /// By value: the recents that the emoji may be taken from are read anew first.
  void add(Emoji emoji, int limit) {
    file_.change([&](EmojiHistory& history) { history.add(emoji, limit); });
  }
  void clear() {
    file_.change([](EmojiHistory& history) { history.clear(); });
  }

private:
  SharedRecord<EmojiHistory> file_;
};

} // namespace tavrin
