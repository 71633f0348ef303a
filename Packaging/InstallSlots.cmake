# Puts the program of the slots into the first installed bundle and links the others to it; writes
# the slots' desktop and bus files. Expects `program`, `templates`, `data_folder`, `strip_program`.
include("${templates}/InstallTemplate.cmake")
set(bundles "${CMAKE_INSTALL_PREFIX}/lib/tavrin")
set(first "${bundles}/Tavrin Slot 1.app/Contents/MacOS/TavrinSlot")
# Made anew: what links to an older program, or runs it, keeps that one.
file(REMOVE "$ENV{DESTDIR}${first}")
file(INSTALL DESTINATION "${bundles}/Tavrin Slot 1.app/Contents/MacOS"
  TYPE EXECUTABLE FILES "${program}")
if(CMAKE_INSTALL_DO_STRIP)
  execute_process(COMMAND "${strip_program}" "$ENV{DESTDIR}${first}" COMMAND_ERROR_IS_FATAL ANY)
endif()
foreach(slot RANGE 2 12)
  set(folder "${bundles}/Tavrin Slot ${slot}.app/Contents/MacOS")
  file(MAKE_DIRECTORY "$ENV{DESTDIR}${folder}")
  execute_process(COMMAND ln -f "$ENV{DESTDIR}${first}" "$ENV{DESTDIR}${folder}/TavrinSlot"
    COMMAND_ERROR_IS_FATAL ANY)
  list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${folder}/TavrinSlot")
endforeach()
foreach(TAVRIN_SLOT RANGE 1 12)
  set(TAVRIN_SLOT_ID dev.quellby.Tavrin.Slot${TAVRIN_SLOT})
  set(TAVRIN_SLOT_PROGRAM "${bundles}/Tavrin Slot ${TAVRIN_SLOT}.app/Contents/MacOS/TavrinSlot")
  install_template(slot.desktop.in "${data_folder}/applications/${TAVRIN_SLOT_ID}.desktop")
  install_template(slot.service.in "${data_folder}/dbus-1/services/${TAVRIN_SLOT_ID}.service")
endforeach()
