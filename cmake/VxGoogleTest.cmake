# GoogleTest and GoogleMock as GTest::gtest, GTest::gmock and GTest::gtest_main.
# Native builds use the installed package. A cross build compiles the Debian sources with the
# cross compiler, since the installed libraries are for the build machine.
set(VX_GOOGLETEST_SOURCE_DIR /usr/src/googletest CACHE PATH
  "GoogleTest sources, compiled for cross builds")

if(CMAKE_CROSSCOMPILING)
  if(NOT EXISTS ${VX_GOOGLETEST_SOURCE_DIR}/CMakeLists.txt)
    message(FATAL_ERROR "No GoogleTest sources in ${VX_GOOGLETEST_SOURCE_DIR}: "
      "install the googletest package (scripts/bootstrap) or set VX_GOOGLETEST_SOURCE_DIR")
  endif()
  set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(${VX_GOOGLETEST_SOURCE_DIR} ${CMAKE_BINARY_DIR}/_deps/googletest
    EXCLUDE_FROM_ALL SYSTEM)
  foreach(lib gtest gtest_main gmock gmock_main)
    if(NOT TARGET GTest::${lib})
      add_library(GTest::${lib} ALIAS ${lib})
    endif()
  endforeach()
else()
  find_package(GTest REQUIRED)
endif()
