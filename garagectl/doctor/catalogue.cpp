#include "garagectl/doctor/catalogue.h"

#include <QByteArray>

namespace {

constexpr char rebuildMaintainance[] =
    "BEGIN IMMEDIATE;\n"
    "ALTER TABLE maintainance RENAME TO maintainance_old;\n"
    "CREATE TABLE maintainance (id INTEGER PRIMARY KEY AUTOINCREMENT, car_id INTEGER, operation_id "
    "INTEGER,\n"
    "  operation_time TEXT, person_id INTEGER, person_name TEXT, comment TEXT, operation_state INTEGER "
    "DEFAULT 1,\n"
    "  remote_id INTEGER);\n"
    "INSERT INTO maintainance SELECT id, car_id, operation_id, operation_time, person_id, person_name, "
    "comment,\n"
    "  ifnull(operation_state, 1), remote_id FROM maintainance_old;\n"
    "DROP TABLE maintainance_old;\n"
    "CREATE INDEX maintainance_by_remote_id ON maintainance (remote_id);\n"
    "COMMIT;";
constexpr char rebuildOperations[] =
    "BEGIN IMMEDIATE;\n"
    "ALTER TABLE service_operations RENAME TO service_operations_old;\n"
    "CREATE TABLE service_operations (id INTEGER PRIMARY KEY AUTOINCREMENT, operation_name TEXT);\n"
    "INSERT INTO service_operations SELECT id, operation_name FROM service_operations_old;\n"
    "DROP TABLE service_operations_old;\n"
    "COMMIT;";

} // namespace

