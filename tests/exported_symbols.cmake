# cmake -DNM=<nm> -DPLUGIN=<file> -P exported_symbols.cmake
# cmake -DOBJDUMP=<objdump> -DPLUGIN=<file> -P exported_symbols.cmake, for a DLL
#
# Fails unless the plug-in exports its two entry points and nothing else. Any other exported symbol could replace one of
# the host or of another plug-in.

if(OBJDUMP)
    execute_process(COMMAND "${OBJDUMP}" -p "${PLUGIN}" OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE ".*\\[Ordinal/Name Pointer\\] Table[^\n]*\n" "" listing "${listing}")
    string(REGEX REPLACE "\n[ \t]*\n.*" "\n" listing "${listing}")
else()
    execute_process(COMMAND "${NM}" -D --defined-only "${PLUGIN}" OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
endif()
string(REGEX MATCHALL "[^ \n]+(\n|$)" names "${listing}")
list(TRANSFORM names STRIP)
list(SORT names)

set(expected qt_plugin_instance qt_plugin_query_metadata)
if(NOT names STREQUAL expected)
    message(FATAL_ERROR "${PLUGIN} exports \"${names}\" instead of \"${expected}\"")
endif()
