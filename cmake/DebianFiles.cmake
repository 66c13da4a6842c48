# Run by cpack between installing and packing. Adds the files that Debian requires in each .deb and that an ordinary
# installation does not need: copyright, compressed change log and lintian's overrides. Compresses the manual pages.

if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()

set(sources ${CMAKE_CURRENT_LIST_DIR}/../packaging)

# Compresses a file reproducibly: without its name and time.
function(compress file)
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Unlike file(COPY), file(INSTALL) gives files and folders the modes that Debian requires, whatever the umask.
unset(ENV{DESTDIR}) # cpack leaves the folder of the last component in it
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
function(add_file file folder)
    file(INSTALL ${sources}/${file} DESTINATION ${folder} MESSAGE_NEVER
         FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

foreach(component ${CPACK_COMPONENTS_ALL})
    string(TOUPPER ${component} key)
    set(package ${CPACK_DEBIAN_${key}_PACKAGE_NAME})
    set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}/share)

    add_file(copyright ${share}/doc/${package})
    add_file(changelog ${share}/doc/${package})
    compress(${share}/doc/${package}/changelog)
    if(EXISTS ${sources}/overrides/${package})
        add_file(overrides/${package} ${share}/lintian/overrides)
    endif()
    file(GLOB pages ${share}/man/man*/*.[1-9])
    foreach(page ${pages})
        compress(${page})
    endforeach()
endforeach()
