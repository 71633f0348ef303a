#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinSettings/Form/WidgetForm.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QScrollArea>

namespace tavrin::test {

template <class Settings> DockWidget::Kind kind(Settings settings = {}) {
  return DockWidget::Kind(std::move(settings));
}

/// What a form asks for, answered from here at once.
inline FormServices formServices() {
  FormServices services;
  services.system.home = "/home/ann";
  services.system.isTimeZone = Calendar::isKnownTimeZone;
  services.system.isSymbol = hasSymbol;
  services.system.isFolder = [](const std::filesystem::path& path) { return path != "/gone"; };
  services.system.isFile = [](const std::filesystem::path&) { return true; };
  services.now = [] { return Date::fromUnixSeconds(1'772'362'800); };
  services.timeZones = [] {
    return std::vector<std::string>{"Asia/Tokyo", "Asia/Kolkata", "Europe/Berlin",
                                    "America/New_York"};
  };
  services.cities = [](const std::string& name, auto answer) -> TokenPtr {
    answer({{name, "Bavaria, Germany", 48.1, 11.6}}, "");
    return nullptr;
  };
  services.accounts = [](CalendarStore::Entity, auto answer) -> TokenPtr {
    CalendarAccount account{"a1", "Personal", {}};
    account.calendars = {{"c1", "Home", "a1", "Personal", "#30D158"},
                         {"c2", "Work", "a1", "Personal", "#0A84FF"}};
    answer({{account}, "c1"});
    return nullptr;
  };
  services.players = [] {
    return std::vector<std::pair<std::string, std::string>>{{"vlc", "VLC media player"}};
  };
  services.networkLinks = [] { return std::vector<std::string>{"eth0", "wlan0"}; };
  services.applications = [](auto answer) -> TokenPtr {
    ApplicationInfo app;
    app.id = "org.example.Mail.desktop";
    app.path = "/usr/share/applications/org.example.Mail.desktop";
    app.name = "Mail";
    app.genericName = "Mail Client";
    app.icon = "mail";
    app.actions = {{"compose", "New Message"}};
    answer({app});
    return nullptr;
  };
  services.installedApp = [](const AppEntry& entry, int points, double scale) -> InstalledApp {
    if (!entry.path.ends_with("mail.desktop"))
      return {{}, true};
    QImage image(QSizeF(points * scale, points * scale).toSize(), QImage::Format_ARGB32);
    image.fill(Qt::darkCyan);
    return {image, false};
  };
  services.applicationIcon = [](const std::string&, int points, int scale,
                                auto answer) -> TokenPtr {
    QImage image(points * scale, points * scale, QImage::Format_ARGB32);
    image.fill(Qt::darkCyan);
    answer(image);
    return nullptr;
  };
  services.pickColour = [](auto answer) -> TokenPtr {
    answer({ColourSample::Outcome::picked, 255, 128, 0});
    return nullptr;
  };
  services.choosePaths = [](QWidget*, FormServices::Choosing, const std::filesystem::path&) {
    return std::vector<std::filesystem::path>{"/home/ann/Pictures"};
  };
  return services;
}

/// The children of that class; the kit's classes have no meta-object of their own to be found by.
template <class Control> std::vector<Control*> all(const QWidget* root) {
  std::vector<Control*> found;
  for (auto* child : root->findChildren<QWidget*>())
    if (auto* control = dynamic_cast<Control*>(child))
      found.push_back(control);
  return found;
}
template <class Control> Control* first(const QWidget* root) {
  const auto found = all<Control>(root);
  return found.empty() ? nullptr : found.front();
}

/// A widget that is edited: the form in a window, its edits applied as a program would.
class FormRig {
public:
  explicit FormRig(const DockWidget::Kind& kind, bool isDark = false)
      : widget({UUID(), "Mine", {}, kind, 1}), services(formServices()),
        form(services, {.dark = isDark, .reducedMotion = true}) {
    form.onEdit = [this](const std::vector<SettingValue>& values) -> std::string {
      for (const auto& value : values)
        edits.push_back(value.path);
      try {
        widget = withValues(widget, values, services.system);
      } catch (const SettingError& error) {
        return error.what();
      }
      form.show(widget);
      return {};
    };
    form.show(widget);
    form.resize(440, form.sizeHint().height());
    static_cast<QWidget&>(form).show();
    form.activateWindow();
    QApplication::processEvents();
  }

  JSONValue value(std::string_view path) const { return valueAt(widget, path); }
  /// The first control of that name; null where none is.
  template <class Control> Control* control(const QString& name) {
    for (auto* found : all<Control>(&form))
      if (found->accessibleName() == name && found->isVisibleTo(&form))
        return found;
    return nullptr;
  }
  /// All words that stand in the form.
  QString words();
  static void press(QWidget* target, Qt::Key key, const QString& text = {},
                    Qt::KeyboardModifiers modifiers = {}) {
    QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(target, &down);
    QApplication::processEvents();
  }
  static void type(QWidget* target, const QString& text) {
    for (const auto& letter : text)
      press(target, Qt::Key_unknown, letter);
  }

  DockWidget widget;
  FormServices services;
  std::vector<std::string> edits;
  WidgetForm form;
};

} // namespace tavrin::test
