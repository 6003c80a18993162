# The module layer: fatal reports, signals, expressions, equation table.
quilp_add_test(dravik_test
  SOURCES exceptions_test.cpp signal_test.cpp expression_test.cpp equationtable_test.cpp
  LIBS quilp_dravik)
