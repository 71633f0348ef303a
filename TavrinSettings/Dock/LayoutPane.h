#pragma once

#include "TavrinSettings/Base/PageServices.h"
#include "TavrinSettings/Dock/DockJob.h"
#include "TavrinSettings/Dock/ItemPicker.h"
#include "TavrinSettings/Dock/ProfilesEditor.h"

#include <QWidget>
#include <array>

class QBoxLayout;
class QLineEdit;
class QVBoxLayout;

namespace tavrin {

class DockItemRow;
class PanelButton;
class PanelSegments;
class PanelSwatch;
class PanelText;
class ShortcutRecorder;

/// The Dock's layouts as all their panes have them.
struct DockServicesOfPage {
  PageServices& page;
  ProfilesEditor& profiles;
  DockJob& job;
  std::function<QImage(const DockItem& item, int side, double scale)> icon;
  /// Whether a process follows shortcuts and Focus.
  std::function<bool()> isFollowed;
  /// Starts one, which outlives the window. Throws FileError.
  std::function<void()> follow;
};

/// The colour that stands for a layout.
QColor profileColour(ProfileColor value);

/// One Dock layout: its name, colour, shortcut and Focus, its items, and what applying it would
/// change.
class LayoutPane : public QWidget {
public:
  LayoutPane(DockServicesOfPage& services, QWidget* parent = nullptr);

  /// False where it is gone.
  bool show(const UUID& id);

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void makeColours(QVBoxLayout* column);
  void makeItems(QVBoxLayout* column);
  void add(const std::vector<DockItem>& items);
  void makeRows();
  void makeActions(QVBoxLayout* column);
  void edit(const char* title, const char* field, const std::function<void(Profile&)>& edit);
  void exportLayout();
  void showFollowing(bool isFollowed);
  void showDifference(const Profile& profile, bool hasDock);
  void setShortcut(const std::optional<Hotkey>& hotkey);

  DockServicesOfPage& services_;
  UUID id_;
  bool isShowing_ = false;
  QLineEdit* name_;
  std::vector<PanelSwatch*> colours_;
  PanelSegments* focus_;
  PanelSegments* others_;
  ShortcutRecorder* shortcut_;
  PanelText* notFollowed_;
  PanelButton* follow_;
  DockItemRow* items_;
  ItemPicker picker_;
  PanelText* difference_;
  /// What applying does where there is no Dock.
  PanelText* noDock_;
  PanelButton* apply_;
  QBoxLayout* actions_;
};

} // namespace tavrin
