# add_windows_resources(target description): adds icon and version information, which Explorer shows, to a program or
# plug-in for Windows. Does nothing on other systems.

if(WIN32)
    enable_language(RC)
endif()

function(add_windows_resources target description)
    if(NOT WIN32)
        return()
    endif()
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
        set(file_type VFT_APP)
        set(file_name ${target}${CMAKE_EXECUTABLE_SUFFIX})
    else()
        set(file_type VFT_DLL)
        set(file_name ${target}${CMAKE_SHARED_MODULE_SUFFIX})
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/version.rc.in ${target}.rc @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
endfunction()
