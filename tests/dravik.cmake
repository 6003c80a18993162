# The module layer: signals, expressions, equation table, data declarations,
# modules.
quilp_add_test(dravik_test
  SOURCES exceptions_test.cpp signal_test.cpp expression_test.cpp equationtable_test.cpp
          data_test.cpp module_test.cpp
  LIBS quilp_dravik)
