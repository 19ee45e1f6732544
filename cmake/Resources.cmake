# The `velto` command, the resources and the files that a desktop wants, in the build tree and installed.
# A program finds its resources at ../share/velto from its own folder in both places.

include(GNUInstallDirs)

file(MAKE_DIRECTORY "${VELTO_OUTPUT_DIR}/share")
file(CREATE_LINK "${CMAKE_SOURCE_DIR}/resources" "${VELTO_OUTPUT_DIR}/share/velto" SYMBOLIC)

# A copy and not a link: the command looks for its programs in the folder that it really stands in.
add_custom_command(
  OUTPUT "${VELTO_OUTPUT_DIR}/bin/velto"
  COMMAND install -D -m 755 "${CMAKE_SOURCE_DIR}/resources/velto" "${VELTO_OUTPUT_DIR}/bin/velto"
  DEPENDS "${CMAKE_SOURCE_DIR}/resources/velto"
  VERBATIM)
add_custom_target(velto_command ALL DEPENDS "${VELTO_OUTPUT_DIR}/bin/velto")

install(PROGRAMS resources/velto TYPE BIN)
install(DIRECTORY resources/ DESTINATION "${CMAKE_INSTALL_DATADIR}/velto"
        PATTERN "velto" EXCLUDE
        PATTERN "velto.desktop" EXCLUDE)
install(FILES resources/velto.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES resources/icons/velto.svg DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
install(FILES resources/icons/velto-128.png RENAME velto.png
        DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/128x128/apps")
install(FILES docs/velto.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
