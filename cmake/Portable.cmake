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

# The libraries of the system that give or take types of its own standard library: their calls of
# that kind, by a way around.
find_program(SYSTEM_COMPILER g++ REQUIRED)
set(calls ${CMAKE_BINARY_DIR}/TimeZoneCalls.o)
set(source ${CMAKE_SOURCE_DIR}/Tests/Portable/TimeZoneCalls.cpp)
add_custom_command(OUTPUT ${calls} DEPENDS ${source} VERBATIM
  COMMAND ${SYSTEM_COMPILER} -std=c++20 -O1 -fPIC -c ${source} -o ${calls})
add_library(TavrinBridge STATIC Tests/Portable/TimeZones.cpp Tests/Portable/ToolkitTexts.cpp ${calls})
# By its file: the compiler takes the name for that of its own.
execute_process(COMMAND ${SYSTEM_COMPILER} -print-file-name=libstdc++.so.6
  OUTPUT_VARIABLE system_library OUTPUT_STRIP_TRAILING_WHITESPACE)
target_link_libraries(TavrinBridge PUBLIC Qt6::Core cctz ${system_library})
link_libraries($<$<NOT:$<STREQUAL:$<TARGET_PROPERTY:NAME>,TavrinBridge>>:TavrinBridge>)
# Both libraries are there at run time, and both have the classes of exceptions under the same names
# with other members: the program's own is to be found first.
add_link_options(-Wl,--no-as-needed -lc++ -lc++abi -Wl,--as-needed)
