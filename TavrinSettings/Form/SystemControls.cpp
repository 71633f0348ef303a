#include "TavrinSettings/Form/SystemControls.h"

#include "TavrinCore/Base/TimeZone.h"
#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinCore/Text/FoldedWords.h"
#include "TavrinCore/Text/NameOrder.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <map>
#include <memory>
#include <unicode/locid.h>
#include <unicode/timezone.h>

namespace tavrin {
namespace {

/// Whether every word of the question begins a word of the text, case and accents aside.
bool matches(const std::string& text, const QString& question) {
  const auto folded = foldedWords(text);
  const auto known = wordsOf(folded);
  for (const auto& asked : wordsOf(foldedWords(question.toStdString())))
    if (std::ranges::none_of(known, [&](const auto& word) { return word.starts_with(asked); }))
      return false;
  return true;
}

/// "+05:30" at that moment; empty for a zone the system does not have.
std::string offsetText(const std::string& zoneID, Date now) {
  const auto zone = timeZone(zoneID);
  if (!zone)
    return {};
  const auto moment = ZoneMoment(cctz::seconds(static_cast<std::int64_t>(now.unixSeconds())));
  const int offset = zone->lookup(moment).offset;
  const int minutes = std::abs(offset) / 60;
  return fmt::format("{}{:02}:{:02}", offset < 0 ? "-" : "+", minutes / 60, minutes % 60);
}

std::string utf8Of(const icu::UnicodeString& text) {
  std::string bytes;
  return text.toUTF8String(bytes);
}

icu::Locale namesLocale() {
  const auto language = textLanguage();
  return {language.substr(0, language.find('@')).c_str()};
}

/// In English the first part of the zone's name, else the country in the user's language.
std::string regionOf(const std::string& zoneID) {
  if (textLanguage() != "en") {
    UErrorCode error = U_ZERO_ERROR;
    std::array<char, 8> code{};
    icu::TimeZone::getRegion(icu::UnicodeString::fromUTF8(zoneID), code.data(),
                             static_cast<std::int32_t>(code.size()), error);
    icu::UnicodeString country;
    if (U_SUCCESS(error) && std::string_view(code.data()) != "001")
      return utf8Of(icu::Locale("", code.data()).getDisplayCountry(namesLocale(), country));
  }
  const auto slash = zoneID.rfind('/');
  auto region = slash == std::string::npos ? std::string() : zoneID.substr(0, slash);
  std::ranges::replace(region, '_', ' ');
  return region;
}

/// Whether the question is the zone's offset, however it is written: "+5:30", "utc+05:30", "-3".
bool isOffset(const std::string& offset, const QString& question) {
  auto asked = question.toLower().remove(QLatin1Char(' '));
  for (const auto* name : {"utc", "gmt"})
    if (asked.startsWith(QLatin1String(name)))
      asked.remove(0, 3);
  if (asked.size() < 2 || (asked[0] != QLatin1Char('+') && asked[0] != QLatin1Char('-')))
    return false;
  if (asked.size() == 2 || asked[2] == QLatin1Char(':'))
    asked.insert(1, QLatin1Char('0'));
  return utf8(offset).startsWith(asked);
}

std::string quoted(const JSONValue& value) {
  return value.string() != nullptr ? *value.string() : value.compact();
}

/// Pictures of applications as they come, asked for once each.
struct IconShelf {
  struct Tokens final : Token {
    std::vector<TokenPtr> list;
  };
  std::map<std::string, QImage> images;

