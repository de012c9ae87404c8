# Debian packages, one for each installed component: cpack in a build folder whose prefix is /usr.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME storagemedia)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The storage-media plugin authors <storagemedia@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Storage-media plugin of the television firmware")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENTS_ALL plugin development)

set(CPACK_DEBIAN_PLUGIN_PACKAGE_NAME storagemedia-plugin)
set(CPACK_DEBIAN_PLUGIN_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_PLUGIN_DESCRIPTION
    "Serves the multimedia browser for USB storage and media servers.
A television's plugin host loads it; the host and its middleware provide
what the plugin calls.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME storagemedia-plugin-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS libjsoncpp-dev)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Headers for hosts that load the plugin, and for platforms that serve it.")

if(STORAGEMEDIA_DESKTOP)
    list(APPEND CPACK_COMPONENTS_ALL desktop)
    set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME storagemedia-desktop)
    set(CPACK_DEBIAN_DESKTOP_PACKAGE_SECTION video)
    set(CPACK_COMPONENT_DESKTOP_DEPENDS plugin)
    set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
    set(CPACK_COMPONENT_DESKTOP_DESCRIPTION
        "Runs the storage-media plugin on an ordinary computer, on its folders and sticks.")
endif()

include(CPack)