const std::vector<FindingText> &DoctorCatalogue::all()
{
    static const QByteArray rebuildBoth = QByteArray(rebuildMaintainance) + '\n' + rebuildOperations;
    static const std::vector<FindingText> texts {
        {"folder-missing",
         Finding::Error,
         {"The folder of the database is missing", "Папки базы нет"},
         {"Host and module cannot open the file: the window stays empty, and nothing that is recorded is "
          "stored.",
          "Программа хронометража и модуль не открывают файл: окно пусто, записанное не сохраняется."},
         {"Start the host once, which makes the folder, or restore a backup into it.",
          "Запустите программу хронометража, она создаст папку, или восстановите копию."}},
        {"file-missing",
         Finding::Error,
         {"The database file is missing", "Файла базы нет"},
         {"The window stays empty. The module makes an empty file without tables, in which nothing can be "
          "stored.",
          "Окно пусто. Модуль создаёт пустой файл без таблиц, в котором ничего не сохраняется."},
         {"Start the host once, which makes the tables, or restore a backup.",
          "Запустите программу хронометража, она создаст таблицы, или восстановите копию."}},
        {"not-a-file",
         Finding::Error,
         {"The path leads to no file", "Путь ведёт не к файлу"},
         {"Host and module cannot open it: the window stays empty, and nothing is stored.",
          "Её не открыть: окно пусто, ничего не сохраняется."},
         {"Move what is there away, and restore a backup.",
          "Уберите то, что лежит на этом месте, и восстановите копию."}},
        {"file-unreadable",
         Finding::Error,
         {"The file may not be read by this user", "Этому пользователю нельзя читать файл"},
         {"A host that this user runs shows an empty window and stores nothing.",
          "У программы хронометража этого пользователя окно пусто, ничего не сохраняется."},
         {"Give the user of the host the right to read and write the file and its folder (chown, chmod).",
          "Дайте пользователю права на чтение и запись файла и папки (chown, chmod)."}},
        {"file-read-only",
         Finding::Error,
         {"The file may not be written by this user", "Этому пользователю нельзя писать в файл"},
         {"Whatever a host of this user records is lost without a message.",
          "Всё, что записывают в программе хронометража этого пользователя, теряется без сообщения."},
         {"Give the user of the host the right to write the file (chown, chmod), or run doctor as that user.",
          "Дайте пользователю право записи в файл (chown, chmod) или запустите doctor от имени того "
          "пользователя."}},
        {"folder-read-only",
         Finding::Error,
         {"The folder may not be written by this user", "Этому пользователю нельзя писать в папку"},
         {"SQLite cannot make its journal beside the file: whatever a host of this user records is lost "
          "without a message.",
          "SQLite не может создать журнал рядом с файлом: записанное теряется без сообщения."},
         {"Give the user of the host the right to write the folder (chown, chmod), or run doctor as that "
          "user.",
          "Дайте пользователю право записи в папку (chown, chmod) или запустите doctor от имени того "
          "пользователя."}},
        {"file-empty",
         Finding::Error,
         {"The file is empty", "Файл пуст"},
         {"There are no tables: the window stays empty, and nothing is stored.",
          "Таблиц нет: окно пусто, ничего не сохраняется."},
         {"Start the host once, which makes the tables, or restore a backup.",
          "Запустите программу хронометража, она создаст таблицы, или восстановите копию."}},
        {"not-a-database",
         Finding::Error,
         {"The file is not an SQLite database", "Файл — не база SQLite"},
         {"No statement of host or module works: the window stays empty, and nothing is stored.",
          "Ни один запрос не выполняется: окно пусто, ничего не сохраняется."},
         {"Put the file aside and restore a backup (garagectl backup --check FILE prints how).",
          "Отложите файл и восстановите копию (как — покажет garagectl backup --check ФАЙЛ)."}},
        {"unfinished-write",
         Finding::Error,
         {"A write was interrupted", "Запись оборвана"},
         {"A program ended in the middle of a commit. Until it is completed or undone, the file cannot be "
          "read without writing.",
          "Программа закрылась посреди записи. Пока она не завершена или не отменена, файл не прочитать."},
         {"Start the host once; never delete the \"-journal\" file.",
          "Запустите программу хронометража; файл «-journal» не удаляйте."}},
        {"damaged",
         Finding::Error,
         {"The file is damaged", "Файл повреждён"},
         {"Rows are missing or wrong, and writes may make it worse.",
          "Строки пропали или неверны, каждая запись может навредить ещё."},
         {"Close the host, put the file aside and restore the newest backup; or save what can be read: "
          "sqlite3 ruvalo.sqlite .recover | sqlite3 recovered.sqlite",
          "Закройте программу хронометража, отложите файл и восстановите последнюю копию; или спасите, что "
          "читается: sqlite3 ruvalo.sqlite .recover | sqlite3 recovered.sqlite"}},
        {"stray-log",
         Finding::Error,
         {"The log beside the file is not its own", "Журнал рядом с файлом не от него"},
         {"SQLite applies the write-ahead log of another database, which makes of both one that is neither.",
          "SQLite применит журнал от другой базы и смешает две базы в одну негодную."},
         {"Close the host, then delete the \"-wal\" and \"-shm\" files; check the file again.",
          "Закройте программу хронометража, удалите файлы «-wal» и «-shm», проверьте снова."}},
        {"log-large",
         Finding::Warning,
         {"The write-ahead log is large", "Журнал -wal очень велик"},
         {"A program reads without a pause or never ends a read: the log grows until the disk is full, and "
          "reading becomes slow.",
          "Какая-то программа читает без перерыва: журнал растёт, пока не кончится место, чтение "
          "замедляется."},
         {"Close every program that has the file open; the last one writes the log into the file.",
          "Закройте все программы, где открыта база: последняя перенесёт журнал в файл."}},
        {"journal-mode",
         Finding::Note,
         {"The file has no write-ahead log", "База без журнала упреждающей записи (WAL)"},
         {"A commit of the host waits until every reload has ended (2 s for a season), and a reload until "
          "every commit has.",
          "Запись ждёт конца каждого пересчёта (2 с на сезоне), а пересчёт — конца записи."},
         {"On a local disk, with the host closed, once:",
          "На местном диске, при закрытой программе хронометража, один раз:"},
         "PRAGMA journal_mode=WAL;"},
        {"disk-full",
         Finding::Error,
         {"The disk is full", "Диск заполнен"},
         {"On a full disk whatever is recorded is lost without a message.",
          "На полном диске всё записанное теряется без сообщения."},
         {"Free space on the disk of the database.", "Освободите место на диске с базой."}},
        {"disk-space",
         Finding::Warning,
         {"Less space is free than the file takes", "Свободно меньше, чем занимает база"},
         {"There is no room for a copy, for VACUUM, or for a large log.",
          "Нет места для копии, для VACUUM и для большого журнала."},
         {"Free space on the disk of the database.", "Освободите место на диске с базой."}},
        {"network-folder",
         Finding::Warning,
         {"The folder is on a network file system", "Папка на сетевом диске"},
         {"Locks of such systems fail: two programs write at once, and the file is damaged. A write-ahead "
          "log cannot be shared at all.",
          "Блокировки там ненадёжны: две программы пишут разом, и файл портится. WAL там не работает вовсе."},
         {"Keep the database on a local disk of the computer on which the host runs.",
          "Держите базу на местном диске компьютера с программой хронометража."}},
        {"synchronised-folder",
         Finding::Warning,
         {"The folder is synchronised by a program", "Папку синхронизирует другая программа"},
         {"Such programs copy and replace the file while it is written: the copy is damaged, and an old one "
          "may come back.",
          "Она копирует и подменяет файл во время записи: копия испорчена, может вернуться и старая."},
         {"Move the database out of that folder; let the program keep the files of garagectl backup instead.",
          "Уберите базу из этой папки; пусть та программа хранит файлы garagectl backup."}},
        {"locked",
         Finding::Error,
         {"Another program keeps the file locked", "Другая программа держит базу"},
         {"Nothing can be read or stored; the window of the host freezes or stays empty.",
          "Ничего не прочитать и не записать; окно не отвечает или пусто."},
         {"Close the program that holds the lock: a second host, a database browser, a copy job.",
          "Закройте программу, которая держит файл: вторую копию, просмотр базы, копирование."}},
        {"lock-held",
         Finding::Warning,
         {"Another program holds a lock now", "Другая программа держит блокировку"},
         {"While it does, the window freezes as soon as something is recorded.",
          "Пока это так, окно перестанет отвечать, как только что-то запишут."},
         {"If it stays, end its transaction or close the program.",
          "Если не проходит, завершите её транзакцию или закройте программу."}},
        {"table-missing",
         Finding::Error,
         {"Tables are missing", "Не хватает таблиц"},
         {"What they hold is shown as empty, and what is recorded into them is lost without a message.",
          "Их содержимое показано пустым, записанное в них теряется без сообщения."},
         {"Start the host, which makes its tables, restore a backup, or create them as in schema.sql "
          "(share/ruvalogarage).",
          "Запустите программу хронометража, восстановите копию или создайте таблицы по schema.sql "
          "(share/ruvalogarage)."}},
        {"column-missing",
         Finding::Error,
         {"Columns are missing", "Не хватает столбцов"},
         {"The statements that name them fail: parts of the window stay empty, or records are lost without a "
          "message.",
          "Запросы с ними не выполняются: часть окна пуста или записи теряются без сообщения."},
         {"Add each of them, for example: ALTER TABLE maintainance ADD COLUMN remote_id INTEGER;",
          "Добавьте каждый, например: ALTER TABLE maintainance ADD COLUMN remote_id INTEGER;"}},
        {"column-type",
         Finding::Warning,
         {"Columns have another type", "Столбцы другого типа"},
         {"SQLite changes values that are stored into them (\"07\" becomes 7), or compares them without an "
          "index.",
          "SQLite меняет значения при записи («07» станет 7) или сравнивает их без индекса."},
         {"Rebuild the table with the types of schema.sql (share/ruvalogarage).",
          "Пересоздайте таблицу с типами из schema.sql (share/ruvalogarage)."}},
        {"id-not-key",
         Finding::Error,
         {"An id is no INTEGER PRIMARY KEY", "id — не INTEGER PRIMARY KEY"},
         {"New rows get no id: they cannot be changed, completed or deleted.",
          "Новые строки остаются без id: их не изменить, не выполнить и не удалить."},
         {"Rebuild the table as in schema.sql (share/ruvalogarage).",
          "Пересоздайте таблицу, как в schema.sql (share/ruvalogarage)."}},
        {"ids-reused",
         Finding::Warning,
         {"Ids of deleted rows are given again", "id удалённых строк выдаются снова"},
         {"Without AUTOINCREMENT a new operation inherits the limits of a deleted one, and the remote side "
          "completes or overwrites another record.",
          "Без AUTOINCREMENT новая операция получает лимиты удалённой, а удалённая сторона перезаписывает "
          "чужую запись."},
         {"Rebuild the tables, with the host closed; make their other indexes and triggers again:",
          "Закрыв программу хронометража, пересоздайте таблицы, затем их прочие индексы и триггеры:"},
         rebuildBoth.constData()},
        {"state-default",
         Finding::Error,
         {"operation_state does not default to 1", "operation_state по умолчанию не 1"},
         {"Work that was done is stored as open: its cell stays red for ever.",
          "Сделанная работа сохраняется открытой: ячейка остаётся красной."},
         {"Rebuild the table, with the host closed; make its other indexes and triggers again:",
          "Закрыв программу хронометража, пересоздайте таблицу, затем её прочие индексы и триггеры:"},
         rebuildMaintainance},
        {"required-column",
         Finding::Error,
         {"A column the module leaves out is required", "Обязателен столбец, который модуль не пишет"},
         {"Each new row fails, so records are lost without a message.",
          "Каждая новая строка отвергается: записи теряются без сообщения."},
         {"Give the column a default, or rebuild the table without NOT NULL.",
          "Задайте столбцу значение по умолчанию или пересоздайте таблицу без NOT NULL."}},
        {"limits-key",
         Finding::Error,
         {"Limits: no key (model, operation_id)", "У лимитов нет ключа (model, operation_id)"},
         {"Each change of a limit adds a row, or deletes other limits, instead of replacing its own.",
          "Каждое изменение лимита добавляет строку или стирает чужие лимиты вместо замены своей."},
         {"Keep the newest row of each, and make the key (drop any other unique index):",
          "Оставьте последние строки и создайте ключ (другие уникальные индексы удалите):"},
         "DELETE FROM service_reglament WHERE rowid NOT IN\n"
         "  (SELECT max(rowid) FROM service_reglament GROUP BY model, operation_id);\n"
         "CREATE UNIQUE INDEX service_reglament_key ON service_reglament (model, operation_id);"},
        {"limits-repeated",
         Finding::Warning,
         {"Several rows of limits for one operation", "Несколько строк лимитов одной операции"},
         {"Only the last row counts; the page of settings and the window may show different ones.",
          "Действует только последняя; настройки и окно могут показать разные."},
         {"Keep the newest row of each:", "Оставьте последнюю строку каждой:"},
         "DELETE FROM service_reglament WHERE rowid NOT IN\n"
         "  (SELECT max(rowid) FROM service_reglament GROUP BY model, operation_id);"},
        {"limits-without-model",
         Finding::Warning,
         {"Rows of limits without a model", "Строки лимитов без модели"},
         {"For karts without a model each change of a limit adds a row: such rows are never replaced.",
          "У картов без модели каждое изменение лимита добавляет строку: такие строки не заменяются."},
         {"Give these karts a model, and keep the newest rows:",
          "Дайте этим картам модель и оставьте последние строки:"},
         "UPDATE cars SET name = '' WHERE name IS NULL;\n"
         "DELETE FROM service_reglament WHERE model IS NULL AND rowid NOT IN\n"
         "  (SELECT max(rowid) FROM service_reglament WHERE model IS NULL GROUP BY operation_id);\n"
         "UPDATE OR IGNORE service_reglament SET model = '' WHERE model IS NULL;\n"
         "DELETE FROM service_reglament WHERE model IS NULL;"},
        {"laps-index",
         Finding::Warning,
         {"Laps have no index that the module can use", "Нет индекса кругов для модуля"},
         {"Each reload reads all laps once for every record: minutes on a season, while the tables stay old.",
          "Каждый пересчёт читает все круги на каждую запись: на сезоне это минуты."},
         {"Create it once:", "Создайте его один раз:"},
         "CREATE INDEX laps_by_car ON laps (car_id, lap_timestamp, sum_sectors, run_id);"},
        {"laps-index-narrow",
         Finding::Note,
         {"The index of laps lacks columns", "В индексе кругов не хватает столбцов"},
         {"Each reload goes to the table for every lap, which takes half as long again.",
          "Каждый пересчёт обращается к таблице за каждым кругом — в полтора раза дольше."},
         {"Create the wider index, and drop the narrow one:", "Создайте широкий индекс, а узкий удалите:"},
         "CREATE INDEX laps_by_car_all ON laps (car_id, lap_timestamp, sum_sectors, run_id);"},
        {"remote-index",
         Finding::Note,
         {"Records have no index of remote ids", "Нет индекса удалённых номеров"},
         {"Each record of the remote side reads the whole service log.",
          "Каждая запись удалённой стороны читает весь журнал обслуживания."},
         {"If the remote side sends many records, create it:",
          "Если удалённая сторона шлёт много записей, создайте его:"},
         "CREATE INDEX maintainance_by_remote_id ON maintainance (remote_id);"},
        {"slow-statement",
         Finding::Note,
         {"Statements of a reload take over a second", "Запросы пересчёта дольше секунды"},
         {"The tables show a change that much later, and without a write-ahead log commits wait as long.",
          "На столько позже обновляются таблицы, а без WAL столько же ждут записи."},
         {"See the findings about indexes and journal mode; else move the laps of past seasons to another "
          "file.",
          "См. находки об индексах и режиме журнала; иначе перенесите круги прошлых сезонов в другой файл."}},
        {"lap-time-number",
         Finding::Error,
         {"Laps with a number for a time", "Круги с числом вместо времени"},
         {"A number is less than every text: these laps never count, and nothing becomes due.",
          "Число меньше любого текста: эти круги не считаются, срок не наступит."},
         {"Let the host write texts. If the numbers are seconds or milliseconds since 1970:",
          "Пусть программа пишет тексты. Если это секунды или миллисекунды с 1970 года:"},
         "UPDATE laps SET lap_timestamp = strftime('%Y-%m-%dT%H:%M:%fZ',\n"
         "  CASE WHEN lap_timestamp > 100000000000 THEN lap_timestamp / 1000.0 ELSE lap_timestamp END, "
         "'unixepoch')\n"
         "  WHERE typeof(lap_timestamp) IN ('integer', 'real');"},
        {"lap-time-empty",
         Finding::Error,
         {"Laps without a time", "Круги без времени"},
         {"They never count.", "Они не считаются."},
         {"Let the host write the time. They may be deleted:",
          "Пусть программа пишет время. Их можно удалить:"},
         "DELETE FROM laps WHERE ifnull(lap_timestamp, '') = '';"},
        {"lap-time-digits",
         Finding::Error,
         {"Laps whose time is not in ASCII", "Круги, чьё время не в ASCII"},
         {"Such digits are greater than all others: the laps count for ever, after every service.",
          "Такие цифры больше любых других: круги считаются всегда, после любой работы."},
         {"A program writes times by the locale of the system: let it write ASCII digits. Arabic and Persian "
          "digits:",
          "Программа пишет время по настройкам системы: нужны цифры ASCII. Арабские и персидские:"},
         "UPDATE laps SET lap_timestamp =\n"
         "  replace(replace(replace(replace(replace(\n"
         "  replace(replace(replace(replace(replace(lap_timestamp,\n"
         "  '٠', '0'), '١', '1'), '٢', '2'), '٣', '3'), '٤', '4'),\n"
         "  '٥', '5'), '٦', '6'), '٧', '7'), '٨', '8'), '٩', '9')\n"
         "  WHERE lap_timestamp GLOB '*[^ -~]*';\n"
         "UPDATE laps SET lap_timestamp =\n"
         "  replace(replace(replace(replace(replace(\n"
         "  replace(replace(replace(replace(replace(lap_timestamp,\n"
         "  '۰', '0'), '۱', '1'), '۲', '2'), '۳', '3'), '۴', '4'),\n"
         "  '۵', '5'), '۶', '6'), '۷', '7'), '۸', '8'), '۹', '9')\n"
         "  WHERE lap_timestamp GLOB '*[^ -~]*';"},
        {"lap-time-unreadable",
         Finding::Error,
         {"Laps whose time is no date and time", "Круги, чьё время — не дата и время"},
         {"They count or not by chance, as texts compare.",
          "Считаются ли они, решает случайное сравнение текстов."},
         {"Write them as 2026-03-01T10:00:00.000Z, in UTC.",
          "Запишите их так: 2026-03-01T10:00:00.000Z, по UTC."}},
        {"lap-time-offset",
         Finding::Error,
         {"Laps in the time of another zone", "Круги по времени другого пояса"},
         {"The comparison ignores the offset: laps are hours too early or too late, and count wrongly.",
          "Сравнение не учитывает смещение: круги на часы раньше или позже и считаются неверно."},
         {"Let the program write UTC, and convert what is stored:",
          "Пусть программа пишет UTC; сохранённое пересчитайте:"},
         "UPDATE laps SET lap_timestamp = strftime('%Y-%m-%dT%H:%M:%fZ', lap_timestamp)\n"
         "  WHERE lap_timestamp GLOB '*[+-][0-9][0-9]:[0-9][0-9]';"},
        {"lap-time-blank",
         Finding::Warning,
         {"Laps with a blank instead of T", "Круги с пробелом вместо T"},
         {"A blank is less than T: on the day of a record these laps count as driven before it.",
          "Пробел меньше T: в день записи эти круги считаются пройденными до неё."},
         {"Let the program write one form. If the times are UTC:",
          "Пусть программа пишет одинаково. Если это время UTC:"},
         "UPDATE laps SET lap_timestamp = strftime('%Y-%m-%dT%H:%M:%fZ', lap_timestamp)\n"
         "  WHERE lap_timestamp GLOB '*-*-* *:*';"},
        {"lap-time-zoneless",
         Finding::Warning,
         {"Laps whose time names no zone", "Круги без указания пояса"},
         {"They are taken for UTC. If a program means local time, laps are hours off.",
          "Они принимаются за UTC. Если это местное время, круги сдвинуты на часы."},
         {"Make sure that it is UTC. If it is:", "Убедитесь, что это UTC. Если да:"},
         "UPDATE laps SET lap_timestamp = strftime('%Y-%m-%dT%H:%M:%fZ', lap_timestamp)\n"
         "  WHERE lap_timestamp GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9][T ]*' AND lap_timestamp NOT "
         "GLOB '*Z';"},
        {"lap-time-precision",
         Finding::Note,
         {"Laps with shorter or longer times", "Круги с другой точностью времени"},
         {"Within one minute or second they sort differently from the others: a lap may count or not by "
          "mistake.",
          "В пределах минуты или секунды порядок иной: круг может быть посчитан по ошибке."},
         {"Write milliseconds and Z everywhere:", "Пишите везде миллисекунды и Z:"},
         "UPDATE laps SET lap_timestamp = strftime('%Y-%m-%dT%H:%M:%fZ', lap_timestamp)\n"
         "  WHERE lap_timestamp GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9][T ]*';"},
        {"lap-time-future",
         Finding::Warning,
         {"Laps in the future", "Круги из будущего"},
         {"They count as driven after everything that is recorded until then.",
          "До того времени они считаются после любой записи."},
         {"Set the clock of the host, and correct these rows; several hours point to local time instead of "
          "UTC.",
          "Поставьте часы и исправьте строки; несколько часов — признак местного времени вместо UTC."}},
        {"record-time-number",
         Finding::Error,
         {"Records with a number for a time", "Записи с числом вместо времени"},
         {"A number is less than every text: all laps count as driven since, and a record with a text is the "
          "latest, however old.",
          "Число меньше любого текста: считаются все круги, а последней будет любая запись с текстом."},
         {"Let the host write texts. If the numbers are seconds or milliseconds since 1970:",
          "Пусть программа пишет тексты. Если это секунды или миллисекунды с 1970 года:"},
         "UPDATE maintainance SET operation_time = strftime('%Y-%m-%dT%H:%M:%fZ',\n"
         "  CASE WHEN operation_time > 100000000000 THEN operation_time / 1000.0 ELSE operation_time END, "
         "'unixepoch')\n"
         "  WHERE typeof(operation_time) IN ('integer', 'real');"},
        {"record-time-empty",
         Finding::Error,
         {"Records without a time", "Записи без времени"},
         {"All laps count as driven since them (an empty text), or none (NULL).",
          "Считаются все круги (пустой текст) или ни один (NULL)."},
         {"Record the work again with its time, and delete these:",
          "Запишите работу заново, с временем, а эти удалите:"},
         "DELETE FROM maintainance WHERE ifnull(operation_time, '') = '';"},
        {"record-time-digits",
         Finding::Error,
         {"Records whose time is not in ASCII", "Записи, чьё время не в ASCII"},
         {"Such digits are greater than all others: no lap counts after it, and no later record replaces it.",
          "Такие цифры больше любых других: после неё не считается ни один круг, новая запись её не сменит."},
         {"A program writes times by the locale of the system: let it write ASCII digits. Arabic and Persian "
          "digits:",
          "Программа пишет время по настройкам системы: нужны цифры ASCII. Арабские и персидские:"},
         "UPDATE maintainance SET operation_time =\n"
         "  replace(replace(replace(replace(replace(\n"
         "  replace(replace(replace(replace(replace(operation_time,\n"
         "  '٠', '0'), '١', '1'), '٢', '2'), '٣', '3'), '٤', '4'),\n"
         "  '٥', '5'), '٦', '6'), '٧', '7'), '٨', '8'), '٩', '9')\n"
         "  WHERE operation_time GLOB '*[^ -~]*';\n"
         "UPDATE maintainance SET operation_time =\n"
         "  replace(replace(replace(replace(replace(\n"
         "  replace(replace(replace(replace(replace(operation_time,\n"
         "  '۰', '0'), '۱', '1'), '۲', '2'), '۳', '3'), '۴', '4'),\n"
         "  '۵', '5'), '۶', '6'), '۷', '7'), '۸', '8'), '۹', '9')\n"
         "  WHERE operation_time GLOB '*[^ -~]*';"},
        {"record-time-unreadable",
         Finding::Error,
         {"Records whose time is no date and time", "Записи, чьё время — не дата и время"},
         {"The window shows no date, and which laps count is chance.",
          "В окне нет даты, какие круги считаются — случайно."},
         {"Write them as 2026-03-01T10:00:00.000Z, in UTC.",
          "Запишите их так: 2026-03-01T10:00:00.000Z, по UTC."}},
        {"record-time-offset",
         Finding::Error,
         {"Records in the time of another zone", "Записи по времени другого пояса"},
         {"The comparison ignores the offset: laps are hours too early or too late, and count wrongly.",
          "Сравнение не учитывает смещение: круги на часы раньше или позже и считаются неверно."},
         {"Let the program write UTC, and convert what is stored:",
          "Пусть программа пишет UTC; сохранённое пересчитайте:"},
         "UPDATE maintainance SET operation_time = strftime('%Y-%m-%dT%H:%M:%fZ', operation_time)\n"
         "  WHERE operation_time GLOB '*[+-][0-9][0-9]:[0-9][0-9]';"},
        {"record-time-blank",
         Finding::Warning,
         {"Records with a blank instead of T", "Записи с пробелом вместо T"},
         {"A blank is less than T: all laps of that day count as driven after it.",
          "Пробел меньше T: все круги этого дня считаются пройденными после."},
         {"Let the program write one form. If the times are UTC:",
          "Пусть программа пишет одинаково. Если это время UTC:"},
         "UPDATE maintainance SET operation_time = strftime('%Y-%m-%dT%H:%M:%fZ', operation_time)\n"
         "  WHERE operation_time GLOB '*-*-* *:*';"},
        {"record-time-zoneless",
         Finding::Warning,
         {"Records whose time names no zone", "Записи без указания пояса"},
         {"They are taken for UTC. If a program means local time, laps are hours off.",
          "Они принимаются за UTC. Если это местное время, круги сдвинуты на часы."},
         {"Make sure that it is UTC. If it is:", "Убедитесь, что это UTC. Если да:"},
         "UPDATE maintainance SET operation_time = strftime('%Y-%m-%dT%H:%M:%fZ', operation_time)\n"
         "  WHERE operation_time GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9][T ]*' AND operation_time "
         "NOT GLOB '*Z';"},
        {"record-time-precision",
         Finding::Note,
         {"Records with shorter or longer times", "Записи с другой точностью времени"},
         {"Within one minute or second they sort differently from the others: a lap may count or not by "
          "mistake.",
          "В пределах минуты или секунды порядок иной: круг может быть посчитан по ошибке."},
         {"Write milliseconds and Z everywhere:", "Пишите везде миллисекунды и Z:"},
         "UPDATE maintainance SET operation_time = strftime('%Y-%m-%dT%H:%M:%fZ', operation_time)\n"
         "  WHERE operation_time GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9][T ]*';"},
        {"record-time-future",
         Finding::Warning,
         {"Records in the future", "Записи из будущего"},
         {"Until then no lap counts since this work, and no other record replaces it.",
          "До того времени круги не считаются, другая запись её не сменит."},
         {"Delete the record in the service log and record it again; several hours point to local time "
          "instead of UTC.",
          "Удалите запись в журнале и запишите снова; несколько часов — признак местного времени вместо "
          "UTC."}},
        {"laps-unknown-car",
         Finding::Warning,
         {"Laps of unknown karts", "Круги неизвестных картов"},
         {"They belong to no row of the window, and are read at each reload if there are records of that "
          "kart.",
          "Их не видно в окне, но если у карта есть записи, они читаются при пересчёте."},
         {"Enter the karts again; or, if they are gone for good:",
          "Заведите карты снова; или, если их больше нет:"},
         "DELETE FROM laps WHERE car_id IS NULL OR car_id NOT IN (SELECT id FROM cars);"},
        {"records-unknown-car",
         Finding::Warning,
         {"Records of unknown karts", "Записи о неизвестных картах"},
         {"The service log shows them without number and model; no cell shows them.",
          "В журнале они без номера и модели, в таблице их нет."},
         {"Enter the karts again; or, if they are gone for good:",
          "Заведите карты снова; или, если их больше нет:"},
         "DELETE FROM maintainance WHERE car_id IS NULL OR car_id NOT IN (SELECT id FROM cars);"},
        {"records-unknown-operation",
         Finding::Warning,
         {"Records of unknown operations", "Записи о неизвестных операциях"},
         {"The service log shows them without a name; a new operation may take over their id.",
          "В журнале они без названия; новая операция может занять их номер."},
         {"Enter the operation under its id again; or delete them:",
          "Заведите операцию с тем же номером; или удалите их:"},
         "DELETE FROM maintainance WHERE operation_id IS NULL\n"
         "  OR operation_id <> -1 AND operation_id NOT IN (SELECT id FROM service_operations);"},
        {"limits-unknown-operation",
         Finding::Note,
         {"Limits of unknown operations", "Лимиты неизвестных операций"},
         {"They do nothing, until a new operation gets their id and with it these limits.",
          "Они не действуют, пока новая операция не получит их номер, а с ним и лимиты."},
         {"Delete them:", "Удалите их:"},
         "DELETE FROM service_reglament WHERE operation_id IS NULL\n"
         "  OR operation_id NOT IN (SELECT id FROM service_operations);"},
        {"limits-unknown-model",
         Finding::Note,
         {"Limits of unknown models", "Лимиты неизвестных моделей"},
         {"They do nothing. If the model was renamed, its karts have no limits: nothing is ever due.",
          "Они не действуют. Если модель переименовали, у её картов нет лимитов: срок не наступит."},
         {"Enter the limits under the new name of the model; then:",
          "Задайте лимиты под новым именем модели; затем:"},
         "DELETE FROM service_reglament WHERE model NOT IN (SELECT name FROM cars WHERE name IS NOT NULL);"},
        {"never-recorded",
         Finding::Warning,
         {"Limits, but the work was never recorded", "Лимиты есть, а работу не записывали"},
         {"Nothing is counted before the first record: the operation is never due for this kart.",
          "До первой записи ничего не считается: срок для этого карта не наступит."},
         {"Record the operation once for each of them (they are listed by: garagectl due --state never).",
          "Запишите операцию один раз для каждого (список: garagectl due --state never)."}},
        {"complaints-repeated",
         Finding::Warning,
         {"Several open complaints of one kart", "Несколько открытых жалоб на один карт"},
         {"The window shows the latest one only; the others are red in the service log for ever.",
          "В таблице видна только последняя; остальные останутся красными в журнале."},
         {"Complete or delete the older ones in the service log.",
          "Выполните или удалите старые в журнале."}},
        {"state-unknown",
         Finding::Warning,
         {"Records neither open nor done", "Записи не открытые и не сделанные"},
         {"NULL is shown as open; other values as done, but the host may read them differently.",
          "NULL показан как открытое; другие значения — как сделанное, но другие программы поймут иначе."},
         {"If the work was done:", "Если работа сделана:"},
         "UPDATE maintainance SET operation_state = 1 WHERE operation_state IS NULL OR operation_state NOT "
         "IN (0, 1);"},
        {"remote-id-repeated",
         Finding::Warning,
         {"One remote id in several records", "Один удалённый номер у нескольких записей"},
         {"The remote side changes all of them at once: all but one are then wrong.",
          "Удалённая сторона меняет их все сразу: верна останется одна."},
         {"Delete the records that are wrong, or unlink them: UPDATE maintainance SET remote_id = NULL WHERE "
          "id = ...;",
          "Удалите неверные записи или отвяжите их: UPDATE maintainance SET remote_id = NULL WHERE id = "
          "...;"}},
        {"remote-id-missing",
         Finding::Warning,
         {"Records of the remote side without an id", "Записи удалённой стороны без номера"},
         {"Records that come without an id are stored as -1, and each one overwrites the one before.",
          "Записи без номера сохраняются под -1, и каждая перезаписывает предыдущую."},
         {"Let the remote side send \"id\"; then keep what is stored:",
          "Пусть удалённая сторона шлёт «id»; сохранённое отвяжите:"},
         "UPDATE maintainance SET remote_id = NULL WHERE remote_id = -1;"},
        {"id-repeated",
         Finding::Error,
         {"An id is there twice", "Один id у двух строк"},
         {"Rows of the window come twice, and a change or deletion strikes both.",
          "Строки в окне двоятся, изменение и удаление задевает обе."},
         {"Give one of the rows another id, then make id an INTEGER PRIMARY KEY.",
          "Дайте одной из строк другой id, затем сделайте id INTEGER PRIMARY KEY."}},
        {"id-too-large",
         Finding::Error,
         {"Ids beyond 32 bits", "id больше 32 бит"},
         {"The module reads another number: changes and deletions strike no record, or another one.",
          "Модуль читает другое число: изменения и удаления не попадают в запись или попадают в чужую."},
         {"Give these rows smaller ids; with AUTOINCREMENT also correct sqlite_sequence.",
          "Дайте этим строкам номера поменьше; с AUTOINCREMENT поправьте и sqlite_sequence."}},
    };
    return texts;
}

Finding DoctorCatalogue::finding(const char *id, qint64 count, const QStringList &examples)
{
    return findingOf(all(), id, count, examples);
}
