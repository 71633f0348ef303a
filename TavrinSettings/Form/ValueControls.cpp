#include "TavrinSettings/Form/ValueControls.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinSettings/Form/Picker.h"
#include "TavrinSettings/Form/ShortcutRecorder.h"
#include "TavrinSettings/Form/SymbolTitles.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QVBoxLayout>
#include <fmt/format.h>

namespace tavrin {
namespace {

struct SwatchColour {
  const char* name;
  std::string_view hex;
};

constexpr SwatchColour swatchColours[] = {
    {marked("Orange"), TimerSettings::tints[0]},      {marked("Red"), TimerSettings::tints[1]},
    {marked("Pink"), TimerSettings::tints[2]},        {marked("Purple"), TimerSettings::tints[3]},
    {marked("Indigo"), TimerSettings::tints[4]},      {marked("Blue"), TimerSettings::tints[5]},
    {marked("Teal"), TimerSettings::tints[6]},        {marked("Green"), TimerSettings::tints[7]},
    {marked("Yellow"), NoteSettings::defaultColorHex}};

} // namespace

LineAndMoreControl::LineAndMoreControl(const FieldInfo& field, const FormServices& services)
    : FormControl(field), line_(new TextControl(field, services)) {
  line_->onEdit = [this](std::vector<SettingValue> values) {
    return onEdit ? onEdit(std::move(values)) : translated("this is not taken");
  };
  line_->onTrouble = [this](const QString& sentence) { complain(sentence); };
}

ColourControl::ColourControl(const FieldInfo& field, const FormServices& services)
    : LineAndMoreControl(field, services), services_(services) {
  auto* row = makeRow();
  for (const auto& colour : swatchColours) {
    auto* swatch = new PanelSwatch(
        QColor(utf8(colour.hex)), worded(colour.name),
        [this, hex = colour.hex] { sendChosen(std::string(hex)); }, this);
    swatch->setSide(24);
    swatches_.push_back(swatch);
    row->addWidget(swatch);
  }
  line()->target()->setFixedWidth(92);
  row->addStretch(1);
  row->addWidget(line());
  if (services.pickColour)
    row->addWidget(
        PanelButton::icon(QStringLiteral("eyedropper"), worded("Take from the screen"), [this] {
          picking_ = services_.pickColour([this](const ColourSample& sample) {
            if (sample.outcome == ColourSample::Outcome::picked)
              sendChosen(fmt::format("#{:02X}{:02X}{:02X}", sample.red, sample.green, sample.blue));
            else if (sample.outcome == ColourSample::Outcome::unavailable)
              complain(worded("This desktop lets no program see "
                              "the screen"));
          });
        }));
}

void ColourControl::setValue(const JSONValue& value, const JSONValue& record) {
  LineAndMoreControl::setValue(value, record);
  const QColor colour(utf8(value.string() != nullptr ? *value.string() : std::string()));
  for (auto* swatch : swatches_)
    swatch->setChosen(swatch->colour() == colour);
}

SymbolControl::SymbolControl(const FieldInfo& field)
    : FormControl(field), button_(new DropButton([this] { open(); })) {
  makeRow()->addWidget(button_);
}

SymbolControl::~SymbolControl() {
  delete popup_;
}

void SymbolControl::setValue(const JSONValue& value, const JSONValue&) {
  value_ = value;
  const auto name = utf8(value.string() != nullptr ? *value.string() : std::string());
  button_->setSymbol(name);
  button_->show(title(), symbolTitle(name.toStdString()));
}

QWidget* SymbolControl::target() {
  return button_;
}

void SymbolControl::open() {
  if (popup_ && popup_->isVisible())
    return;
  popup_ = new FormPopup(button_, title());
  auto* column = new QVBoxLayout(popup_);
  column->setContentsMargins(panel::grid, panel::grid, panel::grid, panel::grid);
  auto* search = new PanelSearchField(worded("Symbol"), popup_);
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
      const auto words = symbolTitle(name);
      if (!words.contains(asked.trimmed(), Qt::CaseInsensitive) &&
          !utf8(name).contains(asked.trimmed(), Qt::CaseInsensitive))
        continue;
      shown->emplace_back(name);
      cells.push_back({.name = words,
                       .symbol = utf8(name),
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
  popup_->open();
  search->setFocus(Qt::PopupFocusReason);
}

PathControl::PathControl(const FieldInfo& field, const FormServices& services)
    : LineAndMoreControl(field, services) {
  auto* row = makeRow();
  row->addWidget(line(), 1);
  if (services.choosePaths)
    row->addWidget(new PanelButton(PanelButton::Kind::quiet, worded("Choose…"), [this, &services] {
      const bool isFolder = this->field().role == FieldRole::folder;
      const auto chosen = services.choosePaths(
          window(), isFolder ? FormServices::Choosing::folder : FormServices::Choosing::file,
          services.system.home);
      if (!chosen.empty())
        sendChosen(pathText(chosen.front()));
    }));
}

ShortcutControl::ShortcutControl(const FieldInfo& field)
    : FormControl(field), recorder_(new ShortcutRecorder(title(), worded(field.absent))) {
  makeRow()->addWidget(recorder_);
  recorder_->onChange = [this](const std::optional<Hotkey>& hotkey) {
    send(hotkey ? encode(*hotkey) : JSONValue());
  };
  recorder_->onTrouble = [this](const QString& sentence) { complain(sentence); };
}

void ShortcutControl::setValue(const JSONValue& value, const JSONValue&) {
  try {
    recorder_->setHotkey(decode<std::optional<Hotkey>>(value));
  } catch (const CodingError&) {
    recorder_->setHotkey({});
  }
}

QWidget* ShortcutControl::target() {
  return recorder_->button();
}

} // namespace tavrin
