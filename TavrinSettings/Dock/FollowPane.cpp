#include "TavrinSettings/Dock/FollowPane.h"

#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinSettings/Form/FormRow.h"
#include "TavrinSettings/Form/Picker.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QVBoxLayout>

namespace tavrin {
namespace {

QString focusWords(const Profile& profile) {
  const auto binding = profile.focusModeBinding.value_or("");
  return binding.empty()    ? QString()
         : binding == "off" ? worded("When a Focus ends")
                            : worded("When a Focus begins");
}

/// As a setting of a widget's: a fraction of a second can be typed, and what is none is told.
FieldInfo intervalField() {
  FieldInfo field;
  field.key = "interval";
  field.title = marked("Look at Focus every");
  field.type = FieldType::number;
  field.range = FieldRange{Following::leastInterval, Following::mostInterval};
  field.unit = "s";
  field.step = Following::leastInterval;
  return field;
}

} // namespace

QString numberedTitle(HotkeyModifiers modifiers) {
  if (modifiers == HotkeyModifiers())
    return worded("None");
  return worded("{first} to {last}",
                {{"first", hotkeyText(*WorkspaceHotkeys::numbered(0, modifiers))},
                 {"last", hotkeyText(*WorkspaceHotkeys::numbered(8, modifiers))}});
}

FollowState followState(DockServicesOfPage& services) {
  auto& following = services.following;
  const auto attempt = [&services](auto work, const QString& said) {
    return [&services, work, said] {
      if (services.page.attempt(work))
        services.page.tell(said, false);
    };
  };
  if (!following.isFollowed())
    return {
        worded("Nothing follows shortcuts and Focus just now."), worded("Follow Them"),
        attempt([&following] { following.follow(); }, worded("Shortcuts and Focus are followed."))};
  if (!following.startsWithSession())
    return {worded("Followed until you log out: Tavrin does not start with the session."),
            worded("Start It With the Session"),
            attempt(
                [&following] {
                  following.startWithSession();
                  if (following.onChange)
                    following.onChange();
                },
                worded("Tavrin starts with the session."))};
  return {worded("Followed now and whenever you log in."), {}, {}};
}

FollowPane::FollowPane(DockServicesOfPage& services, QWidget* parent)
    : QWidget(parent), services_(services) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(panel::grid);
  isOn_ = new PanelSwitch(worded("Follow shortcuts and Focus"), this);
  isOn_->onChange = [this](bool on) {
    services_.page.attempt([&] {
      services_.following.set(on ? translated("Follow Shortcuts and Focus")
                                 : translated("Stop Following Shortcuts and Focus"),
                              {}, [on](Following& record) { record.isOn = on; });
    });
    refresh();
  };
  column->addWidget(isOn_);
  auto* about = new QHBoxLayout;
  state_ = new PanelText({}, PanelTextStyle::secondary, this);
  session_ = new PanelButton(PanelButton::Kind::quiet, {}, {}, this);
  about->addWidget(state_, 1);
  about->addWidget(session_);
  column->addLayout(about);
  column->addWidget(new PanelDivider(this));
  numbered_ = new DropButton([this] { chooseNumbered(); });
  column->addWidget(new PanelField(worded("Numbered shortcuts"), numbered_, this));
  column->addWidget(new PanelText(
      worded("The first nine layouts without a shortcut of their own go by the digit of their "
             "place in the list."),
      PanelTextStyle::caption, this));
  interval_ = new FormRow(intervalField(), "interval", services_.page.forms, this);
  interval_->onEdit = [this](const std::vector<SettingValue>& values) {
    const auto seconds = values.front().value.doubleValue().value_or(Following().interval);
    services_.page.attempt([&] {
      services_.following.set(translated("Look at Focus"), "interval",
                              [seconds](Following& record) { record.interval = seconds; });
    });
    return std::string();
  };
  column->addWidget(interval_);
  column->addWidget(
      new PanelText(worded("What leads to which layout"), PanelTextStyle::section, this));
  list_ = new PanelList(worded("What leads to which layout"), this);
  list_->setReadOnly(true);
  column->addWidget(list_, 1);
  none_ = new PanelText(
      worded(
          "Nothing does yet. A layout's page sets its shortcut, and whether a Focus applies it."),
      PanelTextStyle::secondary, this);
  column->addWidget(none_);
  column->addStretch(0);
}

void FollowPane::chooseNumbered() {
  if (picker_ && picker_->isVisible())
    return;
  const auto source = [this](const QString&, const PickerAnswer& answer) {
    std::vector<PickerItem> items;
    services_.page.attempt([&] {
      const auto chosen = services_.following.following().numbered;
      std::vector<HotkeyModifiers> choices(WorkspaceHotkeys::modifierChoices.begin(),
                                           WorkspaceHotkeys::modifierChoices.end());
      choices.emplace_back();
      for (const auto modifiers : choices)
        items.push_back({.row = {.id = QString::number(modifiers.rawValue),
                                 .title = numberedTitle(modifiers),
                                 .isChecked = modifiers == chosen},
                         .values = {}});
    });
    answer(std::move(items), {});
    return TokenPtr();
  };
  picker_ = new PickerPopup(numbered_, worded("Numbered shortcuts"), {}, source);
  picker_->onChoose = [this](const PickerItem& item) {
    services_.page.attempt([&] {
      services_.following.set(translated("Numbered Shortcuts"), {},
                              [&](Following& record) { record.numbered = {item.row.id.toUInt()}; });
    });
  };
  picker_->open();
}

void FollowPane::refresh() {
  services_.page.attempt([this] {
    const auto following = services_.following.following();
    const auto& file = services_.profiles.file();
    isOn_->setOn(following.isWanted(file));
    const auto state = followState(services_);
    const bool isWanted = following.isWanted(file) || services_.following.isFollowed();
    state_->setWords(isWanted ? state.sentence
                              : worded("Shortcuts and Focus change nothing while this is off."));
    session_->setTitle(state.remedy);
    session_->setAction(state.act);
    session_->setVisible(isWanted && !state.remedy.isEmpty());
    numbered_->show(worded("Numbered shortcuts"), numberedTitle(following.numbered));
    interval_->show(JSONValue::Object{{"interval", following.boundedInterval()}});
    const auto bindings = following.bindings(file.profiles);
    std::vector<PanelRow> rows;
    for (const auto& profile : file.profiles) {
      const auto hotkey = bindings.find(profile.id);
      const auto focus = focusWords(profile);
      if (hotkey == bindings.end() && focus.isEmpty())
        continue;
      rows.push_back(
          {.id = utf8(profile.id.text()),
           .title = utf8(profile.name),
           .subtitle = focus,
           .trailing = hotkey == bindings.end() ? QString() : utf8(hotkeyText(hotkey->second)),
           .dot = profileColour(profile.color)});
    }
    none_->setVisible(rows.empty());
    list_->setVisible(!rows.empty());
    list_->setRows(std::move(rows));
  });
}

} // namespace tavrin
