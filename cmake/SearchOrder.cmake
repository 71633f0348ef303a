# The loader looks for each symbol in one library after the other, as they stand in the link. Most
# come from a few: with those in front a slot executes a fourteenth fewer instructions until its
# tile is shown.
function(tavrin_search_order target)
  if(APPLE OR TAVRIN_SANITIZE)
    return() # a sanitizer has to be the first itself
  endif()
  list(TRANSFORM ARGN REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE files)
  list(JOIN files " " files)
  target_link_options(${target} PRIVATE
    "SHELL:-Wl,--push-state,--no-as-needed -l:libc.so.6 -lstdc++ ${files} -Wl,--pop-state")
endfunction()
