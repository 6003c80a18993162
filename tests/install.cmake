# The install tree: executables and manual pages.
set(install_check ${CMAKE_CURRENT_BINARY_DIR}/install-check)
add_test(NAME install_tree
  COMMAND sh -c "rm -rf '${install_check}' && '${CMAKE_COMMAND}' --install '${CMAKE_BINARY_DIR}' --prefix '${install_check}' >/dev/null && test -x '${install_check}/${CMAKE_INSTALL_BINDIR}/quilp' && test -x '${install_check}/${CMAKE_INSTALL_BINDIR}/quilp-ixc' && test -s '${install_check}/${CMAKE_INSTALL_MANDIR}/man1/quilp.1' && test -s '${install_check}/${CMAKE_INSTALL_MANDIR}/man1/quilp-ixc.1'")
