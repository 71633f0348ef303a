# A room, that is a folder of sources, is compiled as one unit: what its files include is read once
# for all of them. TAVRIN_ROOMS=OFF compiles each file by itself.
option(TAVRIN_ROOMS "Compile each folder of sources as one unit" ON)

# tavrin_rooms(target [ALONE file...] [UNIT bytes]): `ALONE` are files that cannot share a unit, by
# their names. Where most of a unit is what all rooms include, rooms follow one another in units of
# about that many `bytes` of their own.
#
# The units name their files by paths in the tree, where CMake's own have whole paths: so the same
# sources in another folder are the same units, for a compiler cache and for who builds a package
# twice.
function(tavrin_rooms target)
  if(NOT TAVRIN_ROOMS)
    return()
  endif()
  cmake_parse_arguments(arguments "" "UNIT" "ALONE" ${ARGN})
  get_target_property(sources ${target} SOURCES)
  set(left)
  set(rooms)
  set(folders)
  set(bytes 0)
  foreach(source ${sources})
    cmake_path(GET source FILENAME name)
    cmake_path(GET source EXTENSION LAST_ONLY extension)
    if(NOT extension STREQUAL ".cpp" OR name IN_LIST arguments_ALONE)
      list(APPEND left ${source})
      continue()
    endif()
    cmake_path(ABSOLUTE_PATH source)
    cmake_path(RELATIVE_PATH source BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
    cmake_path(GET source PARENT_PATH folder)
    string(MAKE_C_IDENTIFIER "${folder}" own)
    if(NOT own IN_LIST folders)
      list(APPEND folders ${own})
      if(NOT arguments_UNIT OR bytes GREATER_EQUAL arguments_UNIT OR NOT rooms)
        set(room ${own})
        set(bytes 0)
      endif()
      set(room_of_${own} ${room})
    endif()
    file(SIZE "${CMAKE_SOURCE_DIR}/${source}" size)
    math(EXPR bytes "${bytes} + ${size}")
    list(APPEND rooms ${room_of_${own}})
    list(APPEND files_${room_of_${own}} ${source})
  endforeach()
  list(REMOVE_DUPLICATES rooms)
  foreach(room ${rooms})
    set(unit)
    foreach(source ${files_${room}})
      string(APPEND unit "#include \"${source}\"\n")
    endforeach()
    set(file "${CMAKE_CURRENT_BINARY_DIR}/rooms/${target}/${room}.cpp")
    file(CONFIGURE OUTPUT "${file}" CONTENT "${unit}" @ONLY)
    list(APPEND left "${file}")
  endforeach()
  set_target_properties(${target} PROPERTIES SOURCES "${left}")
endfunction()

# What nearly every unit includes, read once for all targets that are compiled alike: the language's
# headers; for WINDOWS' units the toolkit's too, for TESTS those of the test library, and for
# WINDOW_TESTS all of them. A compiler cache then sees the units of each build folder as others: who
# keeps one across folders turns this off.
option(TAVRIN_PRECOMPILED "Precompile common headers" OFF)
if(TAVRIN_PRECOMPILED AND CCACHE)
  # Both are what the cache asks for to keep what was made with such a header.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()

# tavrin_precompiled(target... [WINDOWS target...] [TESTS target...] [WINDOW_TESTS target...]); after
# tavrin_small(), whose options count.
function(tavrin_precompiled)
  if(NOT TAVRIN_PRECOMPILED)
    return()
  endif()
  cmake_parse_arguments(arguments "" "" "WINDOWS;TESTS;WINDOW_TESTS" ${ARGN})
  set(language <algorithm> <array> <chrono> <cmath> <filesystem> <functional> <map> <memory>
    <optional> <set> <string> <string_view> <variant> <vector> <fmt/format.h>)
  set(toolkit <QApplication> <QBoxLayout> <QImage> <QLabel> <QPainter> <QPainterPath> <QPushButton>
    <QTimer> <QWidget>)
  set(tests <gmock/gmock.h> <gtest/gtest.h>)
  tavrin_share_precompiled(language "${language}" "" ${arguments_UNPARSED_ARGUMENTS})
  tavrin_share_precompiled(windows "${language};${toolkit}" Qt6::Widgets ${arguments_WINDOWS})
  tavrin_share_precompiled(tests "${language};${tests}" GTest::gmock ${arguments_TESTS})
  tavrin_share_precompiled(window_tests "${language};${toolkit};${tests}" "Qt6::Widgets;GTest::gmock"
    ${arguments_WINDOW_TESTS})
endfunction()

# tavrin_share_precompiled(sort "header..." "library..." target...): a header for each way of compiling,
# made without the definitions that only some of its targets have.
function(tavrin_share_precompiled sort headers libraries)
  foreach(target ${ARGN})
    get_target_property(small ${target} TAVRIN_SMALL)
    set(owner "tavrin-headers-${sort}")
    if(small)
      string(APPEND owner "-small")
    endif()
    if(NOT TARGET ${owner})
      set(unit "${CMAKE_CURRENT_BINARY_DIR}/${owner}.cpp")
      file(CONFIGURE OUTPUT "${unit}" CONTENT "")
      add_library(${owner} STATIC EXCLUDE_FROM_ALL "${unit}")
      if(small)
        tavrin_small(${owner})
      endif()
      target_link_libraries(${owner} PRIVATE ${TAVRIN_FMT} ${libraries})
      target_precompile_headers(${owner} PRIVATE ${headers})
    endif()
    target_precompile_headers(${target} REUSE_FROM ${owner})
    # Programs as libraries, which the toolkit asks of its users anyway. Of what the compiler finds in
    # the language's own headers it no longer knows that they are those.
    target_compile_options(${target} PRIVATE -fPIC
      $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow -Wno-array-bounds>)
  endforeach()
endfunction()
