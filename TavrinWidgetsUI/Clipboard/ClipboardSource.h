#pragma once

#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/Pasteboard.h"
#include "TavrinPlatform/Workspace.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardVault.h"
#include "TavrinWidgetsUI/Clipboard/LinkPreviewSource.h"

#include <deque>
#include <map>
#include <set>

namespace tavrin {

/// What the clipboard's views show.
struct ClipboardState {
  /// Newest first.
  ClipboardList items;
  int unseenCount = 0;
  std::optional<ClipboardTrouble> trouble;
  /// The stored history has been read once.
  bool hasRead = false;
};

/// The history of what was copied. Captures are turned into items on a queue of their own, the
/// file is read and written on another; the list itself lives on the main thread and its entries
/// never change, so nobody waits for anybody.
class ClipboardSource {
public:
  /// Seconds of rest after which a change is saved, and the longest that a save waits for one.
  static constexpr double saveDelay = 0.5;
  static constexpr double longestSaveDelay = 5;

  struct Services {
    Clock& clock;
    RunLoop& runLoop;
    Pasteboard& pasteboard;
    Keychain& keychain;
    const Workspace& workspace;
    LinkPreviewSource& ogSource;
    /// Whether another widget keeps its history in the same file. May be empty for no other one.
    std::function<bool()> isKeptByAnother = {};
  };
  ClipboardSource(const Services& services, const std::filesystem::path& storeURL,
                  const ClipboardSettings& settings);
  /// What is not saved yet is saved now.
  ~ClipboardSource();
  ClipboardSource(const ClipboardSource&) = delete;
  ClipboardSource& operator=(const ClipboardSource&) = delete;

  /// Reads the stored history and begins to listen. Where keeping is switched off, what may have
  /// been kept before is removed.
  void start();
  const ClipboardState& state() const { return state_; }
  /// Keeping across restarts that is switched off removes the file.
  void setSettings(const ClipboardSettings& settings);
  /// Whether this desktop tells of copies at all.
  bool canCapture() const { return services_.pasteboard.canObserve(); }

  /// Puts an item back on the pasteboard, in the format it was captured in.
  void write(const ClipboardItem& item);
  void togglePin(const UUID& id);
  void remove(const UUID& id);
  void clearUnpinned();
  void markAllSeen();
  /// Empties the history, pinned items included, and removes the stored file.
  void forgetEverything();

  std::function<void()> onChange;

private:
  /// The change that an item came with.
  struct Copied {
    std::int64_t changeCount = 0;
    /// To be forgotten; kept as the settings ask for it.
    bool isTransient = false;
  };
  /// What the desktop's clipboard holds, as far as it is an item of the list.
  struct Offered {
    std::int64_t changeCount = 0;
    UUID item;
  };
  void listen();
  void captured(Pasteboard::Capture capture);
  void accept(const Copied& copied, ClipboardItem item);
  void abandoned(std::int64_t changeCount);
  void wantPreview(const ClipboardItem& item);
  void fetchNextPreview();
  void adoptPreview(const UUID& id, const LinkPreview& preview);
  void dropUnwantedPreviews();
  void forgetStored();
  void change(ClipboardList items);
  template <class Wanted> void removeWhere(const Wanted& isWanted);
  void scheduleSave();
  void save();
  void adopt(const ClipboardVault::Outcome& outcome);
  void tell();

  Services services_;
  ClipboardSettings settings_;
  ClipboardState state_;
  std::map<std::int64_t, RunningApplication> frontmost_;
  std::optional<Offered> offered_;
  ClipboardList lastSaved_;
  /// Removed by the user before they were saved: another widget may have saved them meanwhile.
  std::set<UUID> dropped_;
  std::optional<Date> unsavedSince_;
  /// The links whose previews are to be fetched; the first is under way while there is a task.
  std::deque<UUID> ogWaiting_;
  TokenPtr ogTask_;
  std::shared_ptr<ClipboardVault> vault_;
  std::shared_ptr<ClipboardSource*> self_;
  TokenPtr observation_;
  TokenPtr saveTimer_;
  std::unique_ptr<SerialQueue> captures_;
  std::unique_ptr<SerialQueue> files_;
};

/// The item a capture makes; none where it holds nothing that is kept. Looks at the file's size.
/// Its id is made from the copy, where that has a name, so that all who keep it give it the same
/// one.
std::optional<ClipboardItem> clipboardItem(const Pasteboard::Capture& capture,
                                           const ClipboardSettings& settings);

} // namespace tavrin
