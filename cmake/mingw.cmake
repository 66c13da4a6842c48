# Toolchain for Windows (x86-64): Debian's MinGW-w64 with POSIX threads, and a Qt built with it.
#
# Qt is looked for in IMPORT_WINDOWS_QT, a variable of CMake or of the environment. The default is the folder in which
# tools/windows/build installs it.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(target x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER ${target}-g++-posix)
set(CMAKE_RC_COMPILER ${target}-windres)

# CMake reads this file again in its compiler checks, where only the environment and the variables listed here are set.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES IMPORT_WINDOWS_QT)
if(NOT IMPORT_WINDOWS_QT)
    if(DEFINED ENV{IMPORT_WINDOWS_QT})
        set(IMPORT_WINDOWS_QT $ENV{IMPORT_WINDOWS_QT})
    elseif(DEFINED ENV{XDG_CACHE_HOME})
        set(IMPORT_WINDOWS_QT $ENV{XDG_CACHE_HOME}/importplugin/windows/qt)
    else()
        set(IMPORT_WINDOWS_QT $ENV{HOME}/.cache/importplugin/windows/qt)
    endif()
endif()

# The same sources give the same files, whatever the time.
foreach(kind EXE MODULE SHARED)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT -Wl,--no-insert-timestamp)
endforeach()

# Libraries and CMake packages of this machine are for another system; its programs are the ones to run.
set(CMAKE_FIND_ROOT_PATH ${IMPORT_WINDOWS_QT} /usr/${target})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Tests run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tools/windows/wine ${IMPORT_WINDOWS_QT})
