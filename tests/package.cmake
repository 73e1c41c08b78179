# The installed tree, as a host's developer gets it.
set(example_flags "")
if(GARAGE_SANITIZE)
    list(JOIN GARAGE_SANITIZE "," sanitizers)
    set(example_flags -fsanitize=${sanitizers})
endif()
add_test(NAME installed_package
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/helpers/try-installed.sh
        ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR}/docs/examples/minimal-host "${example_flags}")
set_tests_properties(installed_package PROPERTIES TIMEOUT 600 ENVIRONMENT "${GARAGE_TEST_ENVIRONMENT}")
