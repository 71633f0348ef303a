#include "TavrinSettings/Dock/LayoutPane.h"

#include "TavrinCore/Text/Text.h"
#include "TavrinHost/Dock/DockEditing.h"
#include "TavrinSettings/Base/ScrollFade.h"
#include "TavrinSettings/Dock/DockItemRow.h"
#include "TavrinSettings/Form/ShortcutRecorder.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QLineEdit>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tavrin {
namespace {

struct NamedColour {
  ProfileColor value;
  const char* name;
  QColor colour;
};

const std::array<NamedColour, 6> colours = {{
    {ProfileColor::blue, marked("Blue"), {0x0A, 0x84, 0xFF}},
    {ProfileColor::pink, marked("Pink"), {0xFF, 0x37, 0x5F}},
    {ProfileColor::orange, marked("Orange"), {0xFF, 0x9F, 0x0A}},
    {ProfileColor::green, marked("Green"), {0x30, 0xD1, 0x58}},
    {ProfileColor::purple, marked("Purple"), {0xBF, 0x5A, 0xF2}},
    {ProfileColor::graphite, marked("Graphite"), {0x8E, 0x8E, 0x93}},
}};

/// In the order of the segments: none, when a Focus begins, when it ends.
const std::array<const char*, 3> focusStates = {"", "on", "off"};

} // namespace

QColor profileColour(ProfileColor value) {
  for (const auto& colour : colours)
    if (colour.value == value)
      return colour.colour;
  return colours.front().colour;
}

LayoutPane::LayoutPane(DockServicesOfPage& services, QWidget* parent)
    : QWidget(parent), services_(services), picker_(services.page.forms) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(panel::grid);
  name_ = new QLineEdit(this);
  name_->setAccessibleName(worded("Name"));
  name_->setMinimumWidth(220);
  QObject::connect(name_, &QLineEdit::textChanged, this, [this](const QString& text) {
    const auto name = std::string(trimmed(text.toStdString()));
    if (!isShowing_ && !name.empty())
      edit(marked("Rename {name}"), "name", [&](Profile& profile) { profile.name = name; });
  });
  column->addWidget(new PanelField(worded("Name"), name_, this));

  makeColours(column);
  makeRows();
  makeItems(column);
  makeActions(column);
}

void LayoutPane::makeColours(QVBoxLayout* column) {
  auto* swatches = new QWidget(this);
  swatches->setAccessibleName(worded("Colour"));
  auto* row = new QHBoxLayout(swatches);
  row->setContentsMargins(0, 0, 0, 0);
  for (const auto& colour : colours) {
    auto* swatch = new PanelSwatch(
        colour.colour, worded(colour.name),
        [this, value = colour.value] {
          edit(marked("Colour {name}"), "", [&](Profile& profile) { profile.color = value; });
        },
        swatches);
    swatch->setSide(24);
    colours_.push_back(swatch);
    row->addWidget(swatch);
  }
  column->addWidget(new PanelField(worded("Colour"), swatches, this));
}

void LayoutPane::makeItems(QVBoxLayout* column) {
  items_ = new DockItemRow(this);
  items_->icon = [this](const DockItem& item, int side, double scale) {
    return services_.icon ? services_.icon(item, side, scale) : QImage();
  };
  const auto list = [](Profile& profile, bool isRight) -> std::vector<DockItem>& {
    return isRight ? profile.others : profile.items;
  };
  items_->onMove = [this, list](bool isRight, std::size_t from, std::size_t to) {
    edit(marked("Move an Item in {name}"), "", [&](Profile& profile) {
      auto& items = list(profile, isRight);
      if (from >= items.size() || to >= items.size())
        return;
      auto item = std::move(items[from]);
      items.erase(items.begin() + static_cast<std::ptrdiff_t>(from));
      items.insert(items.begin() + static_cast<std::ptrdiff_t>(to), std::move(item));
    });
  };
  items_->onRemove = [this, list](bool isRight, std::size_t index) {
    edit(marked("Remove an Item from {name}"), "", [&](Profile& profile) {
      auto& items = list(profile, isRight);
      if (index < items.size())
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
    });
  };
  auto* scroll = new QScrollArea(this);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(items_);
  ScrollFade::addTo(scroll);
  auto* title = new QHBoxLayout;
  title->addWidget(new PanelText(worded("Items"), PanelTextStyle::section, this), 1);
  picker_.onChoose = [this](const std::vector<DockItem>& items) { add(items); };
  auto* more = new PanelButton(PanelButton::Kind::quiet, worded("Add…"), {}, this);
  more->setSymbol(QStringLiteral("plus"));
  QObject::connect(more, &QPushButton::clicked, this, [this, more] { picker_.open(more); });
  title->addWidget(more);
  column->addLayout(title);
  column->addWidget(scroll, 1);
}

