# The editor library without a window: the view's reader, its mouse handling
# and writers, the main window's arithmetic, the black box form's rules.
quilp_add_test(editor_tests
  SOURCES visu_net_test.cpp editor_view_test.cpp editor_window_test.cpp editor_load_test.cpp
  LIBS quilp_editor quilp_test_support)

# The declaration monitors' lists and how the view applies their results.
quilp_add_test(monitors_tests
  SOURCES monitors_test.cpp
  LIBS quilp_editor quilp_test_support)

# Each library's warning stream.
quilp_add_test(warn_tests
  SOURCES warn_test.cpp
  LIBS quilp_editor quilp_runs quilp_test_support)
