# The `velto` command, the resources and the files that a desktop wants, in the build tree and installed.
# A program finds its resources at ../share/velto from its own folder in both places.

include(GNUInstallDirs)

# In the build tree they are links, so that a change needs no build; the history page is put together from its parts.
set(share "${VELTO_OUTPUT_DIR}/share/velto")
if(IS_SYMLINK "${share}")
  file(REMOVE "${share}")
endif()
file(MAKE_DIRECTORY "${share}")
file(GLOB resources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/*")
foreach(resource IN LISTS resources)
  get_filename_component(name "${resource}" NAME)
  file(CREATE_LINK "${resource}" "${share}/${name}" SYMBOLIC)
endforeach()

file(GLOB page_parts CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/history-page/*")
add_custom_command(
  OUTPUT "${share}/HistoryPage.html"
  COMMAND "${CMAKE_SOURCE_DIR}/resources/history-page/assemble" > "${share}/HistoryPage.html"
  DEPENDS ${page_parts}
  VERBATIM)

# A copy and not a link: the command looks for its programs in the folder that it really stands in.
add_custom_command(
  OUTPUT "${VELTO_OUTPUT_DIR}/bin/velto"
  COMMAND install -D -m 755 "${CMAKE_SOURCE_DIR}/resources/velto" "${VELTO_OUTPUT_DIR}/bin/velto"
  DEPENDS "${CMAKE_SOURCE_DIR}/resources/velto"
  VERBATIM)
add_custom_target(velto_resources ALL DEPENDS "${VELTO_OUTPUT_DIR}/bin/velto" "${share}/HistoryPage.html")

install(PROGRAMS resources/velto TYPE BIN)
install(DIRECTORY resources/ DESTINATION "${CMAKE_INSTALL_DATADIR}/velto"
        PATTERN "velto" EXCLUDE
        PATTERN "velto.desktop" EXCLUDE
        PATTERN "history-page" EXCLUDE)
install(FILES "${share}/HistoryPage.html" DESTINATION "${CMAKE_INSTALL_DATADIR}/velto")
install(FILES resources/velto.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES resources/icons/velto.svg DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
install(FILES resources/icons/velto-128.png RENAME velto.png
        DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/128x128/apps")
install(FILES docs/velto.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
