# The compiled-module reader, its examples, and the data bindings it builds.
quilp_add_test(ixc_tests
  SOURCES ixc_reader_test.cpp bindings_test.cpp
  LIBS quilp_dravik quilp_test_support)
