garage_test(tst_carslistmodel LIBRARIES garage_models)
garage_test(tst_servicelogmodel LIBRARIES garage_models)
garage_test(tst_servicelogfilter LIBRARIES garage_models)
garage_test(tst_modelcontract
    LIBRARIES garage_models
    SOURCES support/modelcontract.cpp support/modelcontract.h support/positionlessproxy.h
    TIMEOUT 300)
