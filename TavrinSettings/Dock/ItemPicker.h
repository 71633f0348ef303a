#pragma once

#include "TavrinCore/Dock/DockItem.h"
#include "TavrinSettings/Form/FormServices.h"

#include <QPointer>
#include <functional>

class QWidget;

namespace tavrin {

class PickerPopup;

/// What can be added to a Dock layout, in a list that drops down: applications by name, a link by
/// its address, files and folders, an empty place.
class ItemPicker {
public:
  explicit ItemPicker(const FormServices& forms) : forms_(forms) {}
  ~ItemPicker();
  ItemPicker(const ItemPicker&) = delete;
  ItemPicker& operator=(const ItemPicker&) = delete;

  void open(QWidget* owner);

  std::function<void(const std::vector<DockItem>& items)> onChoose;

private:
  std::vector<DockItem> filesChosen(QWidget* window, bool isFolder) const;

  const FormServices& forms_;
  QPointer<PickerPopup> popup_;
};

} // namespace tavrin
