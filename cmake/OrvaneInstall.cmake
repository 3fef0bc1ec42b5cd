# What is installed, and the Debian package made from it.
include(GNUInstallDirs)

# A tree that builds the libraries alone has no program to install.
if(TARGET orvaneftp)
  install(TARGETS orvaneftp RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
install(FILES resources/orvaneftp.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES resources/orvaneftp.metainfo.xml DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo"
        RENAME com.tessalysoft.orvaneftpjp.metainfo.xml)
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
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libqt6svg6, ca-certificates")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk, qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "FTP client with a local and a remote pane
Moves files and folders between this computer and FTP servers, also over TLS,
keeps a list of sites and a history. Its user interface is Japanese.")
include(CPack)
