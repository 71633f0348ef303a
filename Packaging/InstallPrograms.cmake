# Puts the program of the slots into the first installed bundle and links the others to it.
# Writes the desktop and bus files, which name the programs by the prefix given at installation.
# Expects `program`, `templates`, and under the prefix `folder` of the bundles and `data_folder`.
set(root "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${folder}")
set(first "${root}/Tavrin Slot 1.app/Contents/MacOS/TavrinSlot")
file(INSTALL DESTINATION "${CMAKE_INSTALL_PREFIX}/${folder}/Tavrin Slot 1.app/Contents/MacOS"
  TYPE EXECUTABLE FILES "${program}")
foreach(slot RANGE 2 12)
  set(programs "${root}/Tavrin Slot ${slot}.app/Contents/MacOS")
  file(MAKE_DIRECTORY "${programs}")
  execute_process(COMMAND ln -f "${first}" "${programs}/TavrinSlot" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
foreach(TAVRIN_SLOT RANGE 1 12)
  set(TAVRIN_SLOT_ID dev.quellby.Tavrin.Slot${TAVRIN_SLOT})
  set(TAVRIN_SLOT_PROGRAM
    "${CMAKE_INSTALL_PREFIX}/${folder}/Tavrin Slot ${TAVRIN_SLOT}.app/Contents/MacOS/TavrinSlot")
  set(data "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${data_folder}")
  configure_file("${templates}/slot.desktop.in"
    "${data}/applications/${TAVRIN_SLOT_ID}.desktop" @ONLY)
  configure_file("${templates}/slot.service.in"
    "${data}/dbus-1/services/${TAVRIN_SLOT_ID}.service" @ONLY)
endforeach()
