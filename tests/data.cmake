garage_test(tst_datetimetext)
garage_test(tst_duerule)
garage_test(tst_garageupdater
    LIBRARIES garage_loader
    SOURCES support/loaderprobe.cpp support/loaderprobe.h
    TIMEOUT 180)
garage_test(tst_reloadrecomputed
    LIBRARIES garage_loader
    SOURCES support/loaderprobe.cpp support/loaderprobe.h)
