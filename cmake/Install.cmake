# What "cmake --install" puts in place: the tool, and the library with its headers, its CMake package and its
# pkg-config file. Nothing that is installed names the folder, so that a copy of it may be moved.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QRVFoundation)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS web2pdf RUNTIME)
install(TARGETS QRVFoundation PlatformFoundation EXPORT QRVFoundationTargets
    ARCHIVE
    FILE_SET HEADERS)
install(EXPORT QRVFoundationTargets NAMESPACE QRVFoundation:: DESTINATION ${package_dir})

configure_package_config_file(cmake/Package/QRVFoundationConfig.cmake.in
    ${PROJECT_BINARY_DIR}/QRVFoundationConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QRVFoundationConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/QRVFoundationConfig.cmake
    ${PROJECT_BINARY_DIR}/QRVFoundationConfigVersion.cmake
    DESTINATION ${package_dir})

file(RELATIVE_PATH prefix_from_pkgconfig
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
configure_file(cmake/Package/QRVFoundation.pc.in ${PROJECT_BINARY_DIR}/QRVFoundation.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/QRVFoundation.pc DESTINATION ${pkgconfig_dir})
