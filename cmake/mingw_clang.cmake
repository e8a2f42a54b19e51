# The same with clang and its linker in the place of GCC's, which let other things pass. Headers and libraries stay those
# of mingw-w64 and of its GCC, whose folder clang does not find by itself.
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++.a
  OUTPUT_VARIABLE gcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET gcc PARENT_PATH gcc)
set(CMAKE_CXX_FLAGS_INIT "-isystem ${gcc}/include/c++ -isystem ${gcc}/include/c++/x86_64-w64-mingw32")
set(link "-fuse-ld=lld -B${gcc} -L${gcc} -pthread")
# The comparison of type_info is in libstdc++ 12 and, by C++20, in each object of a test too; GCC's linker takes one of them.
set(CMAKE_EXE_LINKER_FLAGS_INIT "${link} -Wl,--allow-multiple-definition")
set(CMAKE_SHARED_LINKER_FLAGS_INIT ${link})
set(CMAKE_MODULE_LINKER_FLAGS_INIT ${link})
