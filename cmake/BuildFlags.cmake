# Compiler and linker options of every target.

add_library(build_flags INTERFACE)
target_compile_definitions(build_flags INTERFACE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
                                                 QT_DEPRECATED_WARNINGS)

if(MSVC)
    target_compile_options(build_flags INTERFACE /utf-8 /W4 $<$<BOOL:${IMPORT_WERROR}>:/WX>)
else()
    target_compile_options(
        build_flags
        INTERFACE -Wall
                  -Wextra
                  -Wpedantic
                  -Wconversion
                  -Wshadow=local
                  -Wnon-virtual-dtor
                  -Woverloaded-virtual
                  -Wold-style-cast
                  -Wcast-align
                  -Wformat=2
                  -ffp-contract=off # with FMA, rounding and thus numbering depend on the processor
                  $<$<BOOL:${IMPORT_WERROR}>:-Werror>)
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        target_compile_options(build_flags INTERFACE -Wno-unknown-warning-option)
    endif()
endif()

if(IMPORT_SANITIZERS)
    target_compile_options(build_flags INTERFACE -fsanitize=${IMPORT_SANITIZERS} -fno-sanitize-recover=all
                                                 -fno-omit-frame-pointer)
    target_link_options(build_flags INTERFACE -fsanitize=${IMPORT_SANITIZERS})
    target_compile_definitions(build_flags INTERFACE QT_FORCE_ASSERTS)
endif()

# Link-time optimisation (LTO): the readers call small functions of other files for each line and vertex. It is enabled
# for all targets, because with clang only a target that uses LTO itself can link the LTO objects of importcore.
include(CheckIPOSupported)
check_ipo_supported(RESULT HAVE_IPO OUTPUT ipo_output LANGUAGES CXX)
if(HAVE_IPO)
    set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
endif()
