# Whole-system tests: the finished library, known by its interface, its messages, its widgets' names and the
# database file alone.
add_library(garage_hostsupport STATIC
    support/pluginhost.cpp support/pluginhost.h
    ${PROJECT_SOURCE_DIR}/plugin/trivexplugininterface.h)
target_compile_definitions(garage_hostsupport PUBLIC GARAGE_PLUGIN_FILE="$<TARGET_FILE:ruvalogarage>")
target_link_libraries(garage_hostsupport PUBLIC garage_testsupport trivex_interface PRIVATE garage_flags)
add_dependencies(garage_hostsupport ruvalogarage)

add_executable(exitinghost helpers/exitinghost.cpp ${PROJECT_SOURCE_DIR}/plugin/trivexplugininterface.h)
target_compile_definitions(exitinghost PRIVATE GARAGE_PLUGIN_FILE="$<TARGET_FILE:ruvalogarage>")
target_link_libraries(exitinghost PRIVATE trivex_interface Qt5::Widgets garage_flags)
add_dependencies(exitinghost ruvalogarage)

garage_test(tst_pluginlibrary ELSEWHERE LIBRARIES garage_hostsupport ${CMAKE_DL_LIBS})
garage_test(tst_hostprotocol ELSEWHERE LIBRARIES garage_hostsupport)
garage_test(tst_remotesynchronisation ELSEWHERE LIBRARIES garage_hostsupport)
garage_test(tst_hostiledatabase LIBRARIES garage_hostsupport)
garage_test(tst_lifecycle LIBRARIES garage_hostsupport)
target_compile_definitions(tst_pluginlibrary PRIVATE EXITING_HOST="$<TARGET_FILE:exitinghost>")
add_dependencies(tst_pluginlibrary exitinghost)

add_executable(busyprocess helpers/busyprocess.cpp)
target_link_libraries(busyprocess PRIVATE garage_hostsupport garage_flags)
garage_test(tst_manyprocesses)
target_compile_definitions(tst_manyprocesses PRIVATE BUSY_PROCESS="$<TARGET_FILE:busyprocess>")
add_dependencies(tst_manyprocesses busyprocess)