  /// Gives the rows the pictures of `icons` and answers, at once and when those that lacked came.
  TokenPtr answer(const FormServices& services, std::vector<PickerItem> items,
                  const std::vector<std::string>& icons, const PickerAnswer& answer,
                  const std::shared_ptr<IconShelf>& self) {
    auto tokens = std::make_unique<Tokens>();
    const auto show = [items = std::move(items), icons, answer, self] {
      auto shown = items;
      for (std::size_t i = 0; i < shown.size(); ++i)
        shown[i].row.image = self->images[icons[i]];
      answer(std::move(shown),
             items.empty() ? worded("No application goes by that name") : QString());
    };
    show();
    const auto missing = std::make_shared<std::size_t>(0);
    constexpr std::size_t mostPictures = 60;
    for (std::size_t i = 0; i < std::min(icons.size(), mostPictures); ++i) {
      const auto& icon = icons[i];
      if (!services.applicationIcon || icon.empty() || !images[icon].isNull())
        continue;
      ++*missing;
      tokens->list.push_back(
          services.applicationIcon(icon, 24, 2, [self, icon, missing, show](const QImage& image) {
            self->images[icon] = image;
            if (--*missing == 0)
              show();
          }));
    }
    return tokens;
  }
};

/// What was asked for first, and what that asked for.
struct Chain final : Token {
  TokenPtr first;
  TokenPtr then;
};

/// Lists applications through `add`, which makes the items of one of them.
PickerSource listingApplications(
    const FormServices& services,
    std::function<std::vector<PickerItem>(const ApplicationInfo&, const QString&)> add) {
  const auto shelf = std::make_shared<IconShelf>();
  return [&services, add, shelf](const QString& question, const PickerAnswer& answer) -> TokenPtr {
    if (!services.applications) {
      answer({}, worded("Applications cannot be listed here"));
      return nullptr;
    }
    auto chain = std::make_unique<Chain>();
    chain->first = services.applications(
        [=, &services, chain = chain.get()](const std::vector<ApplicationInfo>& found) {
          std::vector<PickerItem> items;
          std::vector<std::string> icons;
          for (const auto& app : found)
            for (auto& item : add(app, question)) {
              items.push_back(std::move(item));
              icons.push_back(app.icon);
            }
          chain->then = shelf->answer(services, std::move(items), icons, answer, shelf);
        });
    return chain;
  };
}

} // namespace

FormControl* makeTimeZoneControl(const FieldInfo& field, const FormServices& services) {
  const auto source = [&services](const QString& question, const PickerAnswer& answer) -> TokenPtr {
    const Date now = services.now ? services.now() : Date{};
    const auto zones = services.timeZones ? services.timeZones() : std::vector<std::string>();
    std::vector<PickerItem> items;
    for (const auto& zone : zones) {
      const auto offset = offsetText(zone, now);
      if (!question.isEmpty() && !isOffset(offset, question) &&
          !matches(localCityOf(zone) + " " + regionOf(zone) + " " + zone, question))
        continue;
      items.push_back({.row = {.id = utf8(zone),
                               .title = utf8(localCityOf(zone)),
                               .subtitle = utf8(regionOf(zone)),
                               .trailing = utf8("UTC" + offset)},
                       .values = {{{}, zone, {}}}});
    }
    const NameOrder order;
    std::ranges::stable_sort(items, [&](const PickerItem& a, const PickerItem& b) {
      return order(a.row.title.toStdString(), b.row.title.toStdString());
    });
    const bool isEmpty = items.empty();
    answer(std::move(items), isEmpty ? worded("No time zone goes by that name") : QString());
    return nullptr;
  };
  return new PickerControl(
      field, worded("City or offset, such as +5:30"), source,
      [&services](const JSONValue& value, const JSONValue&) {
        const auto zone = quoted(value);
        const auto offset = offsetText(zone, services.now ? services.now() : Date{});
        return utf8(offset.empty() ? zone : localCityOf(zone) + "  UTC" + offset);
      });
}

FormControl* makeCityControl(const FieldInfo& field, const FormServices& services) {
  const auto source = [&services](const QString& question, const PickerAnswer& answer) -> TokenPtr {
    const auto name = question.trimmed();
    if (name.size() < 2 || !services.cities) {
      answer({}, services.cities ? worded("Type the name of a city")
                                 : worded("Cities cannot be looked up here"));
      return nullptr;
    }
    answer({}, worded("Looking…"));
    return services.cities(
        name.toStdString(), [answer](std::vector<WeatherPlace> places, const std::string& trouble) {
          std::vector<PickerItem> items;
          for (const auto& place : places)
            items.push_back({.row = {.id = utf8(place.id()),
                                     .title = utf8(place.name),
                                     .subtitle = utf8(place.region.value_or(""))},
                             .values = {{{}, place.name, {}},
                                        {"latitude", place.latitude, {}},
                                        {"longitude", place.longitude, {}}}});
          const bool isEmpty = items.empty();
          answer(std::move(items), !trouble.empty() ? utf8(trouble)
                                   : isEmpty        ? worded("No city by that name.")
                                                    : QString());
        });
  };
  const auto titleOf = [](const JSONValue& value, const JSONValue& record) {
    if (!value.isNull())
      return utf8(quoted(value));
    const auto* latitude = record.member("latitude");
    const auto* longitude = record.member("longitude");
    return latitude == nullptr || longitude == nullptr
               ? QString()
               : utf8(fmt::format("{}°, {}°", decimalText(latitude->doubleValue().value_or(0), 2),
                                  decimalText(longitude->doubleValue().value_or(0), 2)));
  };
  auto* control = new PickerControl(field, worded("City"), source, titleOf);
  control->setAlso({"latitude", "longitude"});
  return control;
}

FormControl* makeSystemChoiceControl(const FieldInfo& field, const FormServices& services) {
  const auto item = [](const std::string& id, const std::string& title,
                       const std::string& subtitle = {}) {
    return PickerItem{.row = {.id = utf8(id), .title = utf8(title), .subtitle = utf8(subtitle)},
                      .values = {{{}, id, {}}}};
  };
  // What was answered last names what is chosen.
  const auto known = std::make_shared<std::vector<std::pair<std::string, std::string>>>();
  const auto role = field.role;
  const auto source = [&services, item, role, known](const QString&,
                                                     const PickerAnswer& answer) -> TokenPtr {
    if (role == FieldRole::reminderList && services.accounts) {
      answer({}, worded("Asking the calendar store…"));
      return services.accounts(
          CalendarStore::Entity::reminders, [=](const CalendarStore::Accounts& found) {
            std::vector<PickerItem> items;
            known->clear();
            for (const auto& account : found.accounts)
              for (const auto& list : account.calendars) {
                items.push_back(item(list.id, list.title, account.name));
                known->emplace_back(list.id, list.title);
              }
            const bool isEmpty = items.empty();
            answer(std::move(items), isEmpty ? worded("There are no reminder lists") : QString());
          });
    }
    std::vector<PickerItem> items;
    known->clear();
    if (role == FieldRole::player && services.players)
      *known = services.players();
    if (role == FieldRole::networkLink && services.networkLinks)
      for (const auto& link : services.networkLinks())
        known->emplace_back(link, link);
    for (const auto& [id, title] : *known)
      items.push_back(item(id, title));
    const bool isEmpty = items.empty();
    answer(std::move(items), !isEmpty                    ? QString()
                             : role == FieldRole::player ? worded("No player is running")
                             : role == FieldRole::networkLink
                                 ? worded("There are no network links")
                                 : worded("There is no calendar store here"));
    return nullptr;
  };
  return new PickerControl(field, {}, source, [known](const JSONValue& value, const JSONValue&) {
    const auto id = quoted(value);
    const auto found = std::ranges::find(*known, id, &std::pair<std::string, std::string>::first);
    return utf8(found == known->end() ? id : found->second);
  });
}

FormControl* makeApplicationActionControl(const FieldInfo& field, const FormServices& services) {
  const auto add = [](const ApplicationInfo& app, const QString& question) {
    std::vector<PickerItem> items;
    if (matches(app.name + " " + app.genericName + " " + app.id, question))
      items.push_back(
          {.row = {.id = utf8(app.id), .title = utf8(app.name)}, .values = {{{}, app.id, {}}}});
    for (const auto& action : app.actions)
      if (matches(app.name + " " + action.name, question))
        items.push_back({.row = {.id = utf8(app.id + "/" + action.id),
                                 .title = utf8(action.name),
                                 .subtitle = utf8(app.name)},
                         .values = {{{}, app.id + "/" + action.id, {}}}});
    return items;
  };
  return new PickerControl(
      field, worded("Application or action"), listingApplications(services, add),
      [](const JSONValue& value, const JSONValue&) { return utf8(quoted(value)); });
}

AppEntry entryOf(const ApplicationInfo& app) {
  AppEntry entry;
  entry.path = app.path;
  entry.bundleIdentifier = app.id;
  entry.displayName = app.name;
  return entry;
}

PickerSource applicationsSource(const FormServices& services) {
  return listingApplications(services, [](const ApplicationInfo& app, const QString& question) {
    std::vector<PickerItem> items;
    if (!matches(app.name + " " + app.genericName + " " + app.id, question))
      return items;
    items.push_back(
        {.row = {.id = utf8(app.id), .title = utf8(app.name), .subtitle = utf8(app.genericName)},
         .values = {{{}, encode(entryOf(app)), {}}}});
    return items;
  });
}

CalendarsControl::CalendarsControl(const FieldInfo& field, const FormServices& services)
    : FormControl(field), services_(services), list_(new PanelList(title())),
      words_(new PanelText(worded("Asking the calendar store…"), PanelTextStyle::secondary)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(4);
  column->addWidget(words_);
  column->addWidget(list_);
  list_->hide();
  list_->setMaximumVisibleRows(8);
  list_->onOpen = [this](int row) { toggle(row); };
}

void CalendarsControl::setValue(const JSONValue& value, const JSONValue&) {
  try {
    selection_ = value.isNull() ? CalendarSelection() : decode<CalendarSelection>(value);
  } catch (const CodingError&) {
    selection_ = {};
  }
  if (!hasAsked_)
    ask();
  fill();
}

void CalendarsControl::ask() {
  hasAsked_ = true;
  if (!services_.accounts) {
    hasAnswer_ = true;
    return;
  }
  asking_ = services_.accounts(CalendarStore::Entity::events,
                               [this](const CalendarStore::Accounts& found) {
                                 accounts_ = found.accounts;
                                 hasAnswer_ = true;
                                 fill();
                                 if (onHeightChange)
                                   onHeightChange();
                               });
}

void CalendarsControl::fill() {
  std::vector<PanelRow> rows;
  const bool isAll = selection_.accountIDs.empty() && selection_.calendarIDs.empty();
  for (const auto& account : accounts_) {
    rows.push_back({.id = utf8("a" + account.id),
                    .title = utf8(account.name),
                    .isChecked = std::ranges::count(selection_.accountIDs, account.id) > 0});
    for (const auto& calendar : account.calendars)
      rows.push_back({.id = utf8("c" + calendar.id),
                      .title = utf8("   " + calendar.title),
                      .dot = QColor(utf8(calendar.colorHex.value_or("#8E8E93"))),
                      .isChecked = !isAll && selection_.includes(calendar)});
  }
  list_->setVisible(!rows.empty());
  words_->setWords(rows.empty() ? (hasAnswer_ ? worded("There are no calendars here")
                                              : worded("Asking the calendar store…"))
                   : isAll      ? worded(field().absent)
                                : QString());
  words_->setVisible(!words_->text().isEmpty());
  list_->setRows(std::move(rows));
  list_->setMinimumHeight(list_->sizeHint().height());
}

void CalendarsControl::toggle(int row) {
  const auto shown = list_->row(row);
  const auto id = shown.id.mid(1).toStdString();
  const auto changed = shown.id.startsWith(QLatin1Char('a'))
                           ? selection_.settingAccount(id, !shown.isChecked)
                           : selection_.settingCalendar(id, !shown.isChecked);
  send(encode(changed));
}

QWidget* CalendarsControl::target() {
  return list_;
}

} // namespace tavrin