void LayoutPane::add(const std::vector<DockItem>& items) {
  QString known;
  edit(marked("Add an Item to {name}"), "", [&](Profile& profile) {
    DockSnapshot dock{profile.items, profile.others, {}};
    adding({items, {}, {}, {}},
           [&](const DockItem& item) { known = QString::fromStdString(item.displayName()); })(dock);
    profile.items = dock.apps;
    profile.others = dock.others;
  });
  if (!known.isEmpty())
    services_.page.tell(worded("“{name}” is in the layout already.", {{"name", known}}), false);
}

void LayoutPane::makeRows() {
  auto* column = static_cast<QVBoxLayout*>(layout());
  shortcut_ = new ShortcutRecorder(worded("Shortcut"), worded("None"), this);
  shortcut_->onChange = [this](const std::optional<Hotkey>& hotkey) { setShortcut(hotkey); };
  shortcut_->onTrouble = [this](const QString& sentence) {
    services_.page.tell(sentence + QLatin1Char('.'), true);
  };
  column->addWidget(new PanelField(worded("Shortcut"), shortcut_, this));
  focus_ = new PanelSegments(
      worded("Focus"), {worded("Never"), worded("When it begins"), worded("When it ends")}, this);
  focus_->onChange = [this](int index) {
    edit(marked("Focus of {name}"), "", [&](Profile& profile) {
      const std::string state = focusStates[static_cast<std::size_t>(index)];
      profile.focusModeBinding = state.empty() ? std::nullopt : std::optional(state);
    });
  };
  column->addWidget(new PanelField(worded("Apply by Focus"), focus_, this));
  auto* following = new QHBoxLayout;
  notFollowed_ = new PanelText(worded("Nothing follows shortcuts and Focus just now."),
                               PanelTextStyle::caption, this);
  follow_ = new PanelButton(
      PanelButton::Kind::quiet, worded("Follow Them"),
      [this] {
        services_.page.attempt([&] {
          services_.follow();
          services_.page.tell(
              worded("Shortcuts and Focus are followed until you log out, or `tavrin focus` ends."),
              false);
          showFollowing(true);
        });
      },
      this);
  following->addWidget(notFollowed_, 1);
  following->addWidget(follow_);
  column->addLayout(following);
  others_ = new PanelSegments(worded("Other applications"),
                              {worded("Keep"), worded("Hide"), worded("Quit")}, this);
  others_->onChange = [this](int index) {
    edit(marked("Other Applications of {name}"), "", [&](Profile& profile) {
      profile.otherWorkspaceApps = allCases<OtherWorkspaceApps>()[static_cast<std::size_t>(index)];
    });
  };
  column->addWidget(new PanelField(worded("Other applications"), others_, this));
}

void LayoutPane::makeActions(QVBoxLayout* column) {
  difference_ = new PanelText({}, PanelTextStyle::secondary, this);
  column->addWidget(difference_);
  noDock_ = new PanelText(
      worded("No Dock runs on this computer. Writing a layout puts it into {file}, where a Dock "
             "finds it when it starts; nothing else changes.",
             {{"file", "~/Library/Preferences/com.apple.dock.plist"}}),
      PanelTextStyle::secondary, this);
  column->addWidget(noDock_);
  apply_ = new PanelButton(
      PanelButton::Kind::prominent, worded("Apply"),
      [this] {
        services_.page.attempt([&] {
          if (const auto profile = services_.profiles.profile(id_))
            services_.job.apply(*profile);
        });
      },
      this);
  auto* capture = new PanelButton(
      PanelButton::Kind::quiet, worded("Take the Dock As It Is"),
      [this] {
        services_.page.attempt([&] {
          auto dock = services_.profiles.library().snapshot();
          edit(marked("Take the Dock into {name}"), "", [&](Profile& profile) {
            profile.items = dock.apps;
            profile.others = dock.others;
          });
        });
      },
      this);
  auto* duplicate = new PanelButton(
      PanelButton::Kind::quiet, worded("Duplicate"),
      [this] { services_.page.attempt([&] { services_.profiles.duplicate(id_); }); }, this);
  auto* remove = new PanelButton(
      PanelButton::Kind::quiet, worded("Delete"),
      [this] {
        const auto name = name_->text();
        if (services_.page.attempt([&] { services_.profiles.remove(id_); }))
          services_.page.offerUndo(
              worded("“{name}” is deleted. Undo brings it back.", {{"name", name}}));
      },
      this);
  actions_ = new QBoxLayout(QBoxLayout::LeftToRight);
  auto* main = new QHBoxLayout;
  main->addWidget(apply_);
  main->addWidget(capture);
  main->addStretch(1);
  auto* others = new QHBoxLayout;
  if (services_.page.forms.choosePaths)
    others->addWidget(new PanelButton(
        PanelButton::Kind::quiet, worded("Export…"), [this] { exportLayout(); }, this));
  others->addWidget(duplicate);
  others->addWidget(remove);
  others->addStretch(0);
  actions_->addLayout(main, 1);
  actions_->addLayout(others);
  column->addLayout(actions_);
}

