UPDATE maintainance SET car_id=:car_id,operation_id=:operation_id,operation_time=:operation_time,
person_id=:person_id,person_name=:person_name,comment=:comment,operation_state=1
WHERE remote_id=:remote_id OR id=:localId;
INSERT INTO maintainance (remote_id,car_id,operation_id,operation_time,person_id,person_name,comment)
VALUES (:remote_id,:car_id,:operation_id,:operation_time,:person_id,:person_name,:comment);
