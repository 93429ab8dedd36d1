# What the Debian package installs, and the package itself: cpack -G DEB in the build folder.

# The manual page, compressed as Debian keeps them.
add_custom_command(
  OUTPUT ${CMAKE_BINARY_DIR}/dnc.1.gz
  COMMAND gzip -9n -c ${PROJECT_SOURCE_DIR}/docs/dnc.1 > ${CMAKE_BINARY_DIR}/dnc.1.gz
  DEPENDS ${PROJECT_SOURCE_DIR}/docs/dnc.1
  VERBATIM)
add_custom_target(manpage ALL DEPENDS ${CMAKE_BINARY_DIR}/dnc.1.gz)

install(TARGETS dnc RUNTIME DESTINATION bin)
# The virtual control, for trying the program without a machine.
install(PROGRAMS $<TARGET_FILE:vcontrol> DESTINATION bin RENAME dnc-vcontrol)
install(FILES packaging/dnc.desktop DESTINATION share/applications)
install(FILES packaging/dnc.svg DESTINATION share/icons/hicolor/scalable/apps)
install(FILES packaging/dnc-48.png DESTINATION share/icons/hicolor/48x48/apps RENAME dnc.png)
install(FILES packaging/dnc-128.png DESTINATION share/icons/hicolor/128x128/apps RENAME dnc.png)
# Every schema of the tool database, whatever its engine: read when installing, not when
# configuring, so that a file added later is not left out.
install(DIRECTORY sql/ DESTINATION share/dnc FILES_MATCHING PATTERN "*.sql")
install(FILES ${CMAKE_BINARY_DIR}/dnc.1.gz DESTINATION share/man/man1)
install(FILES README.md DESTINATION share/doc/dnc)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME dnc)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "DNC project")
set(CPACK_PACKAGE_CONTACT "DNC project <dnc@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "moves NC part programs between a PC and a machine tool's control over RS-232")
set(CPACK_PACKAGE_DESCRIPTION
  "A one-window DNC program: it sends NC part programs to the numerical control of a machine\
 tool, receives them and saves them, lists the programs on the control, changes and deletes\
 them, for controls of type 303, 504 and XonXoff. It can count the tools used by the programs\
 sent in an SQLite database. Texts in English, French and German. The package also holds\
 dnc-vcontrol, a virtual control for trying the program without a machine.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded as plugins, so not found among the linked libraries: the window's platform and the
# SQLite driver of the tool database.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libqt6sql6-sqlite")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "sqlite3")
include(CPack)
