#include "TavrinPlatform/Linux/Applications/LinuxApplicationLibrary.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/NameOrder.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/Linux/Base/PortalRequest.h"
#include "TavrinPlatform/Linux/Base/ToolkitSettings.h"
#include "TavrinPlatform/POSIX/LivingToken.h"

#include <QFileSystemWatcher>
#include <QString>
#include <algorithm>
#include <filesystem>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// An installation touches many files.
constexpr double settlingTime = 0.5;
constexpr double portalLimit = 2;
constexpr const char* defaultTheme = "Adwaita";
constexpr const char* interfaceGroup = "org.gnome.desktop.interface";
constexpr const char* themeKey = "icon-theme";
constexpr const char* themeInXSettings = "Net/IconThemeName";

ApplicationInfo infoOf(const FoundEntry& found) {
  const DesktopEntry& entry = found.entry;
  ApplicationInfo info{.id = found.id,
                       .path = found.file.string(),
                       .name = entry.name,
                       .genericName = entry.genericName,
                       .comment = entry.comment,
                       .keywords = entry.keywords,
                       .icon = entry.icon,
                       .actions = {}};
  for (const auto& action : entry.actions)
    info.actions.push_back({action.id, action.name});
  return info;
}

std::vector<ApplicationInfo> listed(const DesktopEntries& entries, const std::string& desktops) {
  std::vector<ApplicationInfo> infos;
  for (const auto& found : entries.all())
    if (found.entry.isShownIn(desktops) && hasProgram(found.entry))
      infos.push_back(infoOf(found));
  const NameOrder order;
  std::ranges::stable_sort(infos, [&](const ApplicationInfo& a, const ApplicationInfo& b) {
    return order(a.name, b.name);
  });
  return infos;
}

std::optional<ApplicationInfo> located(const DesktopEntries& entries, const AppEntry& app) {
  auto found = entries.application(app.path);
  if (!found && app.bundleIdentifier)
    found = entries.application(*app.bundleIdentifier);
  // The file may have moved with its package; its name has not.
  if (!found && app.path.starts_with('/'))
    found = entries.application(fs::path(app.path).filename().string());
  if (!found)
    found = entries.applicationCalled(app.path);
  return found ? std::optional(infoOf(*found)) : std::nullopt;
}

IconLoader::Places iconPlaces(const FileManager& files) {
  IconLoader::Places places;
  places.icons.push_back(files.homeFolder() / ".icons");
  for (const auto& folder : dataFolders(files)) {
    places.icons.push_back(folder / "icons");
    places.loose.push_back(folder / "pixmaps");
  }
  try {
    places.cache = files.cachesFolder() / "tavrin" / "icons";
  } catch (const FileError&) {
    places.cache = fs::temp_directory_path() / "tavrin-icons";
  }
  return places;
}

/// The text in the variants of a portal's answer.
std::string portalText(sd_bus_message* message) {
  const auto value = readVariant(message);
  const auto* text = value ? std::get_if<std::string>(&*value) : nullptr;
  return text == nullptr ? std::string() : *text;
}

} // namespace

LinuxApplicationLibrary::LinuxApplicationLibrary(const FileManager& files, RunLoop& runLoop,
                                                 Bus* session, ModuleFolder modules)
    : files_(files), runLoop_(runLoop), session_(session), launcher_(files, runLoop, session),
      icons_(std::make_shared<IconLoader>(iconPlaces(files), std::move(modules))),
      queue_(runLoop.makeSerialQueue()) {}

LinuxApplicationLibrary::~LinuxApplicationLibrary() = default;

template <class Value>
TokenPtr LinuxApplicationLibrary::ask(std::function<Value()> work,
                                      std::function<void(Value)> answer) {
  auto token = std::make_unique<LivingToken>();
  queue_->run([&runLoop = runLoop_, work = std::move(work), answer = std::move(answer),
               asker = token->life()] {
    if (asker.expired())
      return;
    postAnswer(runLoop, asker, answer, work());
  });
  return token;
}

TokenPtr LinuxApplicationLibrary::list(std::function<void(std::vector<ApplicationInfo>)> answer) {
  return ask<std::vector<ApplicationInfo>>(
      [entries = DesktopEntries::ofUser(files_),
       desktops = files_.environment("XDG_CURRENT_DESKTOP").value_or("")] {
        return listed(entries, desktops);
      },
      std::move(answer));
}

