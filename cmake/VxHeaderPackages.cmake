# Header-only libraries the tools use from Debian packages (CLI11, nlohmann-json). A native build
# uses the package's own target. A cross build looks for the package under its own root first,
# then among the host's packages, but never puts a package's include folder on the cross
# compiler's path (the host's holds C library headers that would shadow the target's): the
# library's own header folder is copied into the build tree and only that copy is used.

# Sets out to what a target links for the package: its imported target, the staged header
# folder, or "" when the package is not there.
function(vx_find_header_package out package imported subdir)
  set(${out} "" PARENT_SCOPE)
  find_package(${package} CONFIG QUIET)
  if(NOT CMAKE_CROSSCOMPILING)
    if(TARGET ${imported})
      set(${out} ${imported} PARENT_SCOPE)
    endif()
    return()
  endif()
  if(NOT TARGET ${imported})
    find_package(${package} CONFIG QUIET NO_CMAKE_FIND_ROOT_PATH)
  endif()
  if(NOT TARGET ${imported})
    return()
  endif()
  # Staged even when found under the cross root: a package directory cached by an earlier run
  # may be the host's.
  get_target_property(dirs ${imported} INTERFACE_INCLUDE_DIRECTORIES)
  foreach(dir IN LISTS dirs)
    if(EXISTS ${dir}/${subdir})
      set(staged ${CMAKE_BINARY_DIR}/headers/${package})
      file(COPY ${dir}/${subdir} DESTINATION ${staged})
      set(${out} ${staged} PARENT_SCOPE)
      return()
    endif()
  endforeach()
endfunction()

# Makes what vx_find_header_package found part of target's public interface.
function(vx_link_header_package target headers)
  if(TARGET ${headers})
    target_link_libraries(${target} PUBLIC ${headers})
  else()
    target_include_directories(${target} SYSTEM PUBLIC ${headers})
  endif()
endfunction()

# The same for a package a tool cannot do without: stops the configuration with one message
# naming the tool and the Debian package that scripts/bootstrap installs.
function(vx_require_header_package out tool package imported subdir debian)
  vx_find_header_package(found ${package} ${imported} ${subdir})
  if(NOT found)
    message(FATAL_ERROR "${tool} needs ${package} (scripts/bootstrap installs ${debian})")
  endif()
  set(${out} ${found} PARENT_SCOPE)
endfunction()
