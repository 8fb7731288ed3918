# The Debian packages kestrova and kestrova-cli: `cpack --config build/release/CPackConfig.cmake` makes them. Neither
# needs the other. Their dependencies are read from the programs.
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL kestrova-cli)
if(TARGET kestrova)
  list(APPEND CPACK_COMPONENTS_ALL kestrova)
endif()

set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian/finish.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_SOURCE kestrova)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Kestrova maintainers <maintainers@kestrova.example>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${KESTROVA_SITE})
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own, as its first line
set(what_it_does "\
It copies the photos and videos scattered over cards, phones and old disks
into one folder tree, sorted by the date they were taken. It skips
duplicates, can rotate photos upright and downscale them, and never touches
an original.")
set(CPACK_DEBIAN_KESTROVA_PACKAGE_NAME kestrova)
set(CPACK_DEBIAN_KESTROVA_PACKAGE_RECOMMENDS "hicolor-icon-theme, qt6-translations-l10n, qt6-wayland")
set(CPACK_DEBIAN_KESTROVA_PACKAGE_SUGGESTS kestrova-cli)
set(CPACK_DEBIAN_KESTROVA_DESCRIPTION "photos and videos in one folder tree sorted by date
${what_it_does}

This package provides the program with a window.")
set(CPACK_DEBIAN_KESTROVA-CLI_PACKAGE_NAME kestrova-cli)
set(CPACK_DEBIAN_KESTROVA-CLI_PACKAGE_SUGGESTS kestrova)
set(CPACK_DEBIAN_KESTROVA-CLI_DESCRIPTION "photos and videos in one folder tree sorted by date (command line)
${what_it_does}

This package provides the command line, which needs no display.")

include(CPack)
