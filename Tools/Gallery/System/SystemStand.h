#pragma once

#include "TavrinWidgetsUI/System/SystemWidgetModel.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/SystemServices.h"

#include <deque>

namespace tavrin {

/// A widget on a desktop of its own, its panel open.
struct SystemStand {
  SystemStand(const char* name, DockWidget::Kind kind, Date now)
      : platform(now),
        model(test::servicesOf(platform), DockWidget({}, name, 1, std::move(kind), 1)) {
    model.isPanelShown = [] { return true; };
  }
  test::FakePlatform platform;
  SystemWidgetModel model;
};

/// One that stays for as long as the gallery runs.
inline SystemStand& systemStand(const char* name, DockWidget::Kind kind,
                                Date now = Date{800'000'000}) {
  static std::deque<SystemStand> stands;
  return stands.emplace_back(name, std::move(kind), now);
}

} // namespace tavrin
