#include "TavrinWidgetsUI/Clipboard/ClipboardModel.h"

namespace tavrin {

ClipboardModel::ClipboardModel(DockWidget widget, ClipboardSource& source)
    : widget_(std::move(widget)), source_(source) {
  source_.onChange = [this] {
    find();
    if (onChange)
      onChange();
  };
}

void ClipboardModel::setWidget(const DockWidget& widget) {
  widget_ = widget;
  source_.setSettings(settings());
}

void ClipboardModel::setSearchText(const std::string& text) {
  searchText_ = text;
  find();
}

} // namespace tavrin
