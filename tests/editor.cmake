# The editor library: the project's view.
quilp_add_test(editor_tests
  SOURCES visu_net_test.cpp
  LIBS quilp_editor quilp_test_support)

# The declaration monitors' lists and how the view applies their results.
quilp_add_test(monitors_tests
  SOURCES monitors_test.cpp
  LIBS quilp_editor quilp_test_support)
