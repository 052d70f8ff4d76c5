# Cross build for 64-bit Windows with Debian's mingw-w64, for example:
#   cmake --preset windows            (or -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake)
# The -posix compiler variants use the winpthreads thread model, the only one with std::thread and
# std::mutex. Everything links statically, so an .exe or .dll needs no runtime DLL beside it.
# CTest runs the test executables under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(VX_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${VX_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VX_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${VX_MINGW_TRIPLET}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${VX_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)

find_program(VX_WINE wine)
if(VX_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${VX_WINE})
endif()
