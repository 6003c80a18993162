# The quilp executable as a whole process.
quilp_add_test(cli_tests
  SOURCES cli_test.cpp
  LIBS quilp_project quilp_test_support)
target_compile_definitions(cli_tests PRIVATE QUILP_BIN="$<TARGET_FILE:quilp>")
add_dependencies(cli_tests quilp)
