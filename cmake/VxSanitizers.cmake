# Instrumentation for the whole tree.
# VX_SANITIZE: AddressSanitizer and UndefinedBehaviorSanitizer, any undefined behaviour aborts.
# VX_SANITIZE_THREAD: ThreadSanitizer, for the programs that start threads.
# VX_BUILD_FUZZ: the same sanitizers as VX_SANITIZE plus libFuzzer's coverage hooks
# (fuzzer-no-link) on every library; only the harnesses link libFuzzer itself (fuzz/CMakeLists.txt).
set(VX_SANITIZER_FLAGS -fsanitize=address,undefined -fno-omit-frame-pointer
  -fno-sanitize-recover=undefined)

if(VX_BUILD_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "VX_BUILD_FUZZ needs clang++ (libFuzzer); use the fuzz preset")
  endif()
  add_compile_options(${VX_SANITIZER_FLAGS} -fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=address,undefined)
elseif(VX_SANITIZE)
  add_compile_options(${VX_SANITIZER_FLAGS})
  add_link_options(-fsanitize=address,undefined)
elseif(VX_SANITIZE_THREAD)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
