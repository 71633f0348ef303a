# The first step of an installation; the others follow in the order of the folders.
include(GNUInstallDirs)
set(folders ${CMAKE_INSTALL_BINDIR} lib/tavrin/modules lib/systemd/system
  ${CMAKE_INSTALL_MANDIR}/man1 ${CMAKE_INSTALL_MANDIR}/man8)
foreach(folder applications bash-completion/completions dbus-1/services dbus-1/system-services
        dbus-1/system.d fish/vendor_completions.d icons/hicolor/scalable/apps metainfo
        polkit-1/actions zsh/site-functions)
  list(APPEND folders ${CMAKE_INSTALL_DATADIR}/${folder})
endforeach()
file(GLOB catalogues RELATIVE ${CMAKE_SOURCE_DIR}/po ${CMAKE_SOURCE_DIR}/po/*.po)
foreach(catalogue ${catalogues})
  cmake_path(GET catalogue STEM LAST_ONLY language)
  list(APPEND folders ${CMAKE_INSTALL_DATADIR}/locale/${language}/LC_MESSAGES)
endforeach()
# What is installed, and is no part of what starting from the build folder takes.
foreach(target tavrin tavrin-settings TavrinSlot tavrin-fan-helper)
  list(APPEND needed "$<$<TARGET_EXISTS:${target}>:$<TARGET_FILE:${target}>>")
endforeach()
foreach(shell bash zsh fish)
  list(APPEND needed "$<$<TARGET_EXISTS:tavrin>:${CMAKE_BINARY_DIR}/Packaging/tavrin.${shell}>")
endforeach()
install(CODE "set(needed \"${needed}\")
  set(build \"${CMAKE_BINARY_DIR}\")
  include(\"${CMAKE_SOURCE_DIR}/Packaging/InstallWhole.cmake\")" ALL_COMPONENTS)
install(CODE "set(folders \"${folders}\")
  set(folder_list \"${CMAKE_BINARY_DIR}/install_folders.txt\")
  include(\"${CMAKE_SOURCE_DIR}/Packaging/InstallFolders.cmake\")" ALL_COMPONENTS)
