#include "TavrinPlatform/Linux/Desktop/LinuxWorkspace.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinPlatform/Linux/Applications/SystemMonitorEntry.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/Linux/Base/InterfaceFont.h"
#include "TavrinPlatform/Linux/Base/PortalRequest.h"
#include "TavrinPlatform/Linux/Base/ToolkitSettings.h"
#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/POSIX/Spawn.h"

#include <QStandardPaths>
#include <string_view>
#include <unicode/timezone.h>

namespace tavrin {

namespace {

const BusAddress opener{portalService, portalPath, "org.freedesktop.portal.OpenURI"};
const BusAddress power{"net.hadess.PowerProfiles", "/net/hadess/PowerProfiles",
                       "org.freedesktop.DBus.Properties"};
constexpr const char* appearanceGroup = "org.freedesktop.appearance";
constexpr const char* interfaceGroup = "org.gnome.desktop.interface";
constexpr const char* schemeKey = "color-scheme";
constexpr const char* fontKey = "font-name";
constexpr const char* animationsKey = "enable-animations";
constexpr const char* textScaleKey = "text-scaling-factor";
constexpr const char* contrastKey = "contrast";
constexpr const char* motionKey = "reduced-motion";
constexpr const char* fontInXSettings = "Gtk/FontName";
constexpr std::uint32_t preferDark = 1;
/// Of contrast and of motion: "more", and "reduce".
constexpr std::uint32_t preferIt = 1;

/// Steps into variants, however many lie round the value. The type inside.
char enterVariants(sd_bus_message* message) {
  char type = 0;
  const char* contents = nullptr;
  while (sd_bus_message_peek_type(message, &type, &contents) > 0 && type == 'v')
    if (sd_bus_message_enter_container(message, 'v', contents) < 0)
      return 0;
  return type;
}

/// The text under `key` in a dictionary of variants; no value when it is not there.
std::optional<std::string> textEntry(sd_bus_message* message, std::string_view key) {
  std::optional<std::string> found;
  if (sd_bus_message_enter_container(message, 'a', "{sv}") <= 0)
    return found;
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const bool isWanted = textArgument(message) == key;
    char type = 0;
    const char* contents = nullptr;
    sd_bus_message_peek_type(message, &type, &contents);
    if (isWanted && std::string_view(contents) == "s" &&
        sd_bus_message_enter_container(message, 'v', "s") > 0) {
      found = textArgument(message);
      sd_bus_message_exit_container(message);
    } else {
      sd_bus_message_skip(message, "v");
    }
    sd_bus_message_exit_container(message);
  }
  return found;
}

} // namespace

LinuxWorkspace::LinuxWorkspace(const FileManager& files, Bus* session, std::function<Bus*()> system,
                               Foreground foreground)
    : files_(files), session_(session), system_(std::move(system)),
      foreground_(std::move(foreground)) {}

std::optional<RunningApplication> LinuxWorkspace::frontmostApplication() const {
  if (foreground_)
    if (auto application = foreground_())
      return application;
  const xcb_window_t window = x11::activeWindow();
  if (window == XCB_NONE)
    return std::nullopt;
  const auto process = x11::numbers(window, "_NET_WM_PID", 1);
  // Two texts: the instance, then the class, each ended by a zero byte.
  const std::string classes = x11::text(window, "WM_CLASS");
  const auto end = classes.find('\0');
  if (process.empty() && classes.empty())
    return std::nullopt;
  RunningApplication application;
  application.processIdentifier = process.empty() ? 0 : static_cast<long>(process.front());
  application.bundleIdentifier = classes.substr(0, end);
  if (end != std::string::npos)
    application.name = classes.c_str() + end + 1;
  if (!application.name.empty())
    application.bundleIdentifier = application.name;
  return application;
}

void LinuxWorkspace::open(const std::string& target) {
  if (spawnDetached({"xdg-open", target}))
    return;
  if (session_ == nullptr || !session_->isOpen())
    return;
  BusMessage message = session_->method(opener, "OpenURI");
  const std::string address = target.starts_with('/') ? fileURL(target) : target;
  session_->send(message.append("ssa{sv}", "", address.c_str(), 0));
}

