garage_test(tst_carslistmodel ELSEWHERE LIBRARIES garage_models)
garage_test(tst_servicelogmodel ELSEWHERE LIBRARIES garage_models)
garage_test(tst_servicelogfilter ELSEWHERE LIBRARIES garage_models)
garage_test(tst_modelcontract ELSEWHERE
    LIBRARIES garage_settings
    SOURCES support/modelcontract.cpp support/modelcontract.h support/positionlessproxy.h
    TIMEOUT 600)
