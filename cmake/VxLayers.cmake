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
