# One test executable per layer: every *_test.cpp of the folder, linked with GoogleTest/GoogleMock.
# Platform twins follow the sources: *_posix_test.cpp only on POSIX, *_win32_test.cpp only on
# Windows. Each executable is one CTest entry; under a cross build CTest runs it through the
# emulator (Wine).
function(vx_test_executable name dir)
  file(GLOB sources CONFIGURE_DEPENDS ${dir}/*_test.cpp)
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix_test\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_win32_test\\.cpp$")
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${ARGN} GTest::gmock GTest::gtest_main)
  vx_warnings(${name})
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
endfunction()
