# Vernoxa64.dll, which needs nothing but Windows' own libraries: the compiler's run-time library is linked in.
add_library(Vernoxa64 MODULE ${CMAKE_SOURCE_DIR}/src/plugin/vernoxa.def ${CMAKE_SOURCE_DIR}/src/plugin/vernoxa.rc
  # the ring's objects, since nothing but the .def file refers to the entry
  $<TARGET_OBJECTS:vernoxa_windows>)
set(patch ${PROJECT_VERSION_PATCH})
if(NOT patch)
  set(patch 0)
endif()
set_source_files_properties(${CMAKE_SOURCE_DIR}/src/plugin/vernoxa.rc PROPERTIES COMPILE_DEFINITIONS
  "VERNOXA_MAJOR=${PROJECT_VERSION_MAJOR};VERNOXA_MINOR=${PROJECT_VERSION_MINOR};VERNOXA_PATCH=${patch}")
target_link_libraries(Vernoxa64 PRIVATE vernoxa_windows)
target_include_directories(Vernoxa64 PRIVATE ${CMAKE_SOURCE_DIR}/src)
target_link_options(Vernoxa64 PRIVATE
  -static -static-libgcc -static-libstdc++
  -s -Wl,--no-insert-timestamp -Wl,--exclude-all-symbols)
set_target_properties(Vernoxa64 PROPERTIES
  PREFIX "" LINKER_LANGUAGE CXX
  LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
