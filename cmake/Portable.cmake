# Building with another standard library than the system's: what exchanges types of the standard
# library with the program has to be built with it as well.
set(TAVRIN_FMT fmt::fmt-header-only)
if(TAVRIN_TESTS)
  find_path(GOOGLETEST_SOURCE googletest/CMakeLists.txt PATHS /usr/src/googletest REQUIRED
    NO_DEFAULT_PATH)
  set(INSTALL_GTEST OFF)
  add_subdirectory(${GOOGLETEST_SOURCE} googletest EXCLUDE_FROM_ALL SYSTEM)
  foreach(target gtest gmock)
    target_compile_options(${target} PRIVATE -w)
  endforeach()
endif()