bool LinuxWorkspace::openActivityMonitor() {
  std::vector<std::filesystem::path> folders;
  for (const QString& folder :
       QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation))
    folders.emplace_back(folder.toStdString());
  return spawnDetached(
      systemMonitorCommand(folders, files_.environment("XDG_CURRENT_DESKTOP").value_or("")));
}

ClockWatch& LinuxWorkspace::clock() {
  if (!clockWatch_) {
    clockWatch_ = std::make_unique<ClockWatch>();
    clockWatch_->onClockChange = [this] { clockChange_.call(); };
    clockWatch_->onDayChange = [this] { day_.call(); };
  }
  return *clockWatch_;
}

TokenPtr LinuxWorkspace::observeWake(std::function<void()> handler) {
  if (Bus* bus = system(); bus != nullptr && !watches_.contains("sleep"))
    watches_["sleep"] = bus->match(
        "type='signal',sender='org.freedesktop.login1',path='/org/freedesktop/login1',"
        "interface='org.freedesktop.login1.Manager',member='PrepareForSleep'",
        [this](sd_bus_message* message) {
          int isGoingToSleep = 0;
          if (sd_bus_message_read(message, "b", &isGoingToSleep) <= 0 || isGoingToSleep != 0)
            return;
          wake_.call();
          // The clock went on while the process stood still.
          clock().recheck();
        });
  return wake_.add(std::move(handler));
}

TokenPtr LinuxWorkspace::observeDayChange(std::function<void()> handler) {
  clock();
  return day_.add(std::move(handler));
}

TokenPtr LinuxWorkspace::observeClockChange(std::function<void()> handler) {
  clock();
  watchTimeZone();
  return clockChange_.add(std::move(handler));
}

void LinuxWorkspace::watchTimeZone() {
  Bus* bus = system();
  if (bus == nullptr || watches_.contains("zone"))
    return;
  watches_["zone"] =
      bus->match("type='signal',path='/org/freedesktop/timedate1',member='PropertiesChanged',"
                 "interface='org.freedesktop.DBus.Properties',arg0='org.freedesktop.timedate1'",
                 [this](sd_bus_message*) {
                   icu::TimeZone::adoptDefault(icu::TimeZone::detectHostTimeZone());
                   clockChange_.call();
                   clock().recheck();
                 });
}

bool LinuxWorkspace::isLowPowerMode() const {
  watchPower();
  return isLowPower_;
}

TokenPtr LinuxWorkspace::observeLowPowerMode(std::function<void()> handler) {
  watchPower();
  return lowPower_.add(std::move(handler));
}

void LinuxWorkspace::watchPower() const {
  Bus* bus = system();
  if (bus == nullptr || watches_.contains("power"))
    return;
  const auto profile = [this](const std::string& name) {
    const bool isLow = name == "power-saver";
    if (std::exchange(isLowPower_, isLow) != isLow)
      lowPower_.call();
  };
  watches_["power"] =
      bus->match("type='signal',path='/net/hadess/PowerProfiles',member='PropertiesChanged',"
                 "interface='org.freedesktop.DBus.Properties',arg0='net.hadess.PowerProfiles'",
                 [profile](sd_bus_message* message) {
                   textArgument(message);
                   if (const auto name = textEntry(message, "ActiveProfile"))
                     profile(*name);
                 });
  BusMessage question = bus->method(power, "Get");
  question.append("ss", "net.hadess.PowerProfiles", "ActiveProfile");
  bus->call(question, [profile](sd_bus_message* reply, const std::string&) {
    if (reply != nullptr && enterVariants(reply) == 's')
      profile(textArgument(reply));
  });
}

bool LinuxWorkspace::prefersReducedMotion() const {
  watchSettings();
  return look_.isStill;
}

bool LinuxWorkspace::prefersDarkAppearance() const {
  if (const auto wish = files_.environment("TAVRIN_APPEARANCE"); wish == "dark" || wish == "light")
    return wish == "dark";
  watchSettings();
  return look_.isDark;
}

std::optional<std::string> LinuxWorkspace::interfaceFontFamily() const {
  watchSettings();
  return look_.fontFamily;
}

bool LinuxWorkspace::mixesWindows() const {
  return x11::connection() == nullptr || x11::hasCompositor();
}

double LinuxWorkspace::interfaceTextScale() const {
  watchSettings();
  return look_.textScale;
}

bool LinuxWorkspace::prefersHighContrast() const {
  watchSettings();
  return look_.hasHighContrast;
}

