#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardModel.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <QImage>
#include <set>

namespace tavrin {

class PanelEmptyState;
class PanelList;
struct PanelRow;
class PanelSearchField;
class PanelText;

/// The history as a list, searched as one types. Return or a click copies; the arrows, Delete and
/// the menu key do the rest. Passwords are dots until asked for, and again once the panel is shown
/// anew. Pictures are made off the main thread, at the size they are shown.
class ClipboardPanelView final : public PanelView {
public:
  struct Services {
    RunLoop& runLoop;
    Clock& clock;
    /// Puts the item back on the pasteboard; the panel's work is done.
    std::function<void(const ClipboardItem&)> copy;
    std::function<void()> edit;
  };

  ClipboardPanelView(const PanelAppearance& appearance, ClipboardModel& model, Services services);
  void refresh() override;

protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void appearanceChanged() override;

private:
  void makeList();
  void copy(const ClipboardEntryPtr& entry);
  void showResults();
  void showWords();
  PanelRow makeRow(const ClipboardEntryPtr& entry);
  QString timeText(Date date) const;
  void act(int row, int action);
  ClipboardEntryPtr entryAt(int row) const;
  /// The picture where it is there already; asked for otherwise.
  QImage thumbnail(const ClipboardEntryPtr& entry);

  ClipboardModel& model_;
  Services services_;
  PanelText* trouble_;
  /// Said when an item is chosen that nothing was kept of.
  PanelText* missing_;
  PanelSearchField* search_;
  PanelList* list_;
  PanelEmptyState* empty_;
  PanelButton* clear_;
  ClipboardList shown_;
  std::set<UUID> revealed_;
  std::map<UUID, QImage> thumbnails_;
  Lifetime alive_;
};

} // namespace tavrin