TokenPtr LinuxApplicationLibrary::find(
    std::vector<AppEntry> entries,
    std::function<void(std::vector<std::optional<ApplicationInfo>>)> answer) {
  return ask<std::vector<std::optional<ApplicationInfo>>>(
      [known = DesktopEntries::ofUser(files_), wanted = std::move(entries)] {
        std::vector<std::optional<ApplicationInfo>> infos;
        for (const auto& app : wanted)
          infos.push_back(located(known, app));
        return infos;
      },
      std::move(answer));
}

TokenPtr LinuxApplicationLibrary::icon(const std::string& icon, int points, int scale,
                                       std::function<void(QImage)> answer) {
  auto token = std::make_unique<LivingToken>();
  const auto load = [this, icon, points, scale, answer = std::move(answer), asker = token->life()] {
    queue_->run(
        [icons = icons_, &runLoop = runLoop_, icon, points, scale, theme = theme_, answer, asker] {
          if (asker.expired())
            return;
          postAnswer(runLoop, asker, answer, icons->load(icon, points, scale, theme));
        });
  };
  watchTheme();
  if (isThemeKnown_)
    load();
  else
    waiting_.push_back(load);
  return token;
}

TokenPtr LinuxApplicationLibrary::launch(const std::string& id, const std::string& action,
                                         std::function<void(const std::string& trouble)> answer) {
  return launcher_.launch(id, action, std::move(answer));
}

TokenPtr LinuxApplicationLibrary::observe(std::function<void()> handler) {
  watchFolders();
  watchTheme();
  return changes_.add(std::move(handler));
}

void LinuxApplicationLibrary::watchFolders() {
  if (!watcher_) {
    watcher_ = std::make_unique<QFileSystemWatcher>();
    QObject::connect(watcher_.get(), &QFileSystemWatcher::directoryChanged, [this] { changed(); });
  }
  const QStringList watched = watcher_->directories();
  for (const auto& folder : dataFolders(files_)) {
    std::error_code ignored;
    const fs::path entries = folder / "applications";
    // Until there is one, its parent tells when it comes.
    const fs::path wanted = fs::is_directory(entries, ignored) ? entries : folder;
    const QString path = QString::fromStdString(wanted.string());
    if (fs::is_directory(wanted, ignored) && !watched.contains(path))
      watcher_->addPath(path);
  }
}

void LinuxApplicationLibrary::changed() {
  settling_ = runLoop_.after(settlingTime, [this] {
    watchFolders();
    changes_.call();
  });
}

void LinuxApplicationLibrary::watchTheme() {
  if (themeWatch_)
    return;
  xsettings_ = std::make_unique<DesktopXSettings>();
  xsettings_->onChange = [this] { setTheme(portalTheme_); };
  if (session_ == nullptr || !session_->isOpen()) {
    themeWatch_ = std::make_unique<Token>();
    setTheme({});
    return;
  }
  themeWatch_ = session_->match(portalSettingChanged, [this](sd_bus_message* message) {
    const std::string group = textArgument(message);
    if (const std::string key = textArgument(message); group == interfaceGroup && key == themeKey)
      setTheme(portalText(message));
  });
  if (xsettings_->text(themeInXSettings))
    setTheme({});
  askTheme();
}

void LinuxApplicationLibrary::askTheme() {
  BusMessage question = session_->method(portalSettings, "Read");
  session_->call(
      question.append("ss", interfaceGroup, themeKey),
      [this, weak = alive_.watch()](sd_bus_message* reply, const std::string&) {
        if (!weak.expired())
          setTheme(reply != nullptr ? portalText(reply) : std::string());
      },
      portalLimit);
}

void LinuxApplicationLibrary::setTheme(const std::string& portalTheme) {
  const std::string before = theme_;
  portalTheme_ = portalTheme;
  // Outside of GNOME the portal often tells GNOME's default.
  theme_ = xsettings_->text(themeInXSettings).value_or(portalTheme_);
  if (theme_.empty())
    theme_ = iconThemeInSettings(files_).value_or(defaultTheme);
  queue_->run([icons = icons_] { icons->forget(); });
  for (const auto& load : std::exchange(waiting_, {}))
    load();
  if (std::exchange(isThemeKnown_, true) && theme_ != before)
    changes_.call();
}

} // namespace tavrin
