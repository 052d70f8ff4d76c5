# Warnings for our own targets: on, and treated as errors.
function(vx_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /WX)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror
      -Wno-unused-parameter)
  endif()
  # GCC 12 at -O3 reports impossible overlaps inside std::string concatenation (GCC bug 105329);
  # the warning stays on for every other compiler.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
endfunction()
