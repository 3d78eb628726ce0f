# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

# Packages for cpack. With Qt 5, two Debian packages: loomwright contains the component "runtime",
# which is the default, and loomwright-dev contains "development". With Qt 4, a tarball with the
# plug-in for the Workbench.

set(CPACK_PACKAGE_VENDOR "Loomwright plug-in team")
set(CPACK_PACKAGE_CONTACT "Loomwright plug-in team <zorv@loomwright.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(packaging ${CMAKE_SOURCE_DIR}/packaging)

if(ZORV_QT EQUAL 4)
    install(TARGETS unsigned-zorv
        LIBRARY DESTINATION . COMPONENT workbench NAMELINK_SKIP EXCLUDE_FROM_ALL)
    configure_file(${packaging}/INSTALL.in ${CMAKE_BINARY_DIR}/INSTALL @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/INSTALL ${CMAKE_SOURCE_DIR}/LICENSE
        DESTINATION . COMPONENT workbench EXCLUDE_FROM_ALL)
    set(CPACK_GENERATOR TGZ)
    set(CPACK_PACKAGE_FILE_NAME
        ${PROJECT_NAME}-workbench-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
    set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
    set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
    set(CPACK_COMPONENTS_ALL workbench)
    include(CPack)
    return()
endif()

install(PROGRAMS
    ${CMAKE_SOURCE_DIR}/examples/make-sample.sh
    ${CMAKE_SOURCE_DIR}/examples/tamblin-stitcher
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples/minimal-host
    DESTINATION ${CMAKE_INSTALL_DOCDIR}-dev/examples
    COMPONENT development)

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME loomwright)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS libqt5svg5)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
"Loomwright maps the files of a firmware drop to the ingredients of an image,
checks them, writes the configuration of the stitcher and runs it.

This package contains the target plug-in for unsigned Zorv images and two
programs that load it: the command-line tool loomwright and the GUI
loomwright-gui. The stitcher is supplied by the vendor and is not included.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME loomwright-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "loomwright (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), qtbase5-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"Headers, CMake package and pkg-config file for writing a host that loads
target plug-ins of the Tamblin Workbench, with an example.")

# install_debian_files(COMPONENT PACKAGE): the documentation files that every Debian package needs,
# and the lintian overrides.
function(install_debian_files component package)
    set(documentation ${CMAKE_INSTALL_DATADIR}/doc/${package})
    install(FILES ${packaging}/debian/copyright
        DESTINATION ${documentation} COMPONENT ${component})
    install(FILES ${CMAKE_BINARY_DIR}/changelog.Debian.gz ${CMAKE_BINARY_DIR}/changelog.gz
        DESTINATION ${documentation} COMPONENT ${component})
    install(FILES ${packaging}/debian/${package}.lintian-overrides
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        COMPONENT ${component} RENAME ${package})
endfunction()

if(LOOMWRIGHT_PACKAGE)
    string(TIMESTAMP changelog_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
    configure_file(${packaging}/debian/changelog.in ${CMAKE_BINARY_DIR}/changelog.Debian @ONLY)
    configure_file(${CMAKE_SOURCE_DIR}/CHANGELOG.md ${CMAKE_BINARY_DIR}/changelog COPYONLY)
    foreach(file changelog.Debian changelog)
        execute_process(COMMAND gzip -9 --no-name --force --keep ${CMAKE_BINARY_DIR}/${file}
            COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
    install_debian_files(runtime loomwright)
    install_debian_files(development loomwright-dev)
endif()

include(CPack)
