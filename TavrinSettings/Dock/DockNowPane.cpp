#include "TavrinSettings/Dock/DockNowPane.h"

#include "TavrinSettings/Base/ScrollFade.h"
#include "TavrinSettings/Dock/DockItemRow.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QScrollArea>
#include <QVBoxLayout>

namespace tavrin {

DockNowPane::DockNowPane(DockServicesOfPage& services, QWidget* parent)
    : QWidget(parent), services_(services) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(panel::grid);
  column->addWidget(new PanelText(worded("The Dock Now"), PanelTextStyle::section, this));
  about_ = new PanelText({}, PanelTextStyle::secondary, this);
  column->addWidget(about_);
  row_ = new DockItemRow(this);
  row_->icon = services_.icon;
  row_->onOpen = [this](const PlacedDockItem& placed) {
    const auto address = addressOf(placed.item);
    const auto name = placed.item.displayName();
    services_.page.tell(address.empty() ? utf8(name)
                                        : worded("“{name}” leads to {place}.",
                                                 {{"name", name}, {"place", address}}),
                        false);
  };
  auto* scroll = ScrollFade::makeArea(this);
  scroll->setWidget(row_);
  column->addWidget(scroll, 1);
}

QString DockNowPane::words(const DockSnapshot& dock) const {
  if (dock.apps.empty() && dock.others.empty())
    return services_.job.hasDock() ? worded("The Dock has no items.")
                                   : worded("No Dock runs, and nothing is written for one.");
  std::vector<std::string> same;
  for (const auto& profile : services_.profiles.file().profiles)
    if (showTheSame(dock, profile.snapshot(dock.capturedAt)))
      same.push_back(profile.name);
  const auto kept = same.empty() ? worded("No layout keeps these items.")
                                 : worded("Kept by {layouts}.", {{"layouts", enumeration(same)}});
  return services_.job.hasDock() ? kept
                                 : worded("No Dock runs; this is written for one that starts.") +
                                       QLatin1Char(' ') + kept;
}

void DockNowPane::refresh() {
  try {
    const auto dock = services_.profiles.library().snapshot();
    about_->setStyle(PanelTextStyle::secondary);
    about_->setWords(words(dock));
    row_->setItems(dock.apps, dock.others);
  } catch (const std::exception& error) {
    about_->setStyle(PanelTextStyle::trouble);
    about_->setWords(QString::fromUtf8(error.what()) + QLatin1Char('.'));
    row_->setItems({}, {});
  }
}

} // namespace tavrin
