# Puts the program of the slots into the first installed bundle and links the others to it.
# Expects `program` and `folder`, the place of the bundles under the installation prefix.
set(root "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${folder}")
set(first "${root}/Tavrin Slot 1.app/Contents/MacOS/TavrinSlot")
file(INSTALL DESTINATION "${CMAKE_INSTALL_PREFIX}/${folder}/Tavrin Slot 1.app/Contents/MacOS"
  TYPE EXECUTABLE FILES "${program}")
foreach(slot RANGE 2 12)
  set(programs "${root}/Tavrin Slot ${slot}.app/Contents/MacOS")
  file(MAKE_DIRECTORY "${programs}")
  execute_process(COMMAND ln -f "${first}" "${programs}/TavrinSlot" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
