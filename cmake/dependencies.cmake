# What others wrote: cJSON, Tcl and GoogleTest, from the distribution's packages and sources.
set(VERNOXA_DEPS ${CMAKE_SOURCE_DIR}/.deps)

add_library(cjson STATIC ${VERNOXA_DEPS}/src/cjson/cJSON.c)
target_include_directories(cjson SYSTEM PUBLIC ${VERNOXA_DEPS}/src/cjson)
target_compile_definitions(cjson PUBLIC CJSON_HIDE_SYMBOLS)
target_compile_options(cjson PRIVATE -w "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")

# tcl: what the rings compile against. On Windows the host brings its own Tcl, reached through the stubs table; natively
# it is the distribution's library itself.
add_library(tcl INTERFACE)
if(WIN32)
  target_include_directories(tcl SYSTEM INTERFACE ${VERNOXA_DEPS}/src/tcl/generic)
  target_link_libraries(tcl INTERFACE ${VERNOXA_DEPS}/tcl-windows/lib/libtclstub86.a)
  target_compile_definitions(tcl INTERFACE USE_TCL_STUBS)
else()
  target_include_directories(tcl SYSTEM INTERFACE /usr/include/tcl8.6)
  target_link_libraries(tcl INTERFACE tcl8.6)
endif()

# GoogleTest: built from its sources for Windows, natively the distribution's own libraries.
if(VERNOXA_TESTS AND NOT WIN32)
  find_package(GTest REQUIRED)
elseif(VERNOXA_TESTS)
  set(INSTALL_GTEST OFF)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  foreach(library gtest gtest_main gmock)
    target_compile_options(${library} PRIVATE -O0)  # compiled in a fraction of the time
  endforeach()
endif()
