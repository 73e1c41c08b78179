# Where things go, and how other projects find them. Everything is found relative to where it was installed,
# so the tree may be moved.
set(CMAKE_INSTALL_DOCDIR share/doc/ruvalo-garage CACHE PATH "Documentation")
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(GARAGE_INSTALL_PLUGINDIR ${CMAKE_INSTALL_LIBDIR}/ruvalogarage/plugins)
set(GARAGE_INSTALL_HEADERDIR ${CMAKE_INSTALL_INCLUDEDIR}/ruvalogarage)
set(GARAGE_INSTALL_DATADIR ${CMAKE_INSTALL_DATADIR}/ruvalogarage)
set(GARAGE_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/RuvaloGarage)

# garage_install_package(): the module, its interface, the shared tables, the documents and the CMake package.
function(garage_install_package)
    install(TARGETS ruvalogarage LIBRARY DESTINATION ${GARAGE_INSTALL_PLUGINDIR})
    install(TARGETS trivex_interface EXPORT RuvaloGarageTargets)
    install(FILES plugin/trivexplugininterface.h DESTINATION ${GARAGE_INSTALL_HEADERDIR})
    install(FILES host/database/schema.sql DESTINATION ${GARAGE_INSTALL_DATADIR})
    install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
    install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)

    install(EXPORT RuvaloGarageTargets NAMESPACE RuvaloGarage:: DESTINATION ${GARAGE_INSTALL_CMAKEDIR})
    configure_package_config_file(cmake/RuvaloGarageConfig.cmake.in RuvaloGarageConfig.cmake
        INSTALL_DESTINATION ${GARAGE_INSTALL_CMAKEDIR}
        PATH_VARS GARAGE_INSTALL_PLUGINDIR GARAGE_INSTALL_HEADERDIR GARAGE_INSTALL_DATADIR)
    write_basic_package_version_file(RuvaloGarageConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(FILES
        ${PROJECT_BINARY_DIR}/RuvaloGarageConfig.cmake
        ${PROJECT_BINARY_DIR}/RuvaloGarageConfigVersion.cmake
        DESTINATION ${GARAGE_INSTALL_CMAKEDIR})
endfunction()

# garage_install_tool(): the command-line tool, its manual page and its completion.
function(garage_install_tool)
    install(TARGETS garagectl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES ${PROJECT_SOURCE_DIR}/docs/garagectl.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${PROJECT_SOURCE_DIR}/garagectl/completion.bash
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME garagectl)
endfunction()
