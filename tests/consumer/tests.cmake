# Installs the libraries into a folder of the build and lets the application in this folder use
# them. Instrumented libraries are not what anybody installs.
if(VANTORIX_SANITIZER)
    return()
endif()

set(folder "${PROJECT_BINARY_DIR}/consumer")
add_test(NAME consumer.install
    COMMAND "${CMAKE_COMMAND}" --install "${PROJECT_BINARY_DIR}" --prefix "${folder}/prefix")
set_tests_properties(consumer.install PROPERTIES FIXTURES_SETUP installed_prefix)

add_test(NAME consumer.first_program
    COMMAND "${CMAKE_CTEST_COMMAND}"
        --build-and-test "${CMAKE_CURRENT_LIST_DIR}" "${folder}/build"
        --build-generator "${CMAKE_GENERATOR}"
        --build-options "-DCMAKE_PREFIX_PATH=${folder}/prefix"
            "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}"
            "-DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}"
        --test-command "${CMAKE_CTEST_COMMAND}" --output-on-failure --no-tests=error)
set_tests_properties(consumer.first_program PROPERTIES
    FIXTURES_REQUIRED installed_prefix TIMEOUT 300)

if(TARGET vantorix)
    add_test(NAME consumer.installed_program COMMAND "${folder}/prefix/bin/vantorix" --version)
    set_tests_properties(consumer.installed_program PROPERTIES FIXTURES_REQUIRED installed_prefix)
endif()
