garage_test(tst_datetimetext ELSEWHERE)
garage_test(tst_duerule ELSEWHERE)
garage_test(tst_garageupdater ELSEWHERE
    LIBRARIES garage_loader
    SOURCES support/loaderprobe.cpp support/loaderprobe.h)
garage_test(tst_reloadrecomputed ELSEWHERE
    LIBRARIES garage_loader
    SOURCES support/loaderprobe.cpp support/loaderprobe.h)

find_package(SQLite3 REQUIRED)
garage_test(tst_faultatanystep
    LIBRARIES SQLite::SQLite3
    SOURCES support/faultyfiles.cpp support/faultyfiles.h)
