# The module layer: fatal reports.
quilp_add_test(dravik_test
  SOURCES exceptions_test.cpp
  LIBS quilp_dravik)
