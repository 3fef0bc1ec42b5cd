# What is installed, and the Debian package made from it.
include(GNUInstallDirs)

# A tree that builds the libraries alone has no program to install.
if(TARGET orvaneftp)
  install(TARGETS orvaneftp RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
# The desktop starts and calls the program by its application id: the entry, the bus name and the window's class agree.
set(application_id com.tessalysoft.orvaneftpjp)
install(FILES resources/${application_id}.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES resources/${application_id}.metainfo.xml DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
# The prefix is chosen when the program is installed.
install(CODE "set(bin_folder \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
configure_file(\"${PROJECT_SOURCE_DIR}/resources/${application_id}.service.in\" \"${PROJECT_BINARY_DIR}/${application_id}.service\" @ONLY)")
install(FILES "${PROJECT_BINARY_DIR}/${application_id}.service" DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services")
install(FILES resources/icons/orvaneftp.svg DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvaneftp)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Orvane FTP developers <orvaneftp@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The window system's plugin is loaded at run time, so no library dependency names it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, qt6-translations-l10n, libqt6svg6, ca-certificates")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk, qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "FTP client with a local and a remote pane
Moves files and folders between this computer and FTP servers, also over TLS,
keeps a list of sites and a history. Its user interface is Japanese.")
include(CPack)
