# The editor library: the project's view and what it takes from compiled modules.
quilp_add_test(editor_tests
  SOURCES visu_net_test.cpp ixc_import_test.cpp
  LIBS quilp_editor quilp_test_support)
