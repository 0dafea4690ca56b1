# What `cmake --install` puts where, in the components libraries, development and tools.
include(CMakePackageConfigHelpers)

set(VANTORIX_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/vantorix")

# vantorix_pkg_config(LIBRARY REQUIRES LIBS): vantorix-LIBRARY.pc, which finds its folders from
# where it lies.
function(vantorix_pkg_config library requires libs)
    set(pkgconfig_dir "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
    file(RELATIVE_PATH up_to_prefix "${pkgconfig_dir}" "${CMAKE_INSTALL_PREFIX}")
    string(REGEX REPLACE "/$" "" up_to_prefix "${up_to_prefix}")
    set(file "${PROJECT_BINARY_DIR}/vantorix-${library}.pc")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/vantorix.pc.in" "${file}" @ONLY)
    install(FILES "${file}" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
endfunction()

# One export per component, so that an application of the core alone needs no Eigen.
foreach(library core scene)
    install(TARGETS vantorix_${library} EXPORT vantorix-${library}-targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            COMPONENT libraries NAMELINK_COMPONENT development
        FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vantorix" COMPONENT development
        FILE_SET generated_headers
            DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vantorix" COMPONENT development)
    install(EXPORT vantorix-${library}-targets NAMESPACE vantorix::
        DESTINATION "${VANTORIX_CMAKE_DIR}" COMPONENT development)
    # gdb looks for printers under the full name of the library that has just been loaded.
    install(FILES "${PROJECT_SOURCE_DIR}/tools/gdb/vantorix-gdb.py"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR}"
        RENAME "libvantorix_${library}.so.${PROJECT_VERSION}-gdb.py" COMPONENT development)
endforeach()
install(FILES "${PROJECT_SOURCE_DIR}/tools/vantorix.natvis"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/vantorix" COMPONENT development)

vantorix_pkg_config(core "" "-lboost_thread -lboost_date_time")
vantorix_pkg_config(scene "vantorix-core = ${PROJECT_VERSION}, eigen3 >= 3.4" "")

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/vantorixConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/vantorixConfig.cmake"
    INSTALL_DESTINATION "${VANTORIX_CMAKE_DIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/vantorixConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/vantorixConfig.cmake"
    "${PROJECT_BINARY_DIR}/vantorixConfigVersion.cmake"
    DESTINATION "${VANTORIX_CMAKE_DIR}" COMPONENT development)