/// What has no room in one row has it in two.
void LayoutPane::resizeEvent(QResizeEvent*) {
  int wanted = actions_->spacing();
  for (int i = 0; i < actions_->count(); ++i)
    wanted += actions_->itemAt(i)->sizeHint().width();
  actions_->setDirection(wanted <= width() ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

void LayoutPane::exportLayout() {
  const auto& forms = services_.page.forms;
  const auto name = name_->text().replace(QLatin1Char('/'), QLatin1Char('-')) + ".json";
  for (const auto& file : forms.choosePaths(window(), FormServices::Choosing::newFile,
                                            forms.system.home / name.toStdString()))
    if (services_.page.attempt([&] { services_.profiles.exportTo(file, id_); }))
      services_.page.tell(worded("Written to {file}.", {{"file", file.string()}}), false);
}

void LayoutPane::edit(const char* title, const char* field,
                      const std::function<void(Profile&)>& edit) {
  services_.page.attempt([&] {
    const auto profile = services_.profiles.profile(id_);
    services_.profiles.edit(
        id_, translated(title, {{"name", profile ? profile->name : std::string()}}), field, edit);
  });
}

bool LayoutPane::show(const UUID& id) {
  const auto profile = services_.profiles.profile(id);
  if (!profile)
    return false;
  const auto name = QString::fromStdString(profile->name);
  isShowing_ = true;
  if (id != id_ || (!name_->hasFocus() && name_->text() != name))
    name_->setText(name);
  isShowing_ = false;
  id_ = id;
  for (std::size_t i = 0; i < colours.size(); ++i)
    colours_[i]->setChosen(colours[i].value == profile->color);
  const auto binding = profile->focusModeBinding.value_or("");
  int state = -1;
  for (std::size_t i = 0; i < focusStates.size(); ++i)
    if (binding == focusStates[i])
      state = static_cast<int>(i);
  // Any other is a Focus mode's name, which begins like "on".
  focus_->setCurrent(state < 0 ? 1 : state);
  others_->setCurrent(static_cast<int>(profile->otherWorkspaceApps));
  shortcut_->setHotkey(profile->hotkey);
  items_->setItems(profile->items, profile->others);
  const bool hasDock = services_.job.hasDock();
  showDifference(*profile, hasDock);
  const bool wantsIt = profile->hotkey || profile->focusModeBinding;
  showFollowing(!wantsIt || services_.isFollowed());
  noDock_->setVisible(!hasDock);
  apply_->setTitle(hasDock ? worded("Apply") : worded("Write"));
  apply_->setEnabled(!services_.job.isRunning());
  return true;
}

void LayoutPane::showFollowing(bool isFollowed) {
  notFollowed_->setVisible(!isFollowed);
  follow_->setVisible(!isFollowed);
}

void LayoutPane::showDifference(const Profile& profile, bool hasDock) {
  try {
    auto& library = services_.profiles.library();
    const auto dock = library.snapshot();
    const auto report = DockChangeDetector::diff(dock, asRead(profile.snapshot(dock.capturedAt)));
    const bool isActive = services_.profiles.file().activeProfileId == profile.id;
    difference_->setStyle(PanelTextStyle::secondary);
    const auto changes = differenceWords(report);
    difference_->setWords(report.hasChanges()
                              ? (hasDock ? worded("Applying it {changes}.", {{"changes", changes}})
                                         : worded("Writing it {changes}.", {{"changes", changes}}))
                          : !hasDock ? worded("It is what is written already.")
                          : isActive ? worded("The Dock shows it.")
                                     : worded("The Dock shows the same items."));
  } catch (const std::exception& error) {
    difference_->setStyle(PanelTextStyle::trouble);
    difference_->setWords(QString::fromUtf8(error.what()) + QLatin1Char('.'));
  }
}

void LayoutPane::setShortcut(const std::optional<Hotkey>& hotkey) {
  services_.page.attempt([&] {
    if (hotkey)
      services_.profiles.library().requireFree(*hotkey, id_);
    edit(marked("Shortcut of {name}"), "", [&](Profile& profile) { profile.hotkey = hotkey; });
  });
}

} // namespace tavrin
