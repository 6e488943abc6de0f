# The Debian package, made by `cpack -G DEB` (scripts/package).

set(CPACK_PACKAGE_NAME pallwick)
set(CPACK_PACKAGE_CONTACT "Pallwick maintainers <maintainers@pallwick.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "cover parts of the screen with overlays")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/DebianDocumentation.cmake)

set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Put an overlay over a chat, a name or an account number, and share or record
the screen: the overlay stays above the windows of other programs, full-screen
ones included, on every workspace.
Overlays are rectangles or circles with a colour, an opacity and a glass
effect of their own; they can follow the window of another application, and
the whole list can be kept as a preset.
.
Blur is not redaction: for secrets keep the opacity at 100 %.")

include(CPack)
