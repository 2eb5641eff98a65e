# The Debian package of pdeprint and its plug-ins. Included before the
# project's own GNUInstallDirs so that plug-ins go to the multiarch library
# folder; Qt's package files have already set the plain "lib" by then.
if(CMAKE_LIBRARY_ARCHITECTURE AND (NOT DEFINED CMAKE_INSTALL_LIBDIR OR CMAKE_INSTALL_LIBDIR STREQUAL "lib"))
  set(CMAKE_INSTALL_LIBDIR "lib/${CMAKE_LIBRARY_ARCHITECTURE}" CACHE PATH "Object code libraries" FORCE)
endif()

set(CPACK_GENERATOR "DEB")
set(CPACK_PACKAGE_NAME "pdeprint")
set(CPACK_PACKAGE_VENDOR "pdeprint developers")
set(CPACK_PACKAGE_CONTACT "pdeprint developers <pdeprint@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Print dialog with billing-code panel plug-ins")
# CPack puts the summary first; this is the extended description under it.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "pdeprint prints files to CUPS queues through a print dialog that carries
the panels of its plug-ins, or drives the same panels without a window.
.
The Billing Code panel bills each job to a main code and a sub code, sent
with the job as job attributes, and can keep the codes for the next job.")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "utils")
# Library dependencies (libqt6*, libcups2, libssl3, libstdc++) come from the
# binaries themselves.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "cups-client, qt6-translations-l10n") # Qt's own texts in the user's language
set(CPACK_STRIP_FILES ON)
# The autostart entry is the administrator's to edit: dpkg keeps their changes.
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/../packaging/conffiles")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)

# Debian wants the changelog and the man page compressed, without a time
# stamp in the gzip header; and a copyright file beside the changelog.
function(pde_install_gzipped source destination)
  get_filename_component(name "${source}" NAME)
  set(output "${CMAKE_CURRENT_BINARY_DIR}/gz/${name}.gz")
  add_custom_command(OUTPUT "${output}"
    COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_CURRENT_BINARY_DIR}/gz"
    COMMAND sh -c "gzip -9n -c \"$0\" > \"$1\"" "${source}" "${output}"
    DEPENDS "${source}" VERBATIM)
  add_custom_target(gz_${name} ALL DEPENDS "${output}")
  install(FILES "${output}" DESTINATION "${destination}")
endfunction()
