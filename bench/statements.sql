SELECT id,num,name FROM cars;
select m.*,sum(sum_sectors)/1000 as tt ,count(lap_id) as lc,count(distinct run_id) as rc from
(select car_id,operation_id,max(operation_time) as ot,operation_state,comment,id from maintainance
group by car_id,operation_id) m left outer join laps on (laps.car_id=m.car_id and
laps.lap_timestamp>m.ot and laps.sum_sectors>0) group by m.car_id,m.operation_id;
select maintainance.car_id,maintainance.operation_id,maintainance.remote_id,maintainance.id,num,
cars.name as model,operation_time,operation_name,
ifnull(p.last_name||' '||p.first_name||' '||p.mid_name,maintainance.person_name) as pname,
comment,operation_state from maintainance left join cars on cars.id=maintainance.car_id
left join service_operations on service_operations.id=maintainance.operation_id
left join personal p on p.id=maintainance.person_id order by operation_time desc;
SELECT * FROM service_reglament left join service_operations on
service_reglament.operation_id=service_operations.id;
SELECT * FROM service_operations;
