add_library(garage_windowsupport STATIC
    support/garagewindow.cpp support/garagewindow.h)
target_link_libraries(garage_windowsupport PUBLIC garage_testsupport garage_window PRIVATE garage_flags)

garage_test(tst_garageform LIBRARIES garage_windowsupport)
garage_test(tst_caravailability LIBRARIES garage_windowsupport)
