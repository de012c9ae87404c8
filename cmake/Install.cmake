# What is installed, by component: plugin for the television's image, development for who builds against the boundary. The
# desktop platform's programs bring their own component.

# Folders of our own: the plugin is loaded by its path and the helper programs are started by the desktop, so neither belongs
# where the computer looks for libraries and commands.
set(STORAGEMEDIA_PLUGIN_DIR ${CMAKE_INSTALL_LIBDIR}/storagemedia)
set(STORAGEMEDIA_HELPER_DIR ${CMAKE_INSTALL_LIBEXECDIR}/storagemedia)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/storagemedia)
set(guide ${CMAKE_INSTALL_DATADIR}/doc/storagemedia-plugin-dev)

install(TARGETS storagemediaplugin LIBRARY DESTINATION ${STORAGEMEDIA_PLUGIN_DIR} COMPONENT plugin)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/storagemedia-plugin COMPONENT plugin RENAME copyright)

install(DIRECTORY platform DESTINATION ${headers} COMPONENT development FILES_MATCHING PATTERN "*.h")
install(FILES plugin/StorageMediaPlugin.h DESTINATION ${headers}/plugin COMPONENT development)
install(FILES docs/integrating.md DESTINATION ${guide} COMPONENT development)
install(FILES LICENSE DESTINATION ${guide} COMPONENT development RENAME copyright)

# The description finds its prefix from its own place, so that an installed tree can be moved.
set(pkgconfig ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG /prefix/${pkgconfig} /prefix)
configure_file(cmake/storagemediaplugin.pc.in storagemediaplugin.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/storagemediaplugin.pc DESTINATION ${pkgconfig} COMPONENT development)
