# What "cmake --install" puts in place, in components that --component chooses from:
#   tool         the tool
#   tools        what is at hand beside it
#   library      the shared library
#   development  what is needed to build with the library: its headers, the archive, the CMake package, the pkg-config file
# Nothing that is installed names the folder, so that a copy of it may be moved.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Who has no use for it as a command puts it elsewhere, as in libexec.
set(WEB2PDF_TOOL_DIR ${CMAKE_INSTALL_BINDIR} CACHE STRING "Folder below the prefix that the tool is installed to")

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QRVFoundation)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(WEB2PDF_BUILD_TOOL)
    install(TARGETS web2pdf RUNTIME DESTINATION ${WEB2PDF_TOOL_DIR} COMPONENT tool)
    install(FILES Documentation/containers/seccomp.json DESTINATION ${CMAKE_INSTALL_DATADIR}/web2pdf COMPONENT tool)
    install(TARGETS webarchive web2pdf-batch RUNTIME COMPONENT tools)
    set(scaling_dir ${CMAKE_INSTALL_DATADIR}/web2pdf/scaling)
    install(PROGRAMS Documentation/scaling/parallel.sh Documentation/scaling/slurm.sh
        DESTINATION ${scaling_dir} COMPONENT tools)
    install(FILES Documentation/scaling/kubernetes.yaml Documentation/scaling/Containerfile
        DESTINATION ${scaling_dir} COMPONENT tools)
endif()

install(TARGETS QRVFoundationShared EXPORT QRVFoundation-shared
    LIBRARY COMPONENT library NAMELINK_COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS QRVFoundation EXPORT QRVFoundation-static
    ARCHIVE COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS QRVFoundationObjects FILE_SET HEADERS COMPONENT development)

# Another project takes one of the two, under the same name.
set_target_properties(QRVFoundationShared PROPERTIES EXPORT_NAME QRVFoundation)
foreach(kind static shared)
    install(EXPORT QRVFoundation-${kind} NAMESPACE QRVFoundation:: DESTINATION ${package_dir} COMPONENT development)
endforeach()

configure_package_config_file(cmake/Package/QRVFoundationConfig.cmake.in
    ${PROJECT_BINARY_DIR}/QRVFoundationConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QRVFoundationConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/QRVFoundationConfig.cmake
    ${PROJECT_BINARY_DIR}/QRVFoundationConfigVersion.cmake
    DESTINATION ${package_dir}
    COMPONENT development)

file(RELATIVE_PATH prefix_from_pkgconfig
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
configure_file(cmake/Package/QRVFoundation.pc.in ${PROJECT_BINARY_DIR}/QRVFoundation.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/QRVFoundation.pc DESTINATION ${pkgconfig_dir} COMPONENT development)
