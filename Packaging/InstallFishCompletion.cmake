# Fish looks in its own prefix and in the user's home. For a program in /usr/local the place that it
# reads is the system's; `fish_completion` is the file.
set(folder "${CMAKE_INSTALL_PREFIX}/${data_folder}/fish/vendor_completions.d")
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr/local")
  set(folder "/etc/fish/completions")
endif()
file(INSTALL DESTINATION "${folder}" TYPE FILE FILES "${fish_completion}")
