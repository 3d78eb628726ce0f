# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

# Files for building other hosts: the interface headers, a CMake package and a pkg-config file.

include(CMakePackageConfigHelpers)
set(include_directory ${CMAKE_INSTALL_INCLUDEDIR}/loomwright)
set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Loomwright)
set(plugin_directory ${CMAKE_INSTALL_LIBDIR}/loomwright)

add_library(loomwright-interfaces INTERFACE)
target_include_directories(loomwright-interfaces INTERFACE $<INSTALL_INTERFACE:${include_directory}>)
target_link_libraries(loomwright-interfaces INTERFACE Qt5::Widgets)
# Each host compiles its own copy of the relay; AUTOMOC finds it because it is a source of the host.
target_sources(loomwright-interfaces INTERFACE
    $<INSTALL_INTERFACE:${include_directory}/plugin/statusmanager.h>)
set_target_properties(loomwright-interfaces PROPERTIES EXPORT_NAME Interfaces)
install(TARGETS loomwright-interfaces EXPORT LoomwrightTargets)
install(EXPORT LoomwrightTargets
    NAMESPACE Loomwright::
    DESTINATION ${package_directory})

configure_package_config_file(
    ${CMAKE_SOURCE_DIR}/cmake/LoomwrightConfig.cmake.in
    ${CMAKE_BINARY_DIR}/LoomwrightConfig.cmake
    INSTALL_DESTINATION ${package_directory}
    PATH_VARS plugin_directory)
write_basic_package_version_file(
    ${CMAKE_BINARY_DIR}/LoomwrightConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_BINARY_DIR}/LoomwrightConfig.cmake
    ${CMAKE_BINARY_DIR}/LoomwrightConfigVersion.cmake
    DESTINATION ${package_directory})

# Relative, so that the file holds for every prefix it is installed with.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE prefix_from_pkgconfig)
configure_file(${CMAKE_SOURCE_DIR}/cmake/loomwright.pc.in ${CMAKE_BINARY_DIR}/loomwright.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/loomwright.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
