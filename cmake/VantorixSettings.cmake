# Settings that every target of the project shares. Libraries link vantorix_warnings privately.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
# What is installed finds the libraries wherever the prefix lies.
set(CMAKE_INSTALL_RPATH "$ORIGIN" "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

find_program(VANTORIX_CCACHE ccache)
if(VANTORIX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # The precompiled headers carry time stamps, and macros of theirs may go unused.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
        "CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime"
        "${VANTORIX_CCACHE}")
endif()

set(CMAKE_UNITY_BUILD "$ENV{VANTORIX_UNITY}" CACHE BOOL "Compile eight sources at a time")
set(VANTORIX_UNITY_TESTS "$ENV{VANTORIX_UNITY_TESTS}" CACHE BOOL "Compile eight sources of a test at a time")

set(VANTORIX_SANITIZER "" CACHE STRING "Instrument everything: address, undefined, thread or empty")
if(VANTORIX_SANITIZER)
    add_compile_options(-fsanitize=${VANTORIX_SANITIZER} -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${VANTORIX_SANITIZER})
endif()

add_library(vantorix_warnings INTERFACE)
target_compile_options(vantorix_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<BOOL:${VANTORIX_WERROR}>:-Werror>)
if(CMAKE_UNITY_BUILD)
    # A local name may shadow one of the source before, which is no fault.
    target_compile_options(vantorix_warnings INTERFACE -Wno-error=shadow
        $<$<CXX_COMPILER_ID:GNU>:-Wno-error=subobject-linkage>)
endif()
# ccache can only cache a compilation with clang's precompiled headers when they carry no time.
target_compile_options(vantorix_warnings INTERFACE
    $<$<CXX_COMPILER_ID:Clang>:-Xclang;-fno-pch-timestamp>
    $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
