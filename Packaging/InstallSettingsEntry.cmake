# The entry in the menus and what the bus starts. The desktop's portal keeps the user's choices of
# shortcuts under the entry's name.
include("${templates}/InstallTemplate.cmake")
set(TAVRIN_SETTINGS_PROGRAM "${CMAKE_INSTALL_PREFIX}/${program_folder}/tavrin-settings")
install_template(dev.quellby.Tavrin.desktop.in
  "${data_folder}/applications/dev.quellby.Tavrin.desktop")
install_template(settings.service.in "${data_folder}/dbus-1/services/dev.quellby.Tavrin.service")
