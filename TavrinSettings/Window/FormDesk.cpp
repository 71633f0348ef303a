#include "TavrinSettings/Window/FormDesk.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Widgets/SettingEditing.h"
#include "TavrinPlatform/MediaPlayers.h"

#include <QFileDialog>
#include <unicode/strenum.h>
#include <unicode/timezone.h>

namespace tavrin {
namespace {

std::vector<std::filesystem::path> choosePaths(QWidget* parent, FormServices::Choosing choosing,
                                               const std::filesystem::path& start) {
  using Choosing = FormServices::Choosing;
  QFileDialog dialog(parent);
  dialog.setFileMode(choosing == Choosing::folder    ? QFileDialog::Directory
                     : choosing == Choosing::file    ? QFileDialog::ExistingFile
                     : choosing == Choosing::newFile ? QFileDialog::AnyFile
                                                     : QFileDialog::ExistingFiles);
  dialog.setOption(QFileDialog::ShowDirsOnly, choosing == Choosing::folder);
  const bool isNew = choosing == Choosing::newFile;
  dialog.setDirectory(QString::fromStdString((isNew ? start.parent_path() : start).string()));
  if (isNew) {
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(QString::fromStdString(start.filename().string()));
  }
  std::vector<std::filesystem::path> paths;
  if (dialog.exec() == QDialog::Accepted)
    for (const auto& file : dialog.selectedFiles())
      paths.emplace_back(file.toStdString());
  return paths;
}

/// Those that stand for a place, each once, and that the system has rules for.
std::vector<std::string> timeZoneIdentifiers(const SettingSystem& system) {
  std::vector<std::string> identifiers;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::StringEnumeration> zones(icu::TimeZone::createTimeZoneIDEnumeration(
      UCAL_ZONE_TYPE_CANONICAL_LOCATION, nullptr, nullptr, status));
  while (U_SUCCESS(status) && zones) {
    const auto* zone = zones->snext(status);
    if (zone == nullptr)
      break;
    zone->toUTF8String(identifiers.emplace_back());
  }
  std::erase_if(identifiers, [&](const auto& zone) { return !system.isTimeZone(zone); });
  return identifiers;
}

/// Nothing of the calendars is known before they have been asked for access.
struct AccessThenAccounts final : Token {
  TokenPtr asked;
  TokenPtr read;
};

} // namespace

FormDesk::FormDesk(Platform& platform, InstalledApps& apps) : platform_(platform), apps_(apps) {
  setUpSystem();
  setUpPickers();
}

void FormDesk::setUpSystem() {
  services_.system = settingSystem(platform_.fileManager().homeFolder());
  services_.now = [this] { return platform_.clock().now(); };
  services_.timeZones = [this] { return timeZoneIdentifiers(services_.system); };
}

void FormDesk::setUpPickers() {
  services_.cities = [this](const std::string& name, auto answer) {
    if (!cities_)
      cities_ = std::make_unique<WeatherFetch>(platform_.http(), platform_.clock(),
                                               platform_.fileManager());
    return cities_->lookUp(name, [answer](std::optional<std::vector<WeatherPlace>> places) {
      if (places)
        answer(std::move(*places), {});
      else
        answer({}, translated("Cities cannot be looked up just now. Is there a network?"));
    });
  };
  services_.accounts = [this](CalendarStore::Entity entity, auto answer) {
    auto chain = std::make_unique<AccessThenAccounts>();
    auto& calendars = platform_.calendars();
    chain->asked = calendars.requestAccess(
        entity, [&calendars, entity, steps = chain.get(), answer](CalendarAccess) {
          steps->read = calendars.accounts(entity, answer);
        });
    return chain;
  };
  services_.players = [this] {
    if (!players_)
      players_ = platform_.mediaPlayers().observe([] {});
    std::vector<std::pair<std::string, std::string>> players;
    for (const auto& player : platform_.mediaPlayers().players())
      players.emplace_back(player.name, player.title);
    return players;
  };
  services_.networkLinks = [this] {
    std::vector<std::string> links;
    platform_.hostStatistics().eachLink(
        [&](std::string_view name, auto, auto) { links.emplace_back(name); });
    return links;
  };
  services_.applications = [this](auto answer) {
    return platform_.applications().list(std::move(answer));
  };
  services_.installedApp = [this](const AppEntry& entry, int points, double scale) {
    return apps_.app(entry, points, scale);
  };
  services_.observeInstalledApps = [this](auto changed) {
    return apps_.observe(std::move(changed));
  };
  services_.applicationIcon = [this](const std::string& icon, int points, int scale, auto answer) {
    return platform_.applications().icon(icon, points, scale, std::move(answer));
  };
  services_.pickColour = [this](auto answer) {
    return platform_.colourSampler().pick(std::move(answer));
  };
  services_.choosePaths = choosePaths;
}

} // namespace tavrin
