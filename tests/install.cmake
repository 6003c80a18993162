# The install tree: executables and manual pages.
set(install_check ${CMAKE_CURRENT_BINARY_DIR}/install-check)
add_test(NAME install_tree
  COMMAND sh -c "rm -rf '${install_check}' && '${CMAKE_COMMAND}' --install '${CMAKE_BINARY_DIR}' --prefix '${install_check}' >/dev/null && test -x '${install_check}/${CMAKE_INSTALL_BINDIR}/quilp' && test -x '${install_check}/${CMAKE_INSTALL_BINDIR}/quilp-ixc' && test -s '${install_check}/${CMAKE_INSTALL_MANDIR}/man1/quilp.1' && test -s '${install_check}/${CMAKE_INSTALL_MANDIR}/man1/quilp-ixc.1'")

# The Debian package (not from a sanitizer build, whose executables need the
# sanitizer's runtime).
if(NOT QUILP_SANITIZE)
  add_test(NAME debian_package COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/check_package.sh ${CMAKE_BINARY_DIR})
  set_tests_properties(debian_package PROPERTIES RESOURCE_LOCK install_tree)
  set_tests_properties(install_tree PROPERTIES RESOURCE_LOCK install_tree)
endif()
