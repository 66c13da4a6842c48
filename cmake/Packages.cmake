# The packages of cpack: a .deb for each component and one .tar.gz with all of them.

set(IMPORT_MAINTAINER "Maintainers of importplugin <maintainers@importplugin.example>" CACHE STRING
    "Name and address in the packages")

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_CONTACT "${IMPORT_MAINTAINER}")
set(CPACK_PACKAGE_VENDOR "${PROJECT_NAME}")
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_STRIP_FILES ON)
# Independent of the umask, because group-writable folders are an error in a package.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)

set(CPACK_COMPONENTS_ALL plugin development doc)
if(IMPORT_WORKBENCH)
    list(APPEND CPACK_COMPONENTS_ALL workbench)
endif()
if(TARGET importprepare)
    list(APPEND CPACK_COMPONENTS_ALL prepare)
endif()
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianFiles.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE ${PROJECT_NAME})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(same_version "importplugin (= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_PLUGIN_PACKAGE_NAME importplugin)
set(CPACK_DEBIAN_PLUGIN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PLUGIN_PACKAGE_SUGGESTS "importplugin-doc, importplugin-workbench")
set(CPACK_DEBIAN_PLUGIN_DESCRIPTION
    "import of MIF/MID and DXF files, plug-in for a host application
The plug-in imports land plots and the coordinates of their corners from
MIF/MID file pairs and ASCII DXF drawings. The user selects a file in a
dialog and checks the objects; the host application receives them as XML
text, laid out in the columns of its own tables.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME importplugin-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same_version}, qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "importplugin-doc, importplugin-workbench")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "import of MIF/MID and DXF files, files for developing a host
The interface between the import plug-in and a host application, and the
CMake package ImportGeometry, with which a host is built and finds the
plug-in. A complete small host is in the package importplugin-doc.")

set(CPACK_DEBIAN_WORKBENCH_PACKAGE_NAME importplugin-workbench)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_SECTION science)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_DEPENDS "${same_version}")
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_RECOMMENDS qttranslations5-l10n)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_SUGGESTS "importplugin-doc, importplugin-prepare")
set(CPACK_DEBIAN_WORKBENCH_DESCRIPTION
    "import of MIF/MID and DXF files, stand-in host application
The program importhost runs the import plug-in without its host
application, in a window or unattended from the command line. It shows
the messages of an import and its result.")

# It contains the import itself, so it does not depend on the plug-in.
set(CPACK_DEBIAN_PREPARE_PACKAGE_NAME importplugin-prepare)
set(CPACK_DEBIAN_PREPARE_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PREPARE_PACKAGE_ENHANCES "importplugin, importplugin-workbench")
set(CPACK_DEBIAN_PREPARE_PACKAGE_SUGGESTS "importplugin-doc, parallel")
set(CPACK_DEBIAN_PREPARE_DESCRIPTION
    "import of MIF/MID and DXF files, check and preparation of files
The program importprepare reports what an import of a MIF or DXF file would
lose or get wrong, and converts files in this and other vector formats to
a MIF/MID pair that the import plug-in reads completely.")

set(CPACK_DEBIAN_DOC_PACKAGE_NAME importplugin-doc)
set(CPACK_DEBIAN_DOC_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOC_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOC_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DOC_DESCRIPTION
    "import of MIF/MID and DXF files, guides and examples
Guides to the import plug-in for its users and for developers of a host
application, most of them in Russian; examples of MIF/MID and DXF files,
and the sources of a complete small host.")

include(CPack)
