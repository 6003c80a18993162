# What a project takes from its compiled modules.
quilp_add_test(runs_tests
  SOURCES ixc_import_test.cpp
  LIBS quilp_runs quilp_test_support)
