#include "TavrinPlatform/PanelPopover.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/SlotApp.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"

#include <QWidget>
#include <cstdio>
#include <cstdlib>
#include <random>

using namespace tavrin;

namespace {

QWidget* panelOf(Platform& platform) {
  return platform.popover().content();
}

template <class Widget> Widget* find(Platform& platform, const auto& isWanted) {
  for (auto* child : panelOf(platform)->findChildren<QWidget*>())
    if (auto* widget = dynamic_cast<Widget*>(child); widget != nullptr && isWanted(*widget))
      return widget;
  return nullptr;
}

PanelButton* drinkButton(Platform& platform) {
  return find<PanelButton>(
      platform, [](const PanelButton& button) { return button.title().startsWith(u"Drink"); });
}

QString shownTotal(Platform& platform) {
  return find<PanelFigure>(platform, [](const PanelFigure&) { return true; })->text();
}

} // namespace

/// A water slot whose panel is open and whose Drink button is pressed POURS times at random moments
/// within SECONDS, a millisecond apart at least. It prints "poured" with the time of each press and
/// "shows" with the time of each total its panel shows.
int main(int argc, char** argv) {
  const int pours = std::atoi(std::getenv("POURS"));
  const double seconds = std::atof(std::getenv("SECONDS"));
  const double start = std::atof(std::getenv("START"));
  const auto platform = makePlatform(argc, argv);
  if (!platform)
    return 1;
  SlotApp app(*platform);
  app.applicationDidFinishLaunching();
  if (!platform->popover().isShown())
    app.applicationShouldHandleReopen(false);
  if (panelOf(*platform) == nullptr || drinkButton(*platform) == nullptr)
    return 2;
  auto& clock = platform->clock();
  auto& loop = platform->runLoop();
  std::mt19937 random(std::random_device{}());
  std::vector<double> moments;
  for (int i = 0; i < pours; ++i)
    moments.push_back(std::uniform_real_distribution<double>(0, seconds)(random));
  std::sort(moments.begin(), moments.end());
  for (std::size_t i = 1; i < moments.size(); ++i)
    moments[i] = std::max(moments[i], moments[i - 1] + 0.001);
  std::vector<TokenPtr> timers;
  const double wait = start - clock.now().unixSeconds();
  for (const double moment : moments)
    timers.push_back(loop.after(wait + moment, [&] {
      drinkButton(*platform)->click();
      std::printf("poured %.6f\n", clock.now().unixSeconds());
    }));
  QString shown;
  const auto look = loop.repeat(0.01, [&] {
    const QString now = shownTotal(*platform);
    if (now == shown)
      return;
    shown = now;
    std::printf("shows %.6f %s\n", clock.now().unixSeconds(), qPrintable(now));
    std::fflush(stdout);
  });
  const auto end = loop.after(wait + seconds + 3, [&] { platform->application().terminate(); });
  return runEventLoop(*platform);
}
