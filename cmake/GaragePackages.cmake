# The Debian package; scripts/package builds it from the source archive.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ruvalo-garage)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Garage module maintainers <maintainers@example.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_DESCRIPTION "\
A plug-in library with a page for the karts that are available for runs, their
maintenance schedule and the service journal, and a settings page.
This package holds the plug-in, the interface header and CMake package for
host applications, a command-line tool that lists what is due (garagectl), a
demo host with sample data (garage-host), a plug-in that finds faults of a
host (hostcheck) and the guides.")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Dependencies that are not linked: the driver and the texts of Qt are loaded by name, Russian needs a Cyrillic font.
set(translations qttranslations5-l10n)
set(qt_headers qtbase5-dev)
if(GARAGE_QT EQUAL 6)
    set(translations qt6-translations-l10n)
    set(qt_headers qt6-base-dev)
endif()
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "libqt${GARAGE_QT}sql${GARAGE_QT}-sqlite, ${translations}, fonts-dejavu-core | fonts-noto-core | fonts-liberation2 | fonts-liberation")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cmake, ${qt_headers}")
include(CPack)
