# What the Debian package installs, and the package itself: cpack -G DEB in the build folder.

# Manual pages and the changelog, compressed as Debian keeps them (gzip -9n: no name, no time,
# so that two builds of the same text give the same bytes).
set(dnc_manpages dnc.1 dncctl.1 dnc-vcontrol.1 dnc-station.8 dnc-web.8)
set(dnc_gzipped "")
foreach(page ${dnc_manpages})
  add_custom_command(
    OUTPUT ${CMAKE_BINARY_DIR}/${page}.gz
    COMMAND gzip -9n -c ${PROJECT_SOURCE_DIR}/docs/${page} > ${CMAKE_BINARY_DIR}/${page}.gz
    DEPENDS ${PROJECT_SOURCE_DIR}/docs/${page}
    VERBATIM)
  list(APPEND dnc_gzipped ${CMAKE_BINARY_DIR}/${page}.gz)
endforeach()
add_custom_command(
  OUTPUT ${CMAKE_BINARY_DIR}/changelog.Debian.gz
  COMMAND gzip -9n -c ${PROJECT_SOURCE_DIR}/packaging/changelog.Debian
          > ${CMAKE_BINARY_DIR}/changelog.Debian.gz
  DEPENDS ${PROJECT_SOURCE_DIR}/packaging/changelog.Debian
  VERBATIM)
add_custom_target(manpage ALL DEPENDS ${dnc_gzipped} ${CMAKE_BINARY_DIR}/changelog.Debian.gz)

install(TARGETS dnc dncctl dnc-station dnc-web RUNTIME DESTINATION bin)
# The virtual control, for trying the program without a machine.
install(PROGRAMS $<TARGET_FILE:vcontrol> DESTINATION bin RENAME dnc-vcontrol)
# install(TARGETS) strips only what it installs itself, and keeps .comment and .note: strip
# all three as Debian's own packages are stripped.
install(CODE "set(dnc_strip \"${CMAKE_STRIP}\")")
install(CODE [[
  if(CMAKE_INSTALL_DO_STRIP)
    foreach(program dnc dncctl dnc-station dnc-web dnc-vcontrol)
      execute_process(
        COMMAND ${dnc_strip} --remove-section=.comment --remove-section=.note --strip-unneeded
                $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/bin/${program}
        COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
  endif()
]])
install(FILES packaging/dnc.desktop DESTINATION share/applications)
install(FILES packaging/dnc.svg DESTINATION share/icons/hicolor/scalable/apps)
install(FILES packaging/dnc-48.png DESTINATION share/icons/hicolor/48x48/apps RENAME dnc.png)
install(FILES packaging/dnc-128.png DESTINATION share/icons/hicolor/128x128/apps RENAME dnc.png)
# Every schema of the tool database, whatever its engine: read when installing, not when
# configuring, so that a file added later is not left out.
install(DIRECTORY sql/ DESTINATION share/dnc FILES_MATCHING PATTERN "*.sql")
list(FILTER dnc_gzipped EXCLUDE REGEX "\\.8\\.gz$")
install(FILES ${dnc_gzipped} DESTINATION share/man/man1)
install(FILES ${CMAKE_BINARY_DIR}/dnc-station.8.gz ${CMAKE_BINARY_DIR}/dnc-web.8.gz
  DESTINATION share/man/man8)
# The station as a service: one instance a machine, run as the user dnc of group dialout.
install(FILES packaging/systemd/dnc-station@.service DESTINATION lib/systemd/system)
# The pages for the shop's browsers, as the same user.
install(FILES packaging/systemd/dnc-web.service DESTINATION lib/systemd/system)
install(FILES packaging/systemd/dnc.sysusers DESTINATION lib/sysusers.d RENAME dnc.conf)
install(FILES packaging/dnc-station.ini.example DESTINATION share/doc/dnc/examples
  RENAME dnc-station.ini)
install(FILES README.md packaging/copyright ${CMAKE_BINARY_DIR}/changelog.Debian.gz
  DESTINATION share/doc/dnc)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME dnc)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
# The Debian revision: with it the package is not a native one, and its changelog is
# changelog.Debian. Its top entry must name ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}.
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_PACKAGE_VENDOR "DNC project")
set(CPACK_PACKAGE_CONTACT "DNC project <dnc@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "move NC part programs between a PC and a machine's CNC over RS-232")
# Lines of at most 79 characters, an empty line between paragraphs.
file(READ ${PROJECT_SOURCE_DIR}/packaging/description CPACK_PACKAGE_DESCRIPTION)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded as plugins, so not found among the linked libraries: the window's platform and the
# SQLite driver of the tool database. The PostgreSQL driver is needed only for a tool database
# on a server (-d postgresql://...).
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libqt6sql6-sqlite")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libqt6sql6-psql")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "sqlite3, postgresql-client")
# Makes the station's user when the package is installed.
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/postinst)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
include(CPack)
