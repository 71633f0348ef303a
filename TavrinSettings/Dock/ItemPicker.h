#pragma once

#include "TavrinCore/Dock/DockItem.h"
#include "TavrinHost/HostContext.h"
#include "TavrinSettings/Form/FormServices.h"

#include <QPointer>
#include <functional>

class QWidget;

namespace tavrin {

class PickerPopup;

/// What can be added to a Dock layout, in a list that drops down: applications by name, a link by
/// its address, files and folders, also by their path, and spacers.
class ItemPicker {
public:
  ItemPicker(HostContext& context, const FormServices& forms) : context_(context), forms_(forms) {}
  ~ItemPicker();
  ItemPicker(const ItemPicker&) = delete;
  ItemPicker& operator=(const ItemPicker&) = delete;

  /// `title` is what is done with what is chosen.
  void open(QWidget* owner, const QString& title,
            std::function<void(const std::vector<DockItem>& items)> choose);

  /// What files are in a layout: what describes an application is that application, as the list
  /// has it. The answer may come later, and none once another was asked for.
  void identify(const std::vector<std::filesystem::path>& files,
                std::function<void(const std::vector<DockItem>& items)> answer);

private:
  HostContext& context_;
  const FormServices& forms_;
  QPointer<PickerPopup> popup_;
  TokenPtr identifying_;
};

} // namespace tavrin
