# Messages against the schemas in docs/protocol. Debian's interpreter: python3-jsonschema belongs to it.
find_program(GARAGE_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)

garage_test(tst_protocolschemas LIBRARIES garage_hostrooms)
add_dependencies(tst_protocolschemas ruvalogarage)
target_compile_definitions(tst_protocolschemas PRIVATE
    GARAGE_PLUGIN_FILE="$<TARGET_FILE:ruvalogarage>"
    PYTHON="${GARAGE_PYTHON}"
    CHECK_PROTOCOL="${PROJECT_SOURCE_DIR}/scripts/check-protocol"
    HOST_GUIDE="${PROJECT_SOURCE_DIR}/docs/host-integration.md")
