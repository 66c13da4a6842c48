# Links the tests and the plug-in against the core as a shared library, so that a mutant can be tried without relinking
# the tests. Only the preset "mutation" includes this file, after project().

function(link_shared_core)
    get_target_property(libraries importcore INTERFACE_LINK_LIBRARIES)
    get_target_property(folders importcore INTERFACE_INCLUDE_DIRECTORIES)
    add_library(importshared SHARED $<TARGET_OBJECTS:importcore>)
    set_target_properties(importshared PROPERTIES AUTOMOC OFF LINKER_LANGUAGE CXX LIBRARY_OUTPUT_DIRECTORY plugin)
    target_include_directories(importshared INTERFACE ${folders})
    target_link_libraries(importshared PUBLIC ${libraries})
    # The tests call functions that the plug-in does not export.
    set_target_properties(importcore PROPERTIES CXX_VISIBILITY_PRESET default)

    get_property(users DIRECTORY tests PROPERTY BUILDSYSTEM_TARGETS)
    foreach(user importplugin ${users})
        get_target_property(libraries ${user} LINK_LIBRARIES)
        list(TRANSFORM libraries REPLACE "^importcore$" importshared)
        set_target_properties(${user} PROPERTIES LINK_LIBRARIES "${libraries}")
    endforeach()
endfunction()

cmake_language(DEFER CALL link_shared_core)
