# The Debian package of pdeprint and its plug-ins. Included before the
# project's own GNUInstallDirs so that plug-ins go to the multiarch library
# folder; Qt's package files have already set the plain "lib" by then.
if(CMAKE_LIBRARY_ARCHITECTURE AND (NOT DEFINED CMAKE_INSTALL_LIBDIR OR CMAKE_INSTALL_LIBDIR STREQUAL "lib"))
  set(CMAKE_INSTALL_LIBDIR "lib/${CMAKE_LIBRARY_ARCHITECTURE}" CACHE PATH "Object code libraries" FORCE)
endif()

set(CPACK_GENERATOR "DEB")
set(CPACK_PACKAGE_NAME "pdeprint")
set(CPACK_PACKAGE_VENDOR "pdeprint developers")
set(CPACK_PACKAGE_CONTACT "pdeprint developers <pdeprint@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Print dialog with billing-code panel plug-ins")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "utils")
# Library dependencies (libqt6*, libcups2, libssl3, libstdc++) come from the
# binaries themselves.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "cups-client")
set(CPACK_STRIP_FILES ON)
include(CPack)
