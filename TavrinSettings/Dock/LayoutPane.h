#pragma once

#include "TavrinSettings/Base/PageServices.h"
#include "TavrinSettings/Dock/DockJob.h"
#include "TavrinSettings/Dock/FollowControl.h"
#include "TavrinSettings/Dock/ProfilesEditor.h"
#include "TavrinSettings/Form/Picker.h"

#include <QWidget>
#include <array>

class QBoxLayout;
class QLineEdit;
class QVBoxLayout;

namespace tavrin {

class LayoutItems;
class PanelButton;
class PanelField;
class PanelSegments;
class PanelSwatch;
class PanelText;
class ShortcutRecorder;
class TypedLine;

/// The Dock's layouts as all their panes have them.
struct DockServicesOfPage {
  PageServices& page;
  HostContext& context;
  ProfilesEditor& profiles;
  DockJob& job;
  FollowControl& following;
  std::function<QImage(const DockItem& item, int side, double scale)> icon;
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

  /// A layout was made of this one.
  std::function<void(const UUID& id)> onMade;

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void makeColours(QVBoxLayout* column);
  void makeItems(QVBoxLayout* column);
  void makeRows(QVBoxLayout* column);
  void makeFocus(QVBoxLayout* column);
  void makeActions(QVBoxLayout* column);
  bool edit(const char* title, const std::string& field, const std::function<void(Profile&)>& edit);
  void exportLayout();
  void takeDock();
  void offerMore();
  void offerComparison();
  /// Whom a comparison may be with, by the names that `DockLibrary::layout` knows, and titles.
  std::vector<std::pair<std::string, QString>> otherLayouts();
  void showFocus(const Profile& profile, bool isAnother);
  void showShortcut(const Profile& profile);
  void showFollowing(const Profile& profile);
  void showDifference(const Profile& profile, bool hasDock);
  void setShortcut(const std::optional<Hotkey>& hotkey);

  DockServicesOfPage& services_;
  UUID id_;
  bool isShowing_ = false;
  QLineEdit* name_;
  std::vector<PanelSwatch*> colours_;
  PanelSegments* focus_;
  TypedLine* mode_;
  PanelField* modeRow_;
  PanelSegments* others_;
  ShortcutRecorder* shortcut_;
  PanelText* followed_;
  PanelButton* follow_;
  LayoutItems* items_;
  PanelText* difference_;
  /// What applying does where there is no Dock.
  PanelText* noDock_;
  PanelButton* apply_;
  PanelButton* more_;
  QPointer<PickerPopup> menu_;
  QBoxLayout* actions_;
};

} // namespace tavrin
