#pragma once

#include "TavrinSlot/Base/BasicWidgetController.h"

#include <stdexcept>

namespace tavrin {

/// The controller of one kind: its record holds `Settings` and nothing else, all its life. `Base`
/// is what it shares with the controllers of other kinds.
template <class Settings, class Base = BasicWidgetController> class KindController : public Base {
public:
  /// `arguments` are the base's own. Throws std::invalid_argument for a record of another kind.
  template <class... Arguments>
  KindController(const SlotContext& context, const DockWidget& widget,
                 const Arguments&... arguments)
      : Base(context, widget, arguments...) {
    if (widget.kind.template get<Settings>() == nullptr)
      throw std::invalid_argument("a record of another kind");
  }

protected:
  const Settings& settings() const { return *this->widget().kind.template get<Settings>(); }
  /// As the base's, for this kind's settings alone.
  void save(const Settings& settings) { Base::save(settings); }

private:
  bool serves(const DockWidget::Kind& kind) const final { return kind.get<Settings>() != nullptr; }
};

} // namespace tavrin
