#include "TavrinPlatform/Linux/Tile/TileAccessibility.h"

#include "TavrinPlatform/Linux/Tile/StripWindow.h"

#include <QAccessible>
#include <QAccessibleObject>

namespace tavrin {

namespace {

QString spoken(const QString& first, const QString& second) {
  return first.isEmpty() || second.isEmpty() ? first + second
                                             : first + QStringLiteral(", ") + second;
}

/// A button in the tile's picture. The pictures come and go; a button is known by its number.
class AccessibleTileButton final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
  AccessibleTileButton(QAccessibleInterface& tile, StripWindow& window, std::size_t number)
      : tile_(tile), window_(window), number_(number) {}

  bool isValid() const override { return button() != nullptr; }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return &window_; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* parent() const override { return &tile_; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::Button; }
  void setText(QAccessible::Text, const QString&) override {}
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name && isValid() ? QString::fromStdString(button()->name)
                                                  : QString();
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.invisible = !isValid() || !window_.isVisible();
    return state;
  }
  QRect rect() const override {
    return isValid() ? button()->place.toAlignedRect().translated(window_.position()) : QRect();
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
  }
  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& action) override {
    if (action == pressAction() && isValid() && window_.onClick)
      window_.onClick(button()->place.center());
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
  const DockTile::Button* button() const {
    return number_ < window_.buttons().size() ? &window_.buttons()[number_] : nullptr;
  }

  QAccessibleInterface& tile_;
  StripWindow& window_;
  std::size_t number_;
};

class AccessibleTile final : public QAccessibleObject, public QAccessibleActionInterface {
public:
  explicit AccessibleTile(StripWindow* window) : QAccessibleObject(window) {}
  ~AccessibleTile() override {
    for (const QAccessible::Id button : buttons_)
      QAccessible::deleteAccessibleInterface(button);
  }

  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(qApp);
  }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount())
      return nullptr;
    while (static_cast<int>(buttons_.size()) <= index) {
      auto* button =
          new AccessibleTileButton(*const_cast<AccessibleTile*>(this), *tile(), buttons_.size());
      buttons_.push_back(QAccessible::registerAccessibleInterface(button));
    }
    return QAccessible::accessibleInterface(buttons_[static_cast<std::size_t>(index)]);
  }
  int childCount() const override { return static_cast<int>(tile()->buttons().size()); }
  int indexOfChild(const QAccessibleInterface* child) const override {
    for (std::size_t i = 0; i < buttons_.size(); ++i)
      if (QAccessible::accessibleInterface(buttons_[i]) == child)
        return static_cast<int>(i);
    return -1;
  }
  QAccessible::Role role() const override { return QAccessible::Button; }
  QString text(QAccessible::Text kind) const override {
    const auto& label = tile()->label();
    const bool isNamed = !tile()->title().isEmpty();
    switch (kind) {
    case QAccessible::Name:
      return tile()->name();
    // A button has no value of its own on the bus: what the tile shows is its description.
    case QAccessible::Description:
      return isNamed && label.name != tile()->title() ? spoken(label.name, label.value)
                                                      : label.value;
    default:
      return {};
    }
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.invisible = !tile()->isVisible();
    state.focusable = true;
    state.focused = tile()->hasFocusRing();
    return state;
  }
  QRect rect() const override { return tile()->geometry(); }
  QWindow* window() const override { return tile(); }
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
  }
  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& action) override {
    if (action == pressAction())
      tile()->press();
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
  StripWindow* tile() const { return static_cast<StripWindow*>(object()); }

  mutable std::vector<QAccessible::Id> buttons_;
};

const BusAddress status{"org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties"};

QAccessibleInterface* makeTile(const QString&, QObject* object) {
  auto* window = dynamic_cast<StripWindow*>(object);
  return window == nullptr ? nullptr : new AccessibleTile(window);
}

} // namespace

QAccessibleInterface* accessibleTile(StripWindow* window) {
  static const bool isInstalled = (QAccessible::installFactory(makeTile), true);
  static_cast<void>(isInstalled);
  return QAccessible::queryAccessibleInterface(window);
}

void announceTileChange(StripWindow& window, bool isNameChanged) {
  accessibleTile(&window);
  QAccessibleEvent event(&window, isNameChanged ? QAccessible::NameChanged
                                                : QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&event);
}

AccessibilitySwitch::AccessibilitySwitch(Bus& bus, StripWindow& window)
    : bus_(bus), window_(window) {
  changes_ = bus_.match("type='signal',path='/org/a11y/bus',member='PropertiesChanged',"
                        "interface='org.freedesktop.DBus.Properties',arg0='org.a11y.Status'",
                        [this](sd_bus_message*) { ask(); });
  if (qEnvironmentVariableIsSet("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"))
    turnOn();
  else
    ask();
}

void AccessibilitySwitch::ask() {
  BusMessage question = bus_.method(status, "Get");
  sd_bus_message_set_auto_start(question.get(), 0);
  question.append("ss", "org.a11y.Status", "IsEnabled");
  bus_.call(question, [this](sd_bus_message* reply, const std::string&) {
    int isEnabled = 0;
    if (reply != nullptr)
      sd_bus_message_read(reply, "v", "b", &isEnabled);
    if (isEnabled != 0)
      turnOn();
  });
}

void AccessibilitySwitch::turnOn() {
  // The question alone makes the toolkit connect.
  static_cast<void>(QAccessible::isActive());
  window_.setAnnouncing(true);
}

} // namespace tavrin
