# The Debian packages libvantorix1, libvantorix-dev and vantorix-tools: scripts/package builds them.
set(VANTORIX_DEBIAN_REVISION 1)
set(VANTORIX_DEBIAN_VERSION "${PROJECT_VERSION}-${VANTORIX_DEBIAN_REVISION}")
set(debian_dir "${PROJECT_SOURCE_DIR}/cmake/debian")

# vantorix_package(COMPONENT NAME SECTION DEPENDS SUMMARY LINE...)
macro(vantorix_package component name section depends summary)
    string(TOUPPER ${component} upper)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
    string(JOIN "\n" CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}" ${ARGN})
    if(VANTORIX_DEBIAN_PACKAGES)
        vantorix_install_papers(${component} ${name})
    endif()
endmacro()

# What policy wants in every package: copyright, changelog and, where there are any, overrides.
function(vantorix_install_papers component name)
    set(folder "${CMAKE_INSTALL_DATADIR}/doc/${name}")
    install(FILES "${debian_dir}/copyright" DESTINATION "${folder}" COMPONENT ${component})
    install(FILES "${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz"
        DESTINATION "${folder}" COMPONENT ${component})
    install(FILES "${debian_dir}/${name}.lintian-overrides" OPTIONAL
        DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides"
        RENAME ${name} COMPONENT ${component})
endfunction()

# The manual page is what the program says of itself.
function(vantorix_make_manual)
    find_program(VANTORIX_HELP2MAN help2man REQUIRED)
    set(page "${PROJECT_BINARY_DIR}/debian/vantorix.1")
    add_custom_command(OUTPUT "${page}.gz"
        COMMAND "${VANTORIX_HELP2MAN}" --no-info
            "--name=read 3D models into a scene, inspect and draw them"
            "--output=${page}" $<TARGET_FILE:vantorix>
        COMMAND gzip -9nf "${page}"
        DEPENDS vantorix VERBATIM)
    add_custom_target(manual DEPENDS "${page}.gz")
    install(FILES "${page}.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools)
endfunction()

if(VANTORIX_DEBIAN_PACKAGES)
    file(READ "${debian_dir}/changelog" changelog)
    if(NOT changelog MATCHES "^vantorix \\(${VANTORIX_DEBIAN_VERSION}\\)")
        message(FATAL_ERROR "cmake/debian/changelog does not begin with ${VANTORIX_DEBIAN_VERSION}")
    endif()
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/debian")
    execute_process(COMMAND gzip -9nc "${debian_dir}/changelog"
        OUTPUT_FILE "${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz" COMMAND_ERROR_IS_FATAL ANY)
    vantorix_make_manual()
endif()

vantorix_package(libraries libvantorix1 libs ""
    "scene graph that announces every change as an event (libraries)"
    "Nodes, meshes, materials, animations, skins and physics descriptions in memory."
    "It reads no files and draws nothing."
    "."
    "This package holds the shared libraries vantorix_core and vantorix_scene.")
string(JOIN ", " development_depends
    "libvantorix1 (= ${VANTORIX_DEBIAN_VERSION})" "libeigen3-dev (>= 3.4)" "libboost-dev (>= 1.74)"
    "libboost-chrono-dev" "libboost-date-time-dev" "libboost-filesystem-dev" "libboost-thread-dev")
vantorix_package(development libvantorix-dev libdevel "${development_depends}"
    "scene graph that announces every change as an event (development files)"
    "Nodes, meshes, materials, animations, skins and physics descriptions in memory."
    "."
    "This package holds the headers, what CMake and pkg-config need to find the"
    "libraries, and the pretty printers for gdb.")
vantorix_package(tools vantorix-tools graphics "libvantorix1 (= ${VANTORIX_DEBIAN_VERSION})"
    "scene graph that announces every change as an event (program)"
    "The program vantorix reads model files into a scene, tells what they hold,"
    "compares and merges them, plays their animations and draws them without a"
    "display.")

set(CPACK_GENERATOR DEB)
# Empty, not unset: each package brings a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT "vantorix developers <vantorix@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${VANTORIX_DEBIAN_REVISION})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA "${debian_dir}/triggers")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
include(CPack)
