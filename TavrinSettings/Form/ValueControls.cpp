#include "TavrinSettings/Form/ValueControls.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <fmt/format.h>

namespace tavrin {
namespace {

QHBoxLayout* controlsOf(QWidget* widget) {
  auto* row = new QHBoxLayout(widget);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(6);
  return row;
}

struct SwatchColour {
  const char* name;
  std::string_view hex;
};

constexpr SwatchColour swatchColours[] = {
    {"Orange", TimerSettings::tints[0]},      {"Red", TimerSettings::tints[1]},
    {"Pink", TimerSettings::tints[2]},        {"Purple", TimerSettings::tints[3]},
    {"Indigo", TimerSettings::tints[4]},      {"Blue", TimerSettings::tints[5]},
    {"Teal", TimerSettings::tints[6]},        {"Green", TimerSettings::tints[7]},
    {"Yellow", NoteSettings::defaultColorHex}};

/// A popup under its owner that goes when it closes.
QWidget* makePopup(QWidget* owner, const QString& name) {
  auto* popup = new QWidget(owner->window(), Qt::Popup);
  popup->setAttribute(Qt::WA_DeleteOnClose);
  popup->setPalette(owner->palette());
  popup->setAccessibleName(name);
  popup->setAutoFillBackground(true);
  return popup;
}

/// How the house names the key, as `hotkeyFromText` reads it.
std::string keyName(const QKeyEvent& event) {
  switch (event.key()) {
  case Qt::Key_Space:
    return "space";
  case Qt::Key_Return:
  case Qt::Key_Enter:
    return "return";
  case Qt::Key_Tab:
    return "tab";
  case Qt::Key_Left:
    return "left";
  case Qt::Key_Right:
    return "right";
  case Qt::Key_Minus:
    return "minus";
  case Qt::Key_Equal:
    return "equal";
  case Qt::Key_Comma:
    return "comma";
  case Qt::Key_Period:
    return "period";
  case Qt::Key_Slash:
    return "slash";
  case Qt::Key_QuoteLeft:
    return "grave";
  default:
    break;
  }
  if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F12)
    return fmt::format("f{}", event.key() - Qt::Key_F1 + 1);
  if ((event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z) ||
      (event.key() >= Qt::Key_0 && event.key() <= Qt::Key_9))
    return {static_cast<char>(event.key())};
  return {};
}

bool isModifier(int key) {
  return key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Shift ||
         key == Qt::Key_Meta || key == Qt::Key_AltGr || key == Qt::Key_Super_L ||
         key == Qt::Key_Super_R;
}

} // namespace

ColourControl::ColourControl(const FieldInfo& field, const FormServices& services)
    : FormControl(field), services_(services), line_(new TextControl(field, services)) {
  auto* row = controlsOf(this);
  for (const auto& colour : swatchColours) {
    auto* swatch = new PanelSwatch(
        QColor(text(colour.hex)), tr(colour.name),
        [this, hex = colour.hex] { send(std::string(hex)); }, this);
    swatch->setSide(24);
    swatches_.push_back(swatch);
    row->addWidget(swatch);
  }
  line_->onEdit = [this](std::vector<SettingValue> values) { return onEdit && onEdit(values); };
  line_->onTrouble = [this](const QString& sentence) { complain(sentence); };
  line_->target()->setFixedWidth(92);
  line_->target()->setMinimumWidth(92);
  row->addStretch(1);
  row->addWidget(line_);
  if (services.pickColour)
    row->addWidget(
        PanelButton::icon(QStringLiteral("eyedropper"), tr("Take from the screen"), [this] {
          picking_ = services_.pickColour([this](const ColourSample& sample) {
            if (sample.outcome == ColourSample::Outcome::picked)
              send(fmt::format("#{:02X}{:02X}{:02X}", sample.red, sample.green, sample.blue));
            else if (sample.outcome == ColourSample::Outcome::unavailable)
              complain(tr("This desktop lets no program see "
                          "the screen"));
          });
        }));
}

void ColourControl::setValue(const JSONValue& value, const JSONValue& record) {
  line_->setValue(value, record);
  const QColor colour(text(value.string() != nullptr ? *value.string() : std::string()));
  for (auto* swatch : swatches_)
    swatch->setChosen(swatch->colour() == colour);
}

SymbolControl::SymbolControl(const FieldInfo& field)
    : FormControl(field),
      button_(new PanelButton(PanelButton::Kind::quiet, {}, [this] { open(); })) {
  controlsOf(this)->addWidget(button_);
  button_->setMaximumWidth(260);
}

SymbolControl::~SymbolControl() {
  delete popup_;
}

void SymbolControl::setValue(const JSONValue& value, const JSONValue&) {
  value_ = value;
  const auto name = text(value.string() != nullptr ? *value.string() : std::string());
  button_->setSymbol(name);
  button_->setTitle(name);
  button_->setAccessibleName(title());
  button_->setAccessibleDescription(name);
}

QWidget* SymbolControl::target() {
  return button_;
}

