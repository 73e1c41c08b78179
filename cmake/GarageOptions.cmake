# The module alone builds without these packages; the presets demand what they build.
find_package(Qt5LinguistTools 5.15 QUIET)
find_package(CLI11 QUIET)
option(GARAGE_BUILD_HOST "Build the demo host" ${Qt5LinguistTools_FOUND})
option(GARAGE_BUILD_TOOL "Build the command-line tool garagectl" ${CLI11_FOUND})
option(GARAGE_BUILD_TESTS "Build the tests" ${Qt5LinguistTools_FOUND})
option(GARAGE_BUILD_BENCH "Build the benchmarks" OFF)
option(GARAGE_BUILD_FUZZ "Build the fuzzer of the messages; needs clang" OFF)
option(GARAGE_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(GARAGE_FAST_LINKER "Link with mold where it is installed" OFF)
set(GARAGE_SANITIZE "" CACHE STRING "Sanitizers to build with, e.g. \"address;undefined\" or \"thread\"")
set(TRIVEX_PLUGIN_IID "trivex.TrivexPluginInterface/v1.0" CACHE STRING
    "Identifier of the host's plug-in interface")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()
