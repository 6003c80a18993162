# libFuzzer targets, in the clang build configured with -DQUILP_FUZZ=ON
# (which also instruments the libraries). Corpora live beside the targets.
if(QUILP_FUZZ)
  add_executable(bix_fuzz fuzz/bix_fuzz.cpp)
  target_link_libraries(bix_fuzz PRIVATE quilp_project)
  target_link_options(bix_fuzz PRIVATE -fsanitize=fuzzer)
endif()
if(QUILP_FUZZ)
  add_executable(ixc_fuzz fuzz/ixc_fuzz.cpp)
  target_link_libraries(ixc_fuzz PRIVATE quilp_dravik)
  target_link_options(ixc_fuzz PRIVATE -fsanitize=fuzzer)
endif()
