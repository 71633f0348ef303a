# install_template(FILE DESTINATION): writes a template with the prefix given at installation, and
# enters it in the list of what was installed.
function(install_template template destination)
  set(file "${CMAKE_INSTALL_PREFIX}/${destination}")
  message(STATUS "Installing: $ENV{DESTDIR}${file}")
  configure_file("${templates}/${template}" "$ENV{DESTDIR}${file}" @ONLY)
  list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${file}")
  set(CMAKE_INSTALL_MANIFEST_FILES "${CMAKE_INSTALL_MANIFEST_FILES}" PARENT_SCOPE)
endfunction()
