option(GARAGE_BUILD_HOST "Build the demo host" ON)
option(GARAGE_BUILD_TOOL "Build the command-line tool garagectl" ON)
option(GARAGE_BUILD_TESTS "Build the tests" ON)
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
