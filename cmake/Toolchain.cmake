# How our code is compiled. Everything goes through the interface target alidade_build, which our own targets link
# privately, so none of it reaches a host.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# the program finds its library beside itself, in the build folder as in the installed one
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

add_library(alidade_build INTERFACE)

# Left out on purpose: -Wnull-dereference and -Wconversion, which g++ 12 also raises inside inlined standard headers.
target_compile_options(alidade_build INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
    # g++ 12 sees overlapping and endless copies in "text" + std::string
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>
    $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds>
    $<$<BOOL:${ALIDADE_WERROR}>:-Werror>
    # golden files must not depend on whether the processor can fuse a multiply and an add
    -ffp-contract=off)

if(ALIDADE_SANITIZE)
    target_compile_options(alidade_build INTERFACE
        -fsanitize=${ALIDADE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    target_link_options(alidade_build INTERFACE -fsanitize=${ALIDADE_SANITIZE})
    # bounds of the standard containers, which AddressSanitizer can't see
    target_compile_definitions(alidade_build INTERFACE _GLIBCXX_ASSERTIONS)
else()
    target_compile_options(alidade_build INTERFACE -fstack-protector-strong)
    target_compile_definitions(alidade_build INTERFACE
        $<$<CONFIG:Release>:_FORTIFY_SOURCE=2> $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
    target_link_options(alidade_build INTERFACE -Wl,-z,relro,-z,now)
endif()

if(ALIDADE_COVERAGE)
    target_compile_options(alidade_build INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(alidade_build INTERFACE --coverage)
endif()

if(ALIDADE_TIDY)
    find_program(ALIDADE_CLANG_TIDY NAMES clang-tidy-14 REQUIRED)
    set(CMAKE_CXX_CLANG_TIDY "${ALIDADE_CLANG_TIDY};--quiet")
    set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()

find_program(ALIDADE_CCACHE ccache)
if(ALIDADE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER AND NOT ALIDADE_COVERAGE)
    # the sloppiness lets it serve sources that use a precompiled header
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime;${ALIDADE_CCACHE}")
endif()

target_link_options(alidade_build INTERFACE LINKER:--as-needed)
find_program(ALIDADE_LLD ld.lld)
if(ALIDADE_LLD)
    target_link_options(alidade_build INTERFACE -fuse-ld=lld)
endif()
