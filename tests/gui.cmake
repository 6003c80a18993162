# The real editor driven in a private X server: the test program starts its
# own Xvfb and works the windows with xdotool, reading the screen through
# ImageMagick's import. One test at a time; screenshots go to gui-shots/.
quilp_add_test(editor_gui_tests
  SOURCES editor_gui_test.cpp gui_support.cpp
  LIBS quilp_project quilp_test_support
  PROPERTIES LABELS gui RESOURCE_LOCK quilp_gui TIMEOUT 600)
target_compile_definitions(editor_gui_tests PRIVATE QUILP_BIN="$<TARGET_FILE:quilp>")
add_dependencies(editor_gui_tests quilp)
