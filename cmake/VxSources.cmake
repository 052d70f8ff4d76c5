# Collects the sources of one folder, keeping only the platform twin that fits the target:
# name_posix.cpp on POSIX, name_win32.cpp on Windows.
function(vx_platform_sources out dir)
  file(GLOB found CONFIGURE_DEPENDS ${dir}/*.cpp)
  if(WIN32)
    list(FILTER found EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER found EXCLUDE REGEX "_win32\\.cpp$")
  endif()
  set(${out} ${found} PARENT_SCOPE)
endfunction()
