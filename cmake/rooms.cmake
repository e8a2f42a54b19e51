# The rooms under src/ and the rings they are built in.
#
# A file's ring is what it may know: PURE neither Windows nor Tcl, TCL tcl.h, WINDOWS everything. Each ring is one
# library whose include paths end where the ring ends, so that a file in the wrong ring does not build.
add_library(vernoxa_pure STATIC)
target_link_libraries(vernoxa_pure PRIVATE vernoxa_options PUBLIC cjson)
target_include_directories(vernoxa_pure PUBLIC ${CMAKE_SOURCE_DIR}/src)
# The standard library's headers take longer to read than most files to compile. A file includes what it uses all the
# same; the build for the thread sanitizer, which has none of these, finds where it does not.
target_precompile_headers(vernoxa_pure PRIVATE
  <algorithm> <array> <chrono> <functional> <memory> <optional> <span> <string> <string_view> <vector>)

add_library(vernoxa_tcl STATIC EXCLUDE_FROM_ALL)
target_link_libraries(vernoxa_tcl PRIVATE vernoxa_options PUBLIC vernoxa_pure tcl)

if(WIN32)
  add_library(vernoxa_windows STATIC)
  target_link_libraries(vernoxa_windows PRIVATE vernoxa_options
    PUBLIC vernoxa_tcl ws2_32 ole32 user32 gdi32 shell32 advapi32 comctl32)
endif()

# vernoxa_room(NAME [MAY_NAME room...] [PURE file...] [TCL file...] [WINDOWS file...]): the files of src/NAME by their ring,
# and the rooms that they may include headers of.
function(vernoxa_room name)
  cmake_parse_arguments(PARSE_ARGV 1 room "" "" "MAY_NAME;PURE;TCL;WINDOWS")
  if(room_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "room ${name}: no ring for ${room_UNPARSED_ARGUMENTS}")
  endif()
  list(JOIN room_MAY_NAME "," named)
  set_property(GLOBAL APPEND PROPERTY vernoxa_arrows "${name}:${named}")
  list(TRANSFORM room_PURE PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  list(TRANSFORM room_TCL PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  list(TRANSFORM room_WINDOWS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(vernoxa_pure PRIVATE ${room_PURE})
  target_sources(vernoxa_tcl PRIVATE ${room_TCL})
  if(WIN32)
    target_sources(vernoxa_windows PRIVATE ${room_WINDOWS})
  endif()
endfunction()

# From the lowest up.
foreach(room system text tcl wire link dispatch designs views bom drawing modules checks desktop plugin)
  add_subdirectory(src/${room})
endforeach()

# No build succeeds while an arrow between rooms runs back up.
get_property(arrows GLOBAL PROPERTY vernoxa_arrows)
add_custom_target(vernoxa_arrows
  COMMAND ${CMAKE_COMMAND} -D SOURCES=${CMAKE_SOURCE_DIR}/src "-DARROWS=${arrows}" -P ${CMAKE_SOURCE_DIR}/cmake/arrows.cmake
  COMMENT "checking the arrows between the rooms" VERBATIM)
add_dependencies(vernoxa_pure vernoxa_arrows)
