#include "host/messages/eventexamples.h"

QVector<EventExample> eventExamples()
{
    const auto remoteRecord = QStringLiteral(
        "[{\\\"id\\\":900,\\\"carId\\\":101,\\\"opId\\\":1,\\\"opDoneDateTime\\\":\\\"2030-01-01T10:00:00."
        "000Z\\\","
        "\\\"serviceCode\\\":\\\"4001\\\",\\\"operatorName\\\":\\\"\\\",\\\"comment\\\":\\\"проверка\\\"}]");
    return {
        {QStringLiteral("run_saved_to_db"), QStringLiteral("{}")},
        {QStringLiteral("run_closed"), QStringLiteral("{}")},
        {QStringLiteral("load_complete"), QStringLiteral("{}")},
        {QStringLiteral("clicked"), QStringLiteral("{\n    \"key\": \"show_garage\"\n}")},
        {QStringLiteral("send_settings_dialogs"), QStringLiteral("{}")},
        {QStringLiteral("cars_list_changed"),
         QStringLiteral(
             "{\n    \"cars\": [\n        {\n            \"id\": 101,\n            \"num\": \"1\",\n"
             "            \"name\": \"Вихрь\",\n            \"available_for_runs\": true\n"
             "        }\n    ],\n    \"noStatsUpdate\": true\n}")},
        {QStringLiteral("personal_list"),
         QStringLiteral("{\n    \"personalList\": [\n        {\n            \"id\": 11,\n"
                        "            \"lastName\": \"Иванов\",\n            \"firstName\": \"Пётр\",\n"
                        "            \"midName\": \"Сергеевич\",\n            \"serviceCode\": \"4001\"\n"
                        "        }\n    ]\n}")},
        {QStringLiteral("car_complain"), QStringLiteral("{\n    \"carId\": 101\n}")},
        {QStringLiteral("remote_control_data"),
         QStringLiteral(
             "{\n    \"msg\": \"switchCarAvailability\",\n    \"data\": {\n        \"carId\": 101\n"
             "    },\n    \"sinkId\": 7\n}")},
        {QStringLiteral("remote_service_data"),
         QStringLiteral("{\n    \"data\": \"%1\"\n}").arg(remoteRecord)},
    };
}
