# Every project file and compiled module in the data and example folders,
# read and written against the golden files beside them in tests/data.
quilp_add_test(golden_tests
  SOURCES golden_test.cpp
  LIBS quilp_project quilp_dravik quilp_test_support)
