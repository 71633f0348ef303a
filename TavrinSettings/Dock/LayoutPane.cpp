#include "TavrinSettings/Dock/LayoutPane.h"

#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinHost/Dock/DockItems.h"
#include "TavrinSettings/Dock/BackupPane.h"
#include "TavrinSettings/Dock/DropMenu.h"
#include "TavrinSettings/Dock/FollowPane.h"
#include "TavrinSettings/Dock/LayoutItems.h"
#include "TavrinSettings/Form/ShortcutRecorder.h"
#include "TavrinSettings/Form/TypedLine.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
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
    : QWidget(parent), services_(services) {
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
  makeRows(column);
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
  items_ = new LayoutItems(services_.page, services_.context, services_.icon, this);
  items_->onEdit = [this](const char* title, const std::string& field, const DockEdit& change) {
    return edit(title, field, [&](Profile& profile) {
      DockSnapshot dock{profile.items, profile.others, {}};
      change(dock);
      profile.items = std::move(dock.apps);
      profile.others = std::move(dock.others);
    });
  };
  column->addWidget(items_, 1);
}

void LayoutPane::makeRows(QVBoxLayout* column) {
  shortcut_ = new ShortcutRecorder(worded("Shortcut"), worded("None"), this);
  shortcut_->onChange = [this](const std::optional<Hotkey>& hotkey) { setShortcut(hotkey); };
  shortcut_->onTrouble = [this](const QString& sentence) {
    services_.page.tell(sentence + QLatin1Char('.'), true);
  };
  column->addWidget(new PanelField(worded("Shortcut"), shortcut_, this));
  makeFocus(column);
  others_ = new PanelSegments(worded("Other applications"),
                              {worded("Keep"), worded("Hide"), worded("Quit")}, this);
  others_->onChange = [this](int index) {
    edit(marked("Other Applications of {name}"), "", [&](Profile& profile) {
      profile.otherWorkspaceApps = allCases<OtherWorkspaceApps>()[static_cast<std::size_t>(index)];
    });
  };
  column->addWidget(new PanelField(worded("Other applications"), others_, this));
}

void LayoutPane::makeFocus(QVBoxLayout* column) {
  focus_ = new PanelSegments(
      worded("Focus"), {worded("Never"), worded("When it begins"), worded("When it ends")}, this);
  focus_->onChange = [this](int index) {
    edit(marked("Focus of {name}"), "", [&](Profile& profile) {
      const std::string state = focusStates[static_cast<std::size_t>(index)];
      profile.focusModeBinding = state.empty() ? std::nullopt : std::optional(state);
    });
  };
  column->addWidget(new PanelField(worded("Apply by Focus"), focus_, this));
  mode_ = new TypedLine(TypedLine::Taking::whole, this);
  mode_->setAccessibleName(worded("Focus mode"));
  mode_->setPlaceholderText(worded("Any"));
  mode_->setMinimumWidth(220);
  setPlainToolTip(mode_, worded("Kept for computers that tell Focus modes apart. Here any Focus "
                                "applies the layout."));
  mode_->onTake = [this] {
    const auto mode = std::string(trimmed(mode_->text().toStdString()));
    // These two are no names.
    if (mode != "off")
      edit(marked("Focus of {name}"), "",
           [&](Profile& profile) { profile.focusModeBinding = mode.empty() ? "on" : mode; });
    else if (const auto profile = services_.profiles.profile(id_))
      showFocus(*profile, true);
  };
  modeRow_ = new PanelField(worded("Focus mode"), mode_, this);
  column->addWidget(modeRow_);
  auto* following = new QHBoxLayout;
  followed_ = new PanelText({}, PanelTextStyle::caption, this);
  follow_ = new PanelButton(PanelButton::Kind::quiet, {}, {}, this);
  following->addWidget(followed_, 1);
  following->addWidget(follow_);
  column->addLayout(following);
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
      PanelButton::Kind::quiet, worded("Take the Dock As It Is"), [this] { takeDock(); }, this);
  more_ = PanelButton::icon(
      QStringLiteral("ellipsis"), worded("More for the Layout"), [this] { offerMore(); }, this);
  auto* duplicate = new PanelButton(
      PanelButton::Kind::quiet, worded("Duplicate"),
      [this] {
        services_.page.attempt([&] {
          const auto copy = services_.profiles.duplicate(id_);
          if (onMade)
            onMade(copy);
        });
      },
      this);
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
  others->addWidget(duplicate);
  others->addWidget(remove);
  others->addWidget(more_);
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

void LayoutPane::takeDock() {
  services_.page.attempt([&] {
    auto dock = services_.profiles.library().snapshot();
    edit(marked("Take the Dock into {name}"), "", [&](Profile& profile) {
      profile.items = dock.apps;
      profile.others = dock.others;
    });
  });
}

void LayoutPane::offerMore() {
  std::vector<DropMenu::Entry> entries;
  entries.push_back(
      {worded("Compare With…"), "arrow.left.arrow.right", [this] { offerComparison(); }});
  if (services_.page.forms.choosePaths)
    entries.push_back({worded("Export…"), "square.and.arrow.up", [this] { exportLayout(); }});
  if (services_.job.hasDock())
    entries.push_back({worded("Write Without Restarting the Dock"), "moon.fill", [this] {
                         services_.page.attempt([&] {
                           if (const auto profile = services_.profiles.profile(id_))
                             services_.job.apply(*profile, false);
                         });
                       }});
  DropMenu::open(menu_, more_, worded("More for the Layout"), std::move(entries));
}

