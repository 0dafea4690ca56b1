include(CMakePackageConfigHelpers)

install(TARGETS vantorix_core vantorix_scene EXPORT vantorixTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vantorix"
    FILE_SET generated_headers DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vantorix")
install(EXPORT vantorixTargets NAMESPACE vantorix::
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/vantorix")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/vantorixConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/vantorixConfig.cmake"
    INSTALL_DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/vantorix")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/vantorixConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/vantorixConfig.cmake"
    "${PROJECT_BINARY_DIR}/vantorixConfigVersion.cmake"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/vantorix")
