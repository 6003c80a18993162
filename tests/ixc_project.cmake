# The inspector's project check, quilp-ixc --project, as a whole process.
quilp_add_test(ixc_project_tests
  SOURCES ixc_project_test.cpp
  LIBS quilp_test_support)
target_compile_definitions(ixc_project_tests PRIVATE QUILP_IXC_BIN="$<TARGET_FILE:quilp-ixc>")
add_dependencies(ixc_project_tests quilp-ixc)
