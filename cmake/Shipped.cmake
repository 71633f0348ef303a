# What is handed out is hardened, holds nothing that no program of it reaches, and is the same bytes
# from any folder. For the `run` preset, from which the packages come.
option(TAVRIN_SHIPPED "Build as for a package" OFF)
if(TAVRIN_SHIPPED)
  add_compile_options(-ffile-prefix-map=${CMAKE_BINARY_DIR}=build
                      -ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -fstack-protector-strong
                      -ffunction-sections -fdata-sections)
  add_compile_definitions(_FORTIFY_SOURCE=2)
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    add_link_options(-Wl,--gc-sections -Wl,-z,relro -Wl,-z,now)
  endif()
endif()
