# Parsing Qt's headers takes most of the time of a compilation, so each set of them is parsed once for all targets.
# Sources still include what they use: scripts/lint checks them without precompiled headers.

# garage_precompile(owner flags LIBRARIES...): a target that owns the umbrella headers of these Qt libraries, compiled
# with these flags. GCC uses them only in targets with the same flags.
function(garage_precompile owner flags)
    add_library(${owner} OBJECT ${PROJECT_SOURCE_DIR}/cmake/precompiled.cpp)
    list(TRANSFORM ARGN REPLACE "(.+)" "Qt::\\1" OUTPUT_VARIABLE libraries)
    list(TRANSFORM ARGN REPLACE "(.+)" "<Qt\\1>" OUTPUT_VARIABLE headers)
    target_link_libraries(${owner} PRIVATE ${libraries} ${flags})
    target_precompile_headers(${owner} PRIVATE ${headers})
    set_target_properties(${owner} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
endfunction()

garage_precompile(garage_pch_data garage_flags Core Sql)
garage_precompile(garage_pch_widgets garage_flags Core Sql Widgets)
