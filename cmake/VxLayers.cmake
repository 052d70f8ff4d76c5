# The library targets of the layers that exist in this tree, bottom up (vx::foundation first).
# Benchmarks and fuzz harnesses link all of them, so a new layer is picked up without editing
# their CMakeLists; static libraries only contribute the objects a program uses.
function(vx_layer_targets out)
  set(targets)
  foreach(layer IN LISTS VX_LAYERS)
    if(TARGET vx::${layer})
      list(APPEND targets vx::${layer})
    endif()
  endforeach()
  set(${out} ${targets} PARENT_SCOPE)
endfunction()

# Defines the layer library vx_NAME (alias vx::NAME) from the platform-chosen sources of the
# calling folder, linking the given targets publicly.
function(vx_layer name)
  vx_platform_sources(sources ${CMAKE_CURRENT_SOURCE_DIR})
  add_library(vx_${name} STATIC ${sources})
  add_library(vx::${name} ALIAS vx_${name})
  target_include_directories(vx_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  vx_warnings(vx_${name})
  target_link_libraries(vx_${name} PUBLIC ${ARGN})
endfunction()
