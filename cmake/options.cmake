# vernoxa_options: how all code of ours is compiled.
add_library(vernoxa_options INTERFACE)
target_compile_options(vernoxa_options INTERFACE
  -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Werror
  # The same commit gives the same bytes, wherever its folder lies.
  "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees std::optional<std::string> uninitialized where it is not; sanitizers and clang-tidy see the real ones.
  target_compile_options(vernoxa_options INTERFACE -Wno-maybe-uninitialized)
endif()
if(WIN32)
  target_compile_definitions(vernoxa_options INTERFACE
    WIN32_LEAN_AND_MEAN NOMINMAX
    WINVER=0x0601 _WIN32_WINNT=0x0601)  # Windows 7 and later, see sdkddkver.h
endif()
