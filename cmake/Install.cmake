# The files of `cmake --install`, in five components: plugin, development, workbench, prepare and doc.

include(CMakePackageConfigHelpers)

# Builds what is installed, without the tests. A program whose libraries are missing is left out.
add_custom_target(installed)
add_dependencies(installed importplugin)

# plugin; Qt may be outside the folders that the loader searches
set_target_properties(importplugin PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON)
install(TARGETS importplugin LIBRARY DESTINATION ${IMPORT_PLUGIN_DIR} COMPONENT plugin)
install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT plugin)

# development: the host's header and the CMake package ImportGeometry
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/importgeometry)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ImportGeometry)

add_library(importgeometry INTERFACE)
set_target_properties(importgeometry PROPERTIES EXPORT_NAME Interface)
target_include_directories(importgeometry INTERFACE $<INSTALL_INTERFACE:${header_dir}>)
target_link_libraries(importgeometry INTERFACE Qt5::Core)

configure_package_config_file(cmake/ImportGeometryConfig.cmake.in ${PROJECT_BINARY_DIR}/ImportGeometryConfig.cmake
                              INSTALL_DESTINATION ${package_dir} PATH_VARS IMPORT_PLUGIN_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ImportGeometryConfigVersion.cmake COMPATIBILITY SameMajorVersion)

install(FILES host/importgeometryinterface.h DESTINATION ${header_dir} COMPONENT development)
install(TARGETS importgeometry EXPORT ImportGeometryTargets)
install(EXPORT ImportGeometryTargets NAMESPACE ImportGeometry:: DESTINATION ${package_dir} COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/ImportGeometryConfig.cmake ${PROJECT_BINARY_DIR}/ImportGeometryConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# workbench
if(IMPORT_WORKBENCH)
    add_dependencies(installed importhost)
    set_target_properties(importhost PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON)
    install(TARGETS importhost RUNTIME COMPONENT workbench)
    if(WIN32)
        add_dependencies(installed importhostw)
        install(TARGETS importhostw RUNTIME COMPONENT workbench)
        include(cmake/WindowsRuntime.cmake)
    else()
        install(FILES packaging/importhost.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT workbench)
        install(FILES packaging/importhost.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
                COMPONENT workbench)
        install(FILES packaging/importhost.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT workbench)
    endif()
endif()

# prepare
if(TARGET importprepare)
    add_dependencies(installed importprepare)
    set_target_properties(importprepare PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON)
    install(TARGETS importprepare RUNTIME COMPONENT prepare)
    install(FILES packaging/importprepare.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT prepare)
endif()

# doc: laid out as in the sources, so that the links between the pages work
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc
        FILES_MATCHING REGEX "[.](md|png|svg|xsd)$")
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
