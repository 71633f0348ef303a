# The desktop's portal keeps the user's choices of shortcuts under this file's name.
include("${templates}/InstallTemplate.cmake")
set(TAVRIN_PROGRAM "${CMAKE_INSTALL_PREFIX}/${program_folder}/tavrin")
install_template(dev.quellby.Tavrin.desktop.in
  "${data_folder}/applications/dev.quellby.Tavrin.desktop")
