# cmake -DWINDRES=<windres> -DFILE=<DLL or program> -DVERSION=<version> -P windows_resources.cmake
#
# Fails unless the file has an icon, its own name and the version, which Explorer shows.

execute_process(COMMAND "${WINDRES}" "${FILE}" OUTPUT_VARIABLE resources COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET FILE FILENAME name)
string(REPLACE "." ", " numbers "${VERSION}")

foreach(expected "RT_GROUP_ICON" "FILEVERSION ${numbers}, 0" "\"FileVersion\", \"${VERSION}\""
                 "\"OriginalFilename\", \"${name}\"")
    string(FIND "${resources}" "${expected}" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "${FILE} lacks ${expected}")
    endif()
endforeach()
