#include "garagectl/doctor/rowcheck.h"

#include "garagectl/database/select.h"
#include "garagectl/doctor/catalogue.h"

const std::vector<RowCheck::Check> &RowCheck::all()
{
    static const std::vector<Check> checks {
        {"laps-unknown-car",
         "SELECT laps, 'car_id ' || ifnull(car_id, 'NULL') FROM "
         "(SELECT car_id, count(*) AS laps FROM laps GROUP BY car_id) l "
         "WHERE NOT EXISTS (SELECT 1 FROM cars WHERE cars.id = l.car_id)"},
        {"records-unknown-car",
         "SELECT count(*), 'car_id ' || ifnull(car_id, 'NULL') FROM maintainance m "
         "WHERE NOT EXISTS (SELECT 1 FROM cars WHERE cars.id = m.car_id) GROUP BY car_id"},
        {"records-unknown-operation",
         "SELECT count(*), 'operation_id ' || ifnull(operation_id, 'NULL') FROM maintainance m "
         "WHERE operation_id IS NOT -1 AND NOT EXISTS "
         "(SELECT 1 FROM service_operations o WHERE o.id = m.operation_id) GROUP BY operation_id"},
        {"limits-unknown-operation",
         "SELECT count(*), 'operation_id ' || ifnull(operation_id, 'NULL') FROM service_reglament r "
         "WHERE NOT EXISTS (SELECT 1 FROM service_operations o WHERE o.id = r.operation_id) "
         "GROUP BY operation_id"},
        {"limits-unknown-model",
         "SELECT count(*), model FROM service_reglament r WHERE model IS NOT NULL AND NOT EXISTS "
         "(SELECT 1 FROM cars WHERE cars.name = r.model) GROUP BY model"},
        {"limits-without-model",
         "SELECT count(*), 'operation_id ' || ifnull(operation_id, 'NULL') FROM service_reglament "
         "WHERE model IS NULL GROUP BY operation_id"},
        {"limits-repeated",
         "SELECT count(*), model || ', operation_id ' || operation_id FROM service_reglament "
         "WHERE model IS NOT NULL GROUP BY model, operation_id HAVING count(*) > 1"},
        {"never-recorded",
         "SELECT count(*), group_concat('\"' || num || '\"', ', ') || ': ' || operation_name FROM ("
         "SELECT DISTINCT c.id, c.num, o.id AS operation, o.operation_name FROM cars c "
         "JOIN service_reglament r ON r.model = c.name JOIN service_operations o ON o.id = r.operation_id "
         "WHERE (r.time_limit <> 0 OR r.runs_limit <> 0 OR r.laps_limit <> 0) AND NOT EXISTS "
         "(SELECT 1 FROM maintainance m WHERE m.car_id = c.id AND m.operation_id = o.id)) "
         "GROUP BY operation"},
        {"complaints-repeated",
         "SELECT count(*), 'car_id ' || ifnull(car_id, 'NULL') || ': id ' || group_concat(id, ', ') "
         "FROM maintainance WHERE operation_id = -1 AND operation_state = 0 GROUP BY car_id "
         "HAVING count(*) > 1"},
        {"state-unknown",
         "SELECT 1, 'id ' || ifnull(id, 'NULL') || ': ' || ifnull(operation_state, 'NULL') "
         "FROM maintainance WHERE operation_state IS NULL OR operation_state NOT IN (0, 1)"},
        {"remote-id-repeated",
         "SELECT count(*), 'remote_id ' || remote_id || ': id ' || group_concat(id, ', ') "
         "FROM maintainance WHERE remote_id IS NOT NULL AND remote_id <> -1 GROUP BY remote_id "
         "HAVING count(*) > 1"},
        {"remote-id-missing", "SELECT 1, 'id ' || ifnull(id, 'NULL') FROM maintainance WHERE remote_id = -1"},
        {"id-repeated",
         "SELECT count(*), 'cars.id ' || id FROM cars WHERE id IS NOT NULL GROUP BY id HAVING count(*) > 1 "
         "UNION ALL SELECT count(*), 'personal.id ' || id FROM personal WHERE id IS NOT NULL GROUP BY id "
         "HAVING count(*) > 1 "
         "UNION ALL SELECT count(*), 'maintainance.id ' || id FROM maintainance WHERE id IS NOT NULL "
         "GROUP BY id HAVING count(*) > 1 "
         "UNION ALL SELECT count(*), 'service_operations.id ' || id FROM service_operations "
         "WHERE id IS NOT NULL GROUP BY id HAVING count(*) > 1"},
        {"id-too-large",
         "SELECT 1, 'cars.id ' || id FROM cars WHERE abs(id) > 2147483647 "
         "UNION ALL SELECT 1, 'maintainance.id ' || id FROM maintainance WHERE abs(id) > 2147483647 "
         "UNION ALL SELECT 1, 'service_operations.id ' || id FROM service_operations "
         "WHERE abs(id) > 2147483647"},
    };
    return checks;
}

Findings RowCheck::run(const GarageDatabase &database, const Check &check)
{
    qint64 count = 0;
    QStringList examples;
    Select::forEachRow(database, QString::fromLatin1(check.statement), [&](const QSqlQuery &row) {
        count += row.value(0).toLongLong();
        if (examples.size() < mostExamples)
            examples.append(row.value(1).toString());
    });
    if (count == 0)
        return {};
    return {DoctorCatalogue::finding(check.id, count, examples)};
}
