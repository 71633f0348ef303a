# Before anything is installed: half a program is not. Nothing is built here, since that would be done
# by whoever installs, who is often root. Expects `needed`, files of the build folder `build`.
foreach(file ${needed})
  if(NOT EXISTS "${file}")
    message(FATAL_ERROR "\"${file}\" is not built yet. Nothing was installed. "
                        "Build all of it first: cmake --build \"${build}\"")
  endif()
endforeach()
