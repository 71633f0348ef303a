#include "TavrinPlatform/Linux/Command/LinuxAutostart.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <string_view>

namespace tavrin {

namespace {

namespace fs = std::filesystem;

constexpr double managerLimit = 1;

/// A word of a unit's command line, after systemd.service(5).
std::string unitWord(const std::string& text) {
  std::string word = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '\\')
      word += '\\';
    if (letter == '%' || letter == '$')
      word += letter;
    word += letter;
  }
  return word + "\"";
}

/// A word of a desktop entry's "Exec" (freedesktop.org): the value's own escapes, and those of the
/// quotes within.
std::string entryWord(const std::string& text) {
  std::string word = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '`' || letter == '$')
      word += "\\\\";
    else if (letter == '\\')
      word += "\\\\\\";
    else if (letter == '%')
      word += '%';
    word += letter;
  }
  return word + "\"";
}

/// The widgets are the unit's processes, so they end with the session, and are started anew with
/// the next one.
std::string unitText(const fs::path& program) {
  return "[Unit]\n"
         "Description=Tavrin's widgets\n"
         "PartOf=graphical-session.target\n"
         "After=graphical-session.target\n"
         "\n"
         "[Service]\n"
         "Type=oneshot\n"
         "RemainAfterExit=yes\n"
         "ExecStart=" +
         unitWord(program.string()) +
         " start\n"
         "\n"
         "[Install]\n"
         "WantedBy=graphical-session.target\n";
}

std::string entryText(const fs::path& program) {
  return "[Desktop Entry]\n"
         "Type=Application\n"
         "Name=Tavrin\n"
         "Comment=Live widgets\n"
         "Exec=" +
         entryWord(program.string()) +
         " start\n"
         "Terminal=false\n"
         "NoDisplay=true\n";
}

void write(const fs::path& file, const std::string& text) {
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  if (error)
    throw FileError(failure(
        translated("make the folder \"{folder}\"", {{"folder", file.parent_path().string()}}),
        error.message()));
  writeFileAtomically(file, text);
}

void removeFile(const fs::path& file) {
  std::error_code error;
  fs::remove(file, error);
  if (error)
    throw FileError(
        failure(translated("remove \"{file}\"", {{"file", file.string()}}), error.message()));
}

} // namespace

LinuxAutostart::LinuxAutostart(fs::path configuration, fs::path program, std::function<Bus*()> bus)
    : configuration_(std::move(configuration)), program_(std::move(program)), bus_(std::move(bus)) {
}

Autostart::Status LinuxAutostart::status() {
  std::error_code error;
  if (fs::exists(fs::symlink_status(wish(), error)))
    return {true, true,
            translated("The widgets start with the session, by the user service tavrin.service.")};
  if (fs::exists(entry(), error))
    return {true, true,
            translated("The widgets start with the session, by an entry in \"{folder}\".",
                       {{"folder", entry().parent_path().string()}})};
  return {false, true, translated("The widgets do not start with the session.")};
}

Autostart::Status LinuxAutostart::set(bool isOn) {
  const bool isManaged = isSessionManaged();
  if (isOn && isManaged) {
    write(unit(), unitText(program_));
    std::error_code error;
    fs::create_directories(wish().parent_path(), error);
    fs::remove(wish(), error);
    fs::create_symlink(unit(), wish(), error);
    if (error)
      throw FileError(failure(translated("make the link \"{path}\"", {{"path", wish().string()}}),
                              error.message()));
  } else {
    removeFile(wish());
    removeFile(unit());
  }
  if (isOn && !isManaged)
    write(entry(), entryText(program_));
  else
    removeFile(entry());
  if (isManaged)
    reloadManager();
  return status();
}

bool LinuxAutostart::isSessionManaged() {
  Bus* bus = bus_();
  if (bus == nullptr || !bus->isOpen())
    return false;
  BusMessage question = bus->method(serviceManager, "ListUnitsByNames");
  const auto answer = bus->ask(question.append("as", 1, "graphical-session.target"), managerLimit);
  const char* state = "";
  if (answer && sd_bus_message_enter_container(answer.get(), 'a', "(ssssssouso)") > 0 &&
      sd_bus_message_enter_container(answer.get(), 'r', "ssssssouso") > 0)
    sd_bus_message_read(answer.get(), "ssss", nullptr, nullptr, nullptr, &state);
  return std::string_view(state) == "active";
}

void LinuxAutostart::reloadManager() {
  Bus* bus = bus_();
  bus->ask(bus->method(serviceManager, "Reload"), managerLimit);
}

} // namespace tavrin
