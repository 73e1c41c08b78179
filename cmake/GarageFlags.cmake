# One place for the language level, the warnings and Qt's strictness. Every target of the product links garage_flags
# privately, every target of the tests and garage-bench garage_test_flags: tests write texts as plain literals.
add_library(garage_common_flags INTERFACE)
target_compile_features(garage_common_flags INTERFACE cxx_std_17)
target_compile_definitions(garage_common_flags INTERFACE
    QT_NO_CAST_TO_ASCII
    QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_USE_QSTRINGBUILDER
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
target_compile_options(garage_common_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wold-style-cast
    # In a unity build sources see each other's names, and a source is a header to the compiler.
    $<IF:$<BOOL:${CMAKE_UNITY_BUILD}>,-Wno-subobject-linkage,-Wshadow>
    -Woverloaded-virtual -Wnon-virtual-dtor
    $<$<CXX_COMPILER_ID:GNU>:-Wsuggest-override>
    $<$<BOOL:${GARAGE_WARNINGS_AS_ERRORS}>:-Werror>)

add_library(garage_flags INTERFACE)
target_link_libraries(garage_flags INTERFACE garage_common_flags)
target_compile_definitions(garage_flags INTERFACE QT_NO_CAST_FROM_ASCII)

add_library(garage_test_flags INTERFACE)
target_link_libraries(garage_test_flags INTERFACE garage_common_flags)

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(GARAGE_FAST_LINKER)
    find_program(GARAGE_MOLD mold)
    if(GARAGE_MOLD)
        add_link_options(-fuse-ld=mold)
    endif()
endif()