void SymbolControl::open() {
  if (popup_ && popup_->isVisible())
    return;
  popup_ = makePopup(button_, title());
  auto* column = new QVBoxLayout(popup_);
  column->setContentsMargins(panel::grid, panel::grid, panel::grid, panel::grid);
  auto* search = new PanelSearchField(tr("Symbol"), popup_);
  auto* grid = new PanelGrid(title(), 8, popup_);
  grid->setMaximumVisibleRows(6);
  column->addWidget(search);
  column->addWidget(grid);
  popup_->setFixedWidth(360);
  const auto shown = std::make_shared<std::vector<std::string>>();
  const auto fill = [this, grid, shown](const QString& asked) {
    shown->clear();
    std::vector<PanelCell> cells;
    for (const auto name : symbolNames()) {
      if (!text(name).contains(asked.trimmed(), Qt::CaseInsensitive))
        continue;
      shown->emplace_back(name);
      cells.push_back({.name = text(name),
                       .symbol = text(name),
                       .isChecked = value_.string() != nullptr && *value_.string() == name});
    }
    grid->setCells(std::move(cells));
  };
  fill({});
  search->setList(grid);
  search->onChange = fill;
  grid->onOpen = [this, shown](int index) {
    const auto name = shown->at(static_cast<std::size_t>(index));
    popup_->close();
    send(name);
  };
  popup_->adjustSize();
  popup_->move(
      button_->mapToGlobal(QPoint(button_->width() - popup_->width(), button_->height() + 4)));
  popup_->show();
  search->setFocus(Qt::PopupFocusReason);
}

PathControl::PathControl(const FieldInfo& field, const FormServices& services)
    : FormControl(field), line_(new TextControl(field, services)) {
  auto* row = controlsOf(this);
  line_->onEdit = [this](std::vector<SettingValue> values) { return onEdit && onEdit(values); };
  line_->onTrouble = [this](const QString& sentence) { complain(sentence); };
  row->addWidget(line_, 1);
  if (services.choosePaths)
    row->addWidget(new PanelButton(PanelButton::Kind::quiet, tr("Choose…"), [this, &services] {
      const bool isFolder = this->field().role == FieldRole::folder;
      const auto chosen = services.choosePaths(
          window(), isFolder ? FormServices::Choosing::folder : FormServices::Choosing::file,
          services.system.home);
      if (!chosen.empty())
        send(pathText(chosen.front()));
    }));
}

void PathControl::setValue(const JSONValue& value, const JSONValue& record) {
  line_->setValue(value, record);
}

ShortcutControl::ShortcutControl(const FieldInfo& field)
    : FormControl(field),
      button_(new PanelButton(PanelButton::Kind::quiet, {}, [this] { listen(!isListening_); })),
      clear_(PanelButton::icon(QStringLiteral("xmark"), tr("Take the shortcut away"),
                               [this] { send({}); })) {
  auto* row = controlsOf(this);
  row->addWidget(button_);
  row->addWidget(clear_);
  button_->installEventFilter(this);
}

void ShortcutControl::setValue(const JSONValue& value, const JSONValue&) {
  value_ = value;
  show();
}

void ShortcutControl::show() {
  QString words = text(field().absent);
  if (isListening_)
    words = tr("Press the keys…");
  else if (!value_.isNull())
    try {
      words = text(hotkeyText(decode<Hotkey>(value_)));
    } catch (const CodingError&) {
      words = text(value_.compact());
    }
  button_->setTitle(words);
  button_->setAccessibleName(title());
  button_->setAccessibleDescription(words);
  clear_->setVisible(!value_.isNull() && !isListening_);
}

void ShortcutControl::listen(bool on) {
  isListening_ = on;
  show();
  if (on)
    button_->setFocus(Qt::OtherFocusReason);
}

bool ShortcutControl::eventFilter(QObject*, QEvent* event) {
  if (isListening_ && event->type() == QEvent::FocusOut)
    listen(false);
  // Also what would otherwise be a shortcut of the window itself.
  if (isListening_ && event->type() == QEvent::ShortcutOverride) {
    event->accept();
    return true;
  }
  if (!isListening_ || event->type() != QEvent::KeyPress)
    return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  if (isModifier(key.key()))
    return true;
  if (key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier) {
    listen(false);
    return true;
  }
  std::string words;
  for (const auto& [modifier, name] :
       {std::pair{Qt::ControlModifier, "ctrl+"}, std::pair{Qt::AltModifier, "alt+"},
        std::pair{Qt::ShiftModifier, "shift+"}, std::pair{Qt::MetaModifier, "super+"}})
    if (key.modifiers().testFlag(modifier))
      words += name;
  try {
    const auto hotkey = hotkeyFromText(words + keyName(key));
    listen(false);
    send(encode(hotkey));
  } catch (const SettingError& error) {
    complain(keyName(key).empty() ? tr("That key cannot be a shortcut") : text(error.what()));
  }
  return true;
}

QWidget* ShortcutControl::target() {
  return button_;
}

} // namespace tavrin