TokenPtr LinuxWorkspace::observeAppearance(std::function<void()> handler) {
  watchSettings();
  return appearance_.add(std::move(handler));
}

void LinuxWorkspace::watchSettings() const {
  if (watches_.contains("settings"))
    return;
  xsettings_ = std::make_unique<DesktopXSettings>();
  xsettings_->onChange = [this] {
    if (readSettings())
      appearance_.call();
  };
  if (session_ == nullptr || !session_->isOpen()) {
    watches_["settings"] = nullptr;
    readSettings();
    return;
  }
  if (xsettings_->text(fontInXSettings))
    readSettings();
  watches_["settings"] = session_->match(portalSettingChanged, [this](sd_bus_message* message) {
    const std::string group = textArgument(message);
    const std::string key = textArgument(message);
    if (group == appearanceGroup || group == interfaceGroup)
      setPortalValue(key, message);
  });
  // Who has no portal that tells these may be told by Plasma that its own file has changed.
  watches_["toolkit"] =
      session_->match("type='signal',path='/KGlobalSettings',member='notifyChange',"
                      "interface='org.kde.KGlobalSettings'",
                      [this](sd_bus_message*) {
                        if (readSettings())
                          appearance_.call();
                      });
  askPortal(appearanceGroup, schemeKey);
  askPortal(appearanceGroup, contrastKey);
  askPortal(appearanceGroup, motionKey);
  askPortal(interfaceGroup, animationsKey);
  askPortal(interfaceGroup, textScaleKey);
  askPortal(interfaceGroup, fontKey);
}

void LinuxWorkspace::askPortal(const char* group, const char* key) const {
  BusMessage question = session_->method(portalSettings, "Read");
  question.append("ss", group, key);
  session_->call(question, [this, name = std::string(key)](sd_bus_message* reply, auto&) {
    if (reply != nullptr)
      setPortalValue(name, reply);
    else if (readSettings())
      appearance_.call();
  });
}

LinuxWorkspace::Look LinuxWorkspace::readLook() const {
  Look look;
  look.isDark = portalDark_ ? *portalDark_ : isDarkInSettings(files_);
  look.isStill = portalReducesMotion_ || !portalHasAnimations_ ||
                 xsettings_->integer("Gtk/EnableAnimations") == 0 || isStillInSettings(files_);
  look.hasHighContrast = portalContrast_ ||
                         isHighContrast(xsettings_->text("Net/ThemeName").value_or("")) ||
                         hasHighContrastInSettings(files_);
  // Outside of GNOME the portal often tells GNOME's default font.
  std::string font = xsettings_->text(fontInXSettings).value_or(portalFont_);
  if (!fontFamilyOf(font))
    font = fontInSettings(files_);
  look.fontFamily = fontFamilyOf(font);
  look.textScale = textScaleOf(fontSizeOf(font).value_or(10));
  // Where the X settings have a resolution, the scale of texts is in it, and so in the whole
  // screen's.
  if (!xsettings_->integer("Xft/DPI"))
    look.textScale *= portalTextScale_;
  return look;
}

bool LinuxWorkspace::readSettings() const {
  Look look = readLook();
  return std::exchange(look_, look) != look;
}

void LinuxWorkspace::setPortalValue(const std::string& key, sd_bus_message* message) const {
  const char type = enterVariants(message);
  if (type == 'u') {
    std::uint32_t choice = 0;
    sd_bus_message_read_basic(message, 'u', &choice);
    if (key == schemeKey)
      portalDark_ = choice == preferDark;
    else if (key == contrastKey)
      portalContrast_ = choice == preferIt;
    else if (key == motionKey)
      portalReducesMotion_ = choice == preferIt;
  } else if (key == animationsKey && type == 'b') {
    int isEnabled = 1;
    sd_bus_message_read_basic(message, 'b', &isEnabled);
    portalHasAnimations_ = isEnabled != 0;
  } else if (key == textScaleKey && type == 'd') {
    double scale = 1;
    sd_bus_message_read_basic(message, 'd', &scale);
    portalTextScale_ = scale > 0 ? scale : 1;
  } else if (key == fontKey && type == 's') {
    portalFont_ = textArgument(message);
  }
  if (readSettings())
    appearance_.call();
}

} // namespace tavrin
