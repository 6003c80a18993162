# The inspector quilp-ixc as a whole process.
quilp_add_test(ixc_listing_tests
  SOURCES ixc_listing_test.cpp
  LIBS quilp_test_support)
target_compile_definitions(ixc_listing_tests PRIVATE QUILP_IXC_BIN="$<TARGET_FILE:quilp-ixc>")
add_dependencies(ixc_listing_tests quilp-ixc)
