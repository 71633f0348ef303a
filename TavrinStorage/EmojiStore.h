#pragma once

#include "TavrinCore/Kinds/EmojiRecents.h"
#include "TavrinStorage/SharedRecord.h"

namespace tavrin {

/// The recent emoji's file, shared by the emoji widgets of all processes.
class EmojiStore {
public:
  static constexpr const char* changedNotification = "dev.quellby.tavrin.emoji-changed";

  EmojiStore(std::filesystem::path url, DistributedNotificationCenter& notifications)
      : file_(std::move(url), changedNotification, notifications) {}

  const std::vector<Emoji>& recents() const { return file_.value().recents; }

  void reload() { file_.reload(); }
  /// By value: the recents that the emoji may be taken from are read anew first.
  void add(Emoji emoji, int limit) {
    file_.change([&](EmojiRecents& record) { record.add(emoji, limit); });
  }
  void clear() {
    file_.change([](EmojiRecents& record) { record.recents.clear(); });
  }

private:
  SharedRecord<EmojiRecents> file_;
};

} // namespace tavrin
