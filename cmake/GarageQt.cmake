# The Qt that everything is built with; targets are linked by their versionless names (Qt::Core).
set(GARAGE_QT 5 CACHE STRING "Major version of Qt: 5 (5.15) or 6 (6.4 or later)")
set_property(CACHE GARAGE_QT PROPERTY STRINGS 5 6)
if(GARAGE_QT EQUAL 5)
    set(GARAGE_QT_MINIMUM 5.15)
elseif(GARAGE_QT EQUAL 6)
    set(GARAGE_QT_MINIMUM 6.4)
else()
    message(FATAL_ERROR "GARAGE_QT is ${GARAGE_QT}; 5 and 6 are supported")
endif()
set(QT_DEFAULT_MAJOR_VERSION ${GARAGE_QT})

# garage_find_qt(COMPONENTS...): the libraries of that Qt; stops if one is missing.
macro(garage_find_qt)
    find_package(Qt${GARAGE_QT} ${GARAGE_QT_MINIMUM} REQUIRED COMPONENTS ${ARGN})
endmacro()
