#pragma once

#include "TavrinSettings/Gallery/WidgetCard.h"
#include "TavrinSettings/Window/SettingsApp.h"
#include "TavrinSettings/Window/SettingsWindow.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "Tests/Command/HostFixture.h"

#include <QAbstractButton>
#include <QApplication>

namespace tavrin::test {

/// The whole window over a scratch data folder.
class WindowTest : public HostTest {
protected:
  WindowTest() {
    platform.files.home = folder / "home";
    std::filesystem::create_directories(folder / "home");
  }
  void open() {
    app.emplace(desk, platform);
    app->show();
    for (auto* widget : QApplication::topLevelWidgets())
      if (auto* found = dynamic_cast<SettingsWindow*>(widget); found != nullptr)
        window = found;
    QApplication::processEvents();
  }
  template <class Widget> std::vector<Widget*> shown() const {
    std::vector<Widget*> widgets;
    for (auto* child : window->findChildren<QWidget*>())
      if (auto* widget = dynamic_cast<Widget*>(child); widget != nullptr && widget->isVisible())
        widgets.push_back(widget);
    return widgets;
  }
  QAbstractButton* button(const QString& name) const {
    for (auto* each : shown<QAbstractButton>())
      if (each->accessibleName() == name || each->text() == name)
        return each;
    throw std::runtime_error("no button " + name.toStdString());
  }
  void press(const QString& name) const {
    button(name)->click();
    QApplication::processEvents();
  }
  std::string words() const {
    std::string all;
    for (const auto* text : shown<PanelText>())
      all += text->text().toStdString() + "\n";
    return all;
  }
  /// Buttons that show no words and do not say what they do.
  std::set<std::string> mute() const {
    std::set<std::string> found;
    for (const auto* each : shown<QAbstractButton>()) {
      const bool hasWords = !each->text().isEmpty() ||
                            dynamic_cast<const WidgetCard*>(each) != nullptr ||
                            dynamic_cast<const PanelSwitch*>(each) != nullptr;
      if (each->accessibleName().isEmpty() && each->text().isEmpty())
        found.insert(std::string("no name: ") + each->metaObject()->className());
      else if (!hasWords && plainToolTip(each).isEmpty())
        found.insert("no tooltip: " + each->accessibleName().toStdString());
    }
    return found;
  }

  FakePlatform desk;
  std::optional<SettingsApp> app;
  SettingsWindow* window = nullptr;
};

} // namespace tavrin::test
