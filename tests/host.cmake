# The demo host is tried with a plug-in that stands in for the real one.
add_library(fakeplugin MODULE
    fakeplugin/fakeplugin.cpp fakeplugin/fakeplugin.h
    ${PROJECT_SOURCE_DIR}/plugin/trivexplugininterface.h)
target_link_libraries(fakeplugin PRIVATE trivex_interface Qt5::Widgets garage_flags)
set_target_properties(fakeplugin PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/fixtures)

garage_test(tst_garagehost TIMEOUT 600)
add_dependencies(tst_garagehost garage-host fakeplugin)
target_compile_definitions(tst_garagehost PRIVATE
    GARAGE_HOST="$<TARGET_FILE:garage-host>" FAKE_PLUGIN="$<TARGET_FILE:fakeplugin>")

garage_test(tst_sampledata LIBRARIES garage_hostrooms)

garage_test(tst_duetable LIBRARIES garage_hostrooms)
garage_test(tst_track LIBRARIES garage_hostrooms)
garage_test(tst_eventplayer LIBRARIES garage_hostrooms)
garage_test(tst_hostwindow LIBRARIES garage_hostrooms)
foreach(test tst_track tst_eventplayer tst_hostwindow)
    add_dependencies(${test} fakeplugin)
    target_compile_definitions(${test} PRIVATE FAKE_PLUGIN="$<TARGET_FILE:fakeplugin>")
endforeach()

garage_test(tst_remoteloop LIBRARIES garage_hostrooms)
garage_test(tst_remotesoak LIBRARIES garage_hostrooms)
foreach(test tst_remoteloop tst_remotesoak)
    add_dependencies(${test} ruvalogarage)
    target_compile_definitions(${test} PRIVATE GARAGE_PLUGIN="$<TARGET_FILE:ruvalogarage>")
endforeach()

# Plug-ins with one fault each, for the validator to find.
foreach(fault wrong_identifier answers_in_wrong_order crashes_on_bad_input writes_one_by_one hangs_on_a_lock)
    string(TOUPPER ${fault} macro)
    add_library(broken_${fault} MODULE
        brokenplugin/brokenplugin.cpp brokenplugin/brokenplugin.h
        ${PROJECT_SOURCE_DIR}/plugin/trivexplugininterface.h)
    target_compile_definitions(broken_${fault} PRIVATE FAULT_${macro} GARAGE_PLUGIN="$<TARGET_FILE:ruvalogarage>")
    target_link_libraries(broken_${fault} PRIVATE trivex_interface Qt5::Widgets Qt5::Sql garage_flags)
    set_target_properties(broken_${fault} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/fixtures)
    list(APPEND broken_plugins broken_${fault})
endforeach()

garage_test(tst_validation TIMEOUT 600)
add_dependencies(tst_validation garage-host ruvalogarage fakeplugin ${broken_plugins})
target_compile_definitions(tst_validation PRIVATE
    GARAGE_HOST="$<TARGET_FILE:garage-host>" GARAGE_PLUGIN="$<TARGET_FILE:ruvalogarage>"
    FAKE_PLUGIN="$<TARGET_FILE:fakeplugin>" FIXTURES="${CMAKE_CURRENT_BINARY_DIR}/fixtures")
