#include "TavrinWidgetsUI/Collection/CollectionModel.h"

#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <filesystem>

namespace tavrin {
namespace {

std::vector<AppEntry> entriesOf(const std::vector<CollectionApp>& apps) {
  std::vector<AppEntry> entries;
  for (const auto& app : apps)
    entries.push_back(app.entry);
  return entries;
}

bool names(const CollectionApp& app, const ApplicationInfo& info) {
  return app.info ? app.info->id == info.id
                  : app.entry.path == info.path || app.entry.bundleIdentifier == info.id;
}

/// Every word of the search begins a word of the name, of what it is, or of the keywords, or
/// stands somewhere in the name.
bool fits(const ApplicationInfo& info, const QStringList& words) {
  QString hay = QString::fromStdString(info.name + ' ' + info.genericName);
  for (const auto& keyword : info.keywords)
    hay += ' ' + QString::fromStdString(keyword);
  hay = ' ' + hay.toCaseFolded();
  const QString name = QString::fromStdString(info.name).toCaseFolded();
  return std::ranges::all_of(
      words, [&](const QString& word) { return name.contains(word) || hay.contains(' ' + word); });
}

} // namespace

QString CollectionApp::name() const {
  if (info)
    return QString::fromStdString(info->name);
  if (entry.displayName && !entry.displayName->empty())
    return QString::fromStdString(*entry.displayName);
  const std::string& path = entry.path.empty() ? entry.bundleIdentifier.value_or("") : entry.path;
  const auto stem = std::filesystem::path(path).filename().string();
  return QString::fromStdString(stem.ends_with(".desktop") ? stem.substr(0, stem.size() - 8)
                                                           : stem);
}

CollectionModel::CollectionModel(ApplicationLibrary& library, DockWidget widget, Save save)
    : library_(library), widget_(std::move(widget)), save_(std::move(save)), icons_(library),
      observation_(library.observe([this] {
        icons_.refresh();
        locate();
        if (isChoosing_)
          readList();
      })) {
  icons_.onLoad = [this] { changed(); };
  for (const auto& entry : settings().apps)
    apps_.push_back({entry, std::nullopt});
  locate();
}

void CollectionModel::setWidget(const DockWidget& widget) {
  widget_ = widget;
  const auto entries = settings().apps;
  if (entries == entriesOf(apps_))
    return;
  std::vector<CollectionApp> apps;
  for (const auto& entry : entries) {
    const auto known = std::ranges::find(apps_, entry, &CollectionApp::entry);
    apps.push_back(known != apps_.end() ? *known : CollectionApp{entry, std::nullopt});
  }
  // Until the new ones have been looked for, none is called gone.
  const bool isNew = std::ranges::any_of(apps, [](const auto& app) { return !app.info; });
  hasRead_ = hasRead_ && !isNew;
  apps_ = std::move(apps);
  locate();
}

void CollectionModel::locate() {
  locating_ =
      library_.find(entriesOf(apps_), [this](std::vector<std::optional<ApplicationInfo>> infos) {
        const TokenPtr ended = std::move(locating_);
        auto apps = apps_;
        for (std::size_t i = 0; i < apps.size() && i < infos.size(); ++i)
          apps[i].info = std::move(infos[i]);
        apps_ = std::move(apps);
        hasRead_ = true;
        changed();
      });
}

void CollectionModel::open(std::size_t index, const std::string& action) {
  if (index >= apps_.size())
    return;
  const CollectionApp app = apps_[index];
  if (!app.info) {
    trouble_ = hasRead_ ? translated("Failed to open {name} because it is not installed",
                                     {{"name", app.name()}})
                        : std::string();
    changed();
    return;
  }
  trouble_.clear();
  opening_ = app.name();
  launching_ = library_.launch(app.info->id, action, [this](const std::string& trouble) {
    const TokenPtr ended = std::move(launching_);
    opening_.clear();
    trouble_ = trouble;
    changed();
    if (trouble.empty() && onOpened)
      onOpened();
  });
  changed();
}

void CollectionModel::change(std::vector<AppEntry> apps) {
  CollectionSettings settings = this->settings();
  settings.apps = std::move(apps);
  trouble_.clear();
  save_(settings);
}

void CollectionModel::remove(std::size_t index) {
  auto entries = settings().apps;
  if (index >= entries.size())
    return;
  entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(index));
  change(std::move(entries));
}

void CollectionModel::move(std::size_t index, int by) {
  auto entries = settings().apps;
  const auto target = static_cast<std::ptrdiff_t>(index) + by;
  if (index >= entries.size() || target < 0 ||
      target >= static_cast<std::ptrdiff_t>(entries.size()))
    return;
  std::swap(entries[index], entries[static_cast<std::size_t>(target)]);
  change(std::move(entries));
}

void CollectionModel::beginChoosing() {
  isChoosing_ = true;
  searchText_.clear();
  readList();
  changed();
}

void CollectionModel::endChoosing() {
  if (!std::exchange(isChoosing_, false))
    return;
  listing_.reset();
  hasList_ = false;
  found_.clear();
  all_.clear();
  changed();
}

void CollectionModel::readList() {
  listing_ = library_.list([this](std::vector<ApplicationInfo> all) {
    const TokenPtr ended = std::move(listing_);
    all_ = std::move(all);
    hasList_ = true;
    search();
    changed();
  });
}

void CollectionModel::setSearchText(const QString& text) {
  searchText_ = text;
  search();
}

void CollectionModel::search() {
  const QStringList words = searchText_.toCaseFolded().split(' ', Qt::SkipEmptyParts);
  found_.clear();
  for (const auto& info : all_)
    if (fits(info, words))
      found_.push_back(&info);
}

bool CollectionModel::contains(const ApplicationInfo& info) const {
  return std::ranges::any_of(apps_, [&](const auto& app) { return names(app, info); });
}

void CollectionModel::toggle(const ApplicationInfo& info) {
  std::vector<AppEntry> entries;
  for (const auto& app : apps_)
    if (!names(app, info))
      entries.push_back(app.entry);
  if (entries.size() == apps_.size())
    entries.push_back({info.path, info.id, info.name, std::nullopt});
  change(std::move(entries));
}

void CollectionModel::changed() const {
  if (onChange)
    onChange();
}

} // namespace tavrin
