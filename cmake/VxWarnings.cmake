# Warnings for our own targets: on, and treated as errors.
function(vx_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /WX)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror
      -Wno-unused-parameter)
  endif()
endfunction()
