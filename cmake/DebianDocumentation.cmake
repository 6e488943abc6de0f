# Run by cpack over the tree that becomes the package: its documentation in the form that Debian's policy asks for.
set(share ${CPACK_TEMPORARY_DIRECTORY}/usr/share)

file(COPY ${CMAKE_CURRENT_LIST_DIR}/../data/debian/changelog DESTINATION ${share}/doc/pallwick NO_SOURCE_PERMISSIONS)
# Without the time and the name, so that the same text gives the same bytes.
execute_process(
    COMMAND gzip -9n ${share}/doc/pallwick/changelog ${share}/man/man1/pallwick.1
    COMMAND_ERROR_IS_FATAL ANY)
