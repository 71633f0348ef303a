# A room, that is a folder of sources, is compiled as one unit: what its files include is read once
# for all of them. TAVRIN_ROOMS=OFF compiles each file by itself.
option(TAVRIN_ROOMS "Compile each folder of sources as one unit" ON)

# tavrin_rooms(target [ALONE file...]): `ALONE` are files that cannot share a unit, by their names.
#
# The units name their files by paths in the tree, where CMake's own have whole paths: so the same
# sources in another folder are the same units, for a compiler cache and for who builds a package
# twice.
function(tavrin_rooms target)
  if(NOT TAVRIN_ROOMS)
    return()
  endif()
  cmake_parse_arguments(arguments "" "" "ALONE" ${ARGN})
  get_target_property(sources ${target} SOURCES)
  set(left)
  set(rooms)
  foreach(source ${sources})
    cmake_path(GET source FILENAME name)
    cmake_path(GET source EXTENSION LAST_ONLY extension)
    if(NOT extension STREQUAL ".cpp" OR name IN_LIST arguments_ALONE)
      list(APPEND left ${source})
      continue()
    endif()
    cmake_path(ABSOLUTE_PATH source)
    cmake_path(REPLACE_EXTENSION source LAST_ONLY ".h" OUTPUT_VARIABLE header)
    if(EXISTS ${header})
      list(APPEND left ${header}) # for the meta-object compiler, which looks beside sources
    endif()
    cmake_path(RELATIVE_PATH source BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
    cmake_path(GET source PARENT_PATH folder)
    string(MAKE_C_IDENTIFIER "${folder}" room)
    list(APPEND rooms ${room})
    list(APPEND files_${room} ${source})
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

# What nearly every unit includes, read once for all of a library: the language's headers, and WINDOWS'
# units the toolkit's too. It takes a fifth off a build from nothing and is no help to a compiler
# cache, which sees each precompiled header as another one: so it is for who builds once.
option(TAVRIN_PRECOMPILED "Precompile common headers" OFF)

# tavrin_precompiled(target... [WINDOWS target...])
function(tavrin_precompiled)
  if(NOT TAVRIN_PRECOMPILED)
    return()
  endif()
  cmake_parse_arguments(arguments "" "" "WINDOWS" ${ARGN})
  foreach(target ${arguments_UNPARSED_ARGUMENTS} ${arguments_WINDOWS})
    target_precompile_headers(${target} PRIVATE
      <algorithm> <array> <chrono> <cmath> <filesystem> <functional> <map> <memory> <optional> <set>
      <string> <string_view> <variant> <vector> <fmt/format.h>)
  endforeach()
  foreach(target ${arguments_WINDOWS})
    target_precompile_headers(${target} PRIVATE
      <QApplication> <QBoxLayout> <QImage> <QLabel> <QPainter> <QPainterPath> <QPushButton> <QTimer>
      <QWidget>)
  endforeach()
endfunction()
