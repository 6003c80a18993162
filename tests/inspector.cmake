# The inspector quilp-ixc as a whole process.
quilp_add_test(inspector_tests
  SOURCES inspector_test.cpp
  LIBS quilp_test_support)
target_compile_definitions(inspector_tests PRIVATE QUILP_IXC_BIN="$<TARGET_FILE:quilp-ixc>")
add_dependencies(inspector_tests quilp-ixc)
