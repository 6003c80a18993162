# What a project takes from its compiled modules, and the check that a
# project still matches them.
quilp_add_test(runs_tests
  SOURCES ixc_import_test.cpp project_check_test.cpp
  LIBS quilp_runs quilp_test_support)