std::vector<std::pair<std::string, QString>> LayoutPane::otherLayouts() {
  std::vector<std::pair<std::string, QString>> found;
  for (const auto& profile : services_.profiles.file().profiles)
    if (profile.id != id_)
      found.emplace_back(profile.id.text(), utf8(profile.name));
  auto backups = services_.profiles.library().backups().listBackups();
  for (auto backup = backups.rbegin(); backup != backups.rend(); ++backup)
    found.emplace_back(backup->filename().string(),
                       worded("The Dock of {date}", {{"date", dockBackupTitle(*backup)}}));
  return found;
}

/// The Dock as it is stands on the page already.
void LayoutPane::offerComparison() {
  std::vector<DropMenu::Entry> entries;
  services_.page.attempt([&] {
    for (const auto& [layout, title] : otherLayouts())
      entries.push_back(
          {title, "square.grid.2x2.fill", [this, layout = layout, title = title] {
             services_.page.attempt([&] {
               const auto mine = services_.profiles.profile(id_);
               const auto other = services_.profiles.library().layout(layout);
               if (mine)
                 services_.page.tell(
                     worded("“{name}” beside “{other}”: it {changes}.",
                            {{"name", mine->name},
                             {"other", title},
                             {"changes", differenceWords(other, mine->snapshot({}))}}),
                     false);
             });
           }});
  });
  if (entries.empty())
    services_.page.tell(worded("There is no other layout and no backup of the Dock yet."), false);
  else
    DropMenu::open(menu_, more_, worded("Compare With"), std::move(entries));
}

/// A Dock's preferences file takes the items, any other name an export.
void LayoutPane::exportLayout() {
  const auto& forms = services_.page.forms;
  const auto name = name_->text().replace(QLatin1Char('/'), QLatin1Char('-')) + ".json";
  for (const auto& file : forms.choosePaths(window(), FormServices::Choosing::newFile,
                                            forms.system.home / name.toStdString()))
    if (services_.page.attempt([&] { services_.profiles.exportTo(file, id_); }))
      services_.page.tell(worded("Written to {file}.", {{"file", file.string()}}), false);
}

bool LayoutPane::edit(const char* title, const std::string& field,
                      const std::function<void(Profile&)>& edit) {
  return services_.page.attempt([&] {
    const auto profile = services_.profiles.profile(id_);
    services_.profiles.edit(
        id_, translated(title, {{"name", profile ? profile->name : std::string()}}), field, edit);
    if (profile && !isLedTo(*profile) &&
        isLedTo(services_.profiles.profile(id_).value_or(Profile())))
      services_.following.keepUp();
  });
}

bool LayoutPane::show(const UUID& id) {
  const auto profile = services_.profiles.profile(id);
  if (!profile)
    return false;
  const auto name = QString::fromStdString(profile->name);
  const bool isAnother = id != id_;
  if (isAnother)
    mode_->take();
  isShowing_ = true;
  if (isAnother || (!name_->hasFocus() && name_->text() != name))
    name_->setText(name);
  isShowing_ = false;
  id_ = id;
  for (std::size_t i = 0; i < colours.size(); ++i)
    colours_[i]->setChosen(colours[i].value == profile->color);
  showFocus(*profile, isAnother);
  others_->setCurrent(static_cast<int>(profile->otherWorkspaceApps));
  showShortcut(*profile);
  items_->show(*profile);
  const bool hasDock = services_.job.hasDock();
  showDifference(*profile, hasDock);
  showFollowing(*profile);
  noDock_->setVisible(!hasDock);
  apply_->setTitle(hasDock ? worded("Apply") : worded("Write"));
  apply_->setEnabled(!services_.job.isRunning());
  return true;
}

void LayoutPane::showFocus(const Profile& profile, bool isAnother) {
  const auto binding = profile.focusModeBinding.value_or("");
  int state = -1;
  for (std::size_t i = 0; i < focusStates.size(); ++i)
    if (binding == focusStates[i])
      state = static_cast<int>(i);
  // Any other is a Focus mode's name, which begins like "on".
  const bool isNamed = state < 0;
  focus_->setCurrent(isNamed ? 1 : state);
  modeRow_->setVisible(isNamed || state == 1);
  if (isAnother || !mode_->hasFocus())
    mode_->showText(isNamed ? utf8(binding) : QString());
}

void LayoutPane::showShortcut(const Profile& profile) {
  auto none = worded("None");
  try {
    const auto bindings =
        services_.following.following().bindings(services_.profiles.file().profiles);
    if (const auto numbered = bindings.find(profile.id);
        numbered != bindings.end() && services_.following.isFollowed())
      none = worded("{shortcut}, by its place", {{"shortcut", hotkeyText(numbered->second)}});
  } catch (const std::exception&) {
    // What is wrong with how they are followed is said on that page.
  }
  shortcut_->setNone(none);
  shortcut_->setHotkey(profile.hotkey);
}

void LayoutPane::showFollowing(const Profile& profile) {
  const bool isShown = isLedTo(profile);
  const auto state = isShown ? followState(services_) : FollowState();
  followed_->setWords(state.sentence);
  followed_->setVisible(isShown);
  follow_->setTitle(state.remedy);
  follow_->setAction(state.act);
  follow_->setVisible(!state.remedy.isEmpty());
}

void LayoutPane::showDifference(const Profile& profile, bool hasDock) {
  try {
    auto& library = services_.profiles.library();
    const auto dock = library.snapshot();
    const auto layout = profile.snapshot(dock.capturedAt);
    const bool isActive = services_.profiles.file().activeProfileId == profile.id;
    difference_->setStyle(PanelTextStyle::secondary);
    const auto changes = differenceWords(dock, layout);
    difference_->setWords(!showTheSame(dock, layout)
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
