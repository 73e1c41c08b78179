if(GARAGE_SANITIZE)
    list(JOIN GARAGE_SANITIZE "," garage_sanitizers)
    add_compile_options(-fsanitize=${garage_sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${garage_sanitizers})
endif()

# Only the fuzzer links libFuzzer's main(); the other targets are compiled with its coverage instrumentation.
if(GARAGE_BUILD_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
