#pragma once

#include "TavrinCore/Profiles/Profile.h"
#include "TavrinSettings/Base/PageServices.h"
#include "TavrinSettings/Dock/ItemPicker.h"

#include <QPointer>
#include <QWidget>

namespace tavrin {

class DockItemRow;
class ItemEditor;
class PanelButton;

/// The items of one Dock layout, to be added, moved, set and removed.
class LayoutItems : public QWidget {
public:
  LayoutItems(PageServices& page, HostContext& context,
              std::function<QImage(const DockItem& item, int side, double scale)> icon,
              QWidget* parent = nullptr);

  void show(const Profile& profile);

  /// Makes the edit a step by that title, "{name}" the layout's; letters of one `field` are one.
  /// False where it could not be made, which was said.
  std::function<bool(const char* title, const std::string& field, const DockEdit& edit)> onEdit;

private:
  void makeHead(class QVBoxLayout* column);
  void add(const std::vector<DockItem>& items, std::optional<DockPosition> at);
  void drop(const std::vector<DockItem>& items, DockPosition to);
  void move(const PlacedDockItem& item, DockPosition to);
  void remove(const PlacedDockItem& item);
  void open(const PlacedDockItem& item);
  void replace(const PlacedDockItem& item);
  void offerMore();

  PageServices& page_;
  HostContext& context_;
  ItemPicker picker_;
  DockItemRow* row_;
  PanelButton* add_;
  PanelButton* more_;
  QPointer<ItemEditor> editor_;
  QPointer<class PickerPopup> menu_;
  bool hasSpacers_ = false;
};

} // namespace tavrin
