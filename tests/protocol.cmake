# Messages against the schemas in docs/protocol. Debian's interpreter: python3-jsonschema belongs to it.
find_program(GARAGE_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)

garage_test(tst_protocolschemas LIBRARIES garage_hostrooms)
add_dependencies(tst_protocolschemas ruvalogarage)
target_compile_definitions(tst_protocolschemas PRIVATE
    GARAGE_PLUGIN_FILE="$<TARGET_FILE:ruvalogarage>"
    PYTHON="${GARAGE_PYTHON}"
    CHECK_PROTOCOL="${PROJECT_SOURCE_DIR}/scripts/check-protocol"
    HOST_GUIDE="${PROJECT_SOURCE_DIR}/docs/host-integration.md")

# What the finished library said in the whole-system tests.
set(traffic ${CMAKE_CURRENT_BINARY_DIR}/traffic)
file(MAKE_DIRECTORY ${traffic})
set(talkers tst_hostprotocol tst_remotesynchronisation)
foreach(test ${talkers})
    set_tests_properties(${test} PROPERTIES
        ENVIRONMENT "${GARAGE_TEST_ENVIRONMENT};GARAGE_TRAFFIC_FOLDER=${traffic}"
        FIXTURES_SETUP traffic)
endforeach()
list(TRANSFORM talkers REPLACE "(.+)" "${traffic}/\\1.jsonl" OUTPUT_VARIABLE traffic_files)
add_test(NAME protocol_of_system_tests
    COMMAND ${GARAGE_PYTHON} ${PROJECT_SOURCE_DIR}/scripts/check-protocol
        --require insert_tab,close_tab,read_cars_list,settings_dialog,service_ops_changed,update_pending_service,update_remote_service,remote_service_move_to_archive,remote_control_answer,update_cars
        ${traffic_files})
set_tests_properties(protocol_of_system_tests PROPERTIES FIXTURES_REQUIRED traffic)
