#pragma once

#include "TavrinCommand/Base/CommandContext.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Files/DocumentLock.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace tavrin {

/// A form on disk with the record it was made from, which outlives the edit where that is ended
/// from outside.
struct EditDraft {
  std::filesystem::path form;
  DockWidget base;
  /// Held while somebody edits the form; the system takes it off a process that was killed.
  std::shared_ptr<DocumentLock> lock;

  /// A new form of the widget: another edit of it, or one that was given up, keeps its own. Throws
  /// FileError.
  static EditDraft make(const std::filesystem::path& folder, const DockWidget& base);
  /// The forms of that widget, or of all, that edits left behind and no editor shows. One that
  /// nothing was typed into goes.
  static std::vector<EditDraft> leftBehind(CommandContext& context,
                                           const std::optional<UUID>& id = {});

  /// The one at that place. Throws HostError (notFound) where there is none.
  static EditDraft at(const std::filesystem::path& form);

  /// `typed` has become the widget `made`; more may be typed yet.
  void take(const std::string& typed, const DockWidget& made);
  /// Whether what is typed by now was taken already. What was taken last is the base from then on.
  bool follow();

  /// What is typed by now.
  std::string text() const;
  bool isUntouched() const;
  void remove() const;
};

} // namespace tavrin
