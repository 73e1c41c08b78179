# The demo host is tried with a plug-in that stands in for the real one.
add_library(fakeplugin MODULE
    fakeplugin/fakeplugin.cpp fakeplugin/fakeplugin.h
    ${PROJECT_SOURCE_DIR}/plugin/trivexplugininterface.h)
target_link_libraries(fakeplugin PRIVATE trivex_interface Qt5::Widgets garage_flags)
set_target_properties(fakeplugin PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/fixtures)

garage_test(tst_garagehost TIMEOUT 240)
add_dependencies(tst_garagehost garage-host fakeplugin)
target_compile_definitions(tst_garagehost PRIVATE
    GARAGE_HOST="$<TARGET_FILE:garage-host>" FAKE_PLUGIN="$<TARGET_FILE:fakeplugin>")

garage_test(tst_sampledata LIBRARIES garage_hostrooms)
