<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en">
<context>
    <name>CarStore</name>
    <message>
        <source>unknown command: %1</source>
        <translation>неизвестная команда: %1</translation>
    </message>
    <message>
        <source>a kart needs a number and a model</source>
        <translation>у карта должны быть номер и модель</translation>
    </message>
    <message>
        <source>number %1 is another kart&apos;s</source>
        <translation>номер %1 занят другим картом</translation>
    </message>
</context>
<context>
    <name>CheckContext</name>
    <message>
        <source>nothing</source>
        <translation>ничего</translation>
    </message>
    <message>
        <source>%1 is %2 instead of %3</source>
        <translation>%1: %2 вместо %3</translation>
    </message>
    <message>
        <source>it sent %1 instead of %2</source>
        <translation>отправлено %1 вместо %2</translation>
    </message>
    <message>
        <source>the module of &quot;%1&quot;</source>
        <translation>модуль &quot;%1&quot;</translation>
    </message>
    <message>
        <source>the data of &quot;%1&quot;</source>
        <translation>данные &quot;%1&quot;</translation>
    </message>
    <message>
        <source>the scratch database cannot be made: %1</source>
        <translation>временная база не создаётся: %1</translation>
    </message>
    <message>
        <source>the scratch database: %1</source>
        <translation>временная база: %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; did not come within %2 s</source>
        <translation>&quot;%1&quot; не пришло за %2 с</translation>
    </message>
    <message>
        <source>it sent %1 without a request</source>
        <translation>отправлено %1 без запроса</translation>
    </message>
    <message>
        <source>%1 is not the address of a widget</source>
        <translation>%1 не является адресом виджета</translation>
    </message>
</context>
<context>
    <name>CheckProcess</name>
    <message>
        <source>the program ended before the check was complete</source>
        <translation>программа завершилась до конца проверки</translation>
    </message>
    <message>
        <source>it crashed with signal %1</source>
        <translation>аварийное завершение, сигнал %1</translation>
    </message>
    <message>
        <source>the program ended with code %1</source>
        <translation>программа завершилась с кодом %1</translation>
    </message>
    <message>
        <source>it hangs: the check did not end within %1 s</source>
        <translation>плагин завис: проверка не завершилась за %1 с</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Shows this help.</source>
        <translation>Показать эту справку.</translation>
    </message>
    <message>
        <source>Without a window: sends each line of standard input, {&quot;module&quot;:…,&quot;event&quot;:…,&quot;data&quot;:{…}}, to the plug-in and prints each of its events as such a line. Ends with the input.</source>
        <translation>Без окна: каждая строка стандартного ввода {&quot;module&quot;:…,&quot;event&quot;:…,&quot;data&quot;:{…}} передаётся плагину, каждое его событие печатается такой же строкой. Завершается в конце ввода.</translation>
    </message>
    <message>
        <source>Without a window: prints which services are due, and exits.</source>
        <translation>Без окна: напечатать, какое обслуживание требуется, и завершиться.</translation>
    </message>
    <message>
        <source>Plays the events of a file to the plug-in: JSON lines as for --stdio, and {&quot;wait&quot;:milliseconds}, {&quot;wait&quot;:&quot;answer&quot;}, {&quot;screenshot&quot;:&quot;name&quot;}. A saved message log is such a file. Prints the events of the plug-in. Ends with the file.</source>
        <translation>Сыграть плагину события из файла: строки JSON как у --stdio, а также {&quot;wait&quot;:миллисекунды}, {&quot;wait&quot;:&quot;answer&quot;} и {&quot;screenshot&quot;:&quot;имя&quot;}; годится и сохранённый журнал. События плагина печатаются. Завершается в конце файла.</translation>
    </message>
    <message>
        <source>FILE</source>
        <translation>ФАЙЛ</translation>
    </message>
    <message>
        <source>Saves a screenshot of every page of the window to the folder, prints which services are due, and exits. With --play: the folder of its screenshots. The default without a display, with a folder in the program&apos;s data folder.</source>
        <translation>Пройти по окну, сохранить снимки в папку и завершиться; вместе с --play — только папка для снимков. Без экрана так и происходит, снимки ложатся в папку программы.</translation>
    </message>
    <message>
        <source>FOLDER</source>
        <translation>ПАПКА</translation>
    </message>
    <message>
        <source>Without a window: tests the plug-in from outside, as a timing application uses it. Each check runs in its own process with its own temporary database. Prints a line PASSED, FAILED or SKIPPED with the reason for each check, and the totals.</source>
        <translation>Без окна: испытать плагин снаружи, как его видит программа хронометража. Каждая проверка идёт в своём процессе со своей временной базой; печатается строка PASSED, FAILED или SKIPPED с причиной и в конце итог.</translation>
    </message>
    <message>
        <source>With --validate: prints the report as one JSON object.</source>
        <translation>Вместе с --validate: напечатать итог одним объектом JSON.</translation>
    </message>
    <message>
        <source>With --validate: runs only this check, named as in the report. Can be repeated.</source>
        <translation>Вместе с --validate: только эта проверка, названная как в итоге. Можно повторять.</translation>
    </message>
    <message>
        <source>NAME</source>
        <translation>ИМЯ</translation>
    </message>
    <message>
        <source>With --validate: time limit of each check in seconds. The default is 30.</source>
        <translation>Вместе с --validate: сколько секунд даётся каждой проверке. По умолчанию 30.</translation>
    </message>
    <message>
        <source>SECONDS</source>
        <translation>СЕКУНДЫ</translation>
    </message>
    <message>
        <source>Library of the plug-in. The default is libruvalogarage.so beside the program.</source>
        <translation>Библиотека плагина. По умолчанию libruvalogarage.so рядом с программой.</translation>
    </message>
    <message>
        <source>Data folder of the program. The default is garage-host in the user&apos;s data folder.</source>
        <translation>Папка, где программа держит свои данные. По умолчанию garage-host в папке данных пользователя.</translation>
    </message>
    <message>
        <source>Works with the user&apos;s real documents. Never writes sample data there.</source>
        <translation>Работать с настоящими документами пользователя. Примеры данных туда не записываются.</translation>
    </message>
    <message>
        <source>Contents of a new database: empty (tables only), sample (24 karts, four weeks) or season (60 karts, 3,000,000 laps, 20,000 records). The default is sample.</source>
        <translation>Чем наполнить новую базу: empty (только таблицы), sample (24 карта, четыре недели) или season (60 картов, 3 000 000 кругов, 20 000 записей). По умолчанию sample.</translation>
    </message>
    <message>
        <source>KIND</source>
        <translation>ВИД</translation>
    </message>
    <message>
        <source>Seed of the sample data. The default is 1.</source>
        <translation>Число, из которого выводятся примеры данных. По умолчанию 1.</translation>
    </message>
    <message>
        <source>NUMBER</source>
        <translation>ЧИСЛО</translation>
    </message>
    <message>
        <source>Removes the database in the program&apos;s data folder first.</source>
        <translation>Сначала удалить прежнюю базу из папки программы.</translation>
    </message>
    <message>
        <source>Language of the texts: ru or en. The default is ru if the system&apos;s language is Russian, else en. The garage window is always Russian.</source>
        <translation>Язык текстов: ru или en. По умолчанию ru, если язык системы русский, иначе en. Окно гаража всегда русское.</translation>
    </message>
    <message>
        <source>LANGUAGE</source>
        <translation>ЯЗЫК</translation>
    </message>
    <message>
        <source>Prints every message of Qt and the plug-in to standard error, not only warnings. The log file garage-host.log in the data folder always holds all of them.</source>
        <translation>Печатать в поток ошибок все сообщения Qt и плагина, а не только предупреждения. Файл garage-host.log в папке программы всегда содержит все сообщения.</translation>
    </message>
    <message>
        <source>unexpected argument: %1</source>
        <translation>лишний параметр: %1</translation>
    </message>
    <message>
        <source>the value of --%1 is empty</source>
        <translation>у --%1 пустое значение</translation>
    </message>
    <message>
        <source>unknown kind of data: %1 (known are empty, sample, season)</source>
        <translation>неизвестный вид данных: %1 (есть empty, sample, season)</translation>
    </message>
    <message>
        <source>--seed must be an integer from 0</source>
        <translation>--seed должен быть целым числом от 0</translation>
    </message>
    <message>
        <source>--lang must be one of: %1</source>
        <translation>--lang: допустимы %1</translation>
    </message>
    <message>
        <source>--time-limit must be an integer from 1 to %1</source>
        <translation>--time-limit должен быть целым числом от 1 до %1</translation>
    </message>
    <message>
        <source>--json, --check and --time-limit need --validate</source>
        <translation>--json, --check и --time-limit нужны только вместе с --validate</translation>
    </message>
    <message>
        <source>a check in this process needs --check and --home</source>
        <translation>проверке в этом процессе нужны --check и --home</translation>
    </message>
    <message>
        <source>--documents excludes --home and --fresh</source>
        <translation>--documents не сочетается с --home и --fresh</translation>
    </message>
    <message>
        <source>--stdio, --due, --play and --validate exclude each other</source>
        <translation>--stdio, --due, --play и --validate исключают друг друга</translation>
    </message>
    <message>
        <source>--screenshots excludes --stdio and --due</source>
        <translation>--screenshots не сочетается с --stdio и --due</translation>
    </message>
    <message>
        <source>unknown check: %1 (known are %2)</source>
        <translation>неизвестная проверка: %1 (известны %2)</translation>
    </message>
    <message>
        <source>With --screenshots: size of the window in pixels. The default is 1500x900.</source>
        <translation>Вместе с --screenshots: размер окна в пикселях. По умолчанию 1500x900.</translation>
    </message>
    <message>
        <source>WIDTHxHEIGHT</source>
        <translation>ШИРИНАxВЫСОТА</translation>
    </message>
    <message>
        <source>Shows all windows in a dark palette.</source>
        <translation>Показывает все окна в тёмной палитре.</translation>
    </message>
    <message>
        <source>--window-size must be like 900x600</source>
        <translation>--window-size должен быть вида 900x600</translation>
    </message>
    <message>
        <source>--window-size needs --screenshots</source>
        <translation>--window-size требует --screenshots</translation>
    </message>
    <message>
        <source>Serves the page of the remote side, on which mechanics see what is due and tick it off, at this address. The default is 127.0.0.1:8080: this machine only. Without a display, or with --stdio, there is no window. Ends with SIGINT or SIGTERM.</source>
        <translation>Показывает по этому адресу страницу удалённой стороны, на которой механики видят, что пора делать, и отмечают сделанное. По умолчанию 127.0.0.1:8080, то есть только на этой машине. Без экрана и с --stdio окна нет. Завершается по SIGINT или SIGTERM.</translation>
    </message>
    <message>
        <source>ADDRESS:PORT</source>
        <translation>АДРЕС:ПОРТ</translation>
    </message>
    <message>
        <source>With --serve: certificate, in PEM format; the page is encrypted.</source>
        <translation>С --serve: сертификат в формате PEM; страница шифруется.</translation>
    </message>
    <message>
        <source>With --serve-certificate: its key, in PEM format.</source>
        <translation>С --serve-certificate: ключ сертификата в формате PEM.</translation>
    </message>
    <message>
        <source>With --serve: address of a reverse proxy that names its clients in X-Forwarded-For. Can be repeated.</source>
        <translation>С --serve: адрес обратного прокси, который называет своих клиентов в X-Forwarded-For. Можно повторять.</translation>
    </message>
    <message>
        <source>ADDRESS</source>
        <translation>АДРЕС</translation>
    </message>
    <message>
        <source>With --serve: address under which a reverse proxy shows the page, such as https://garage.example.</source>
        <translation>С --serve: адрес, по которому страницу показывает обратный прокси, например https://garage.example.</translation>
    </message>
    <message>
        <source>URL</source>
        <translation>АДРЕС</translation>
    </message>
    <message>
        <source>Demo host of the garage module: loads the plug-in and exchanges messages with it as a timing application does.

Exit codes: 0 - success, 1 - invalid options, 2 - plug-in not loaded, 3 - no database, 4 - the plug-in did not answer, 5 - some input lines are not messages, 6 - cancelled, 7 - the plug-in failed a check, 8 - a screenshot was not saved, 9 - the page is not served.</source>
        <translation>Демонстрационное приложение для модуля «Гараж»: загружает плагин и разговаривает с ним, как это делает программа хронометража.

Коды завершения: 0 — успех, 1 — неверные параметры, 2 — плагин не загружен, 3 — нет базы данных, 4 — плагин не ответил, 5 — часть входных строк не разобрана, 6 — работа прервана, 7 — плагин не прошёл проверку, 8 — снимок не записан, 9 — страница не показана.</translation>
    </message>
    <message>
        <source>the options that begin with --serve- need --serve</source>
        <translation>параметрам, которые начинаются с --serve-, нужен --serve</translation>
    </message>
    <message>
        <source>--serve must be like 192.168.1.5:8080 or [fd00::1]:8080</source>
        <translation>--serve должен выглядеть как 192.168.1.5:8080 или [fd00::1]:8080</translation>
    </message>
    <message>
        <source>--serve-certificate and --serve-key need each other</source>
        <translation>--serve-certificate и --serve-key нужны вместе</translation>
    </message>
    <message>
        <source>--serve-proxy must be an address like 127.0.0.1</source>
        <translation>--serve-proxy должен быть адресом, например 127.0.0.1</translation>
    </message>
    <message>
        <source>--serve-url must be like https://garage.example</source>
        <translation>--serve-url должен выглядеть как https://garage.example</translation>
    </message>
    <message>
        <source>--serve excludes --due, --play, --validate and --screenshots</source>
        <translation>--serve исключает --due, --play, --validate и --screenshots</translation>
    </message>
</context>
<context>
    <name>DatabaseChecks</name>
    <message>
        <source>the number of services due after the record</source>
        <translation>число требуемых обслуживаний после записи</translation>
    </message>
    <message>
        <source>the number of records stored as sent</source>
        <translation>число записей, сохранённых без изменений</translation>
    </message>
    <message>
        <source>the number of records</source>
        <translation>число записей</translation>
    </message>
    <message>
        <source>the number of records of one remote id</source>
        <translation>число записей с одним удалённым номером</translation>
    </message>
    <message>
        <source>the state of the completed complaint</source>
        <translation>состояние выполненной жалобы</translation>
    </message>
    <message>
        <source>the number of transactions for three records</source>
        <translation>число транзакций на три записи</translation>
    </message>
    <message>
        <source>the list of archived records</source>
        <translation>список архивных записей</translation>
    </message>
    <message>
        <source>the host is blocked for %1 ms by a locked database</source>
        <translation>из-за блокировки базы программа ждёт %1 мс</translation>
    </message>
    <message>
        <source>the number of records after the lock was released</source>
        <translation>число записей после снятия блокировки</translation>
    </message>
    <message>
        <source>the report without a database</source>
        <translation>сообщение без базы</translation>
    </message>
    <message>
        <source>unloading takes %1 ms</source>
        <translation>выгрузка занимает %1 мс</translation>
    </message>
    <message>
        <source>objects remain</source>
        <translation>остались объекты</translation>
    </message>
    <message>
        <source>database connections remain: %1</source>
        <translation>остались соединения с базой: %1</translation>
    </message>
    <message>
        <source>the number of remote records sent before unloading</source>
        <translation>число удалённых записей, отправленных до выгрузки</translation>
    </message>
    <message>
        <source>a remote record is stored, reported and archived</source>
        <translation>удалённая запись сохраняется, учитывается и архивируется</translation>
    </message>
    <message>
        <source>a remote record received twice is stored once</source>
        <translation>удалённая запись, полученная дважды, сохраняется один раз</translation>
    </message>
    <message>
        <source>a remote record closes the complaint with its local id</source>
        <translation>удалённая запись закрывает жалобу с её локальным номером</translation>
    </message>
    <message>
        <source>remote records of one message are stored in one transaction</source>
        <translation>удалённые записи одного сообщения сохраняются одной транзакцией</translation>
    </message>
    <message>
        <source>a locked database neither blocks the host nor loses data</source>
        <translation>блокировка базы не останавливает программу и не теряет данные</translation>
    </message>
    <message>
        <source>without a database it answers and sends an empty report</source>
        <translation>без базы плагин отвечает и отправляет пустое сообщение</translation>
    </message>
    <message>
        <source>unloading completes pending writes and leaves no objects</source>
        <translation>выгрузка завершает запись и не оставляет объектов</translation>
    </message>
</context>
<context>
    <name>DueSession</name>
    <message>
        <source>the plug-in did not answer</source>
        <translation>плагин не ответил</translation>
    </message>
</context>
<context>
    <name>DueTable</name>
    <message>
        <source>%1 h</source>
        <translation>%1 ч</translation>
    </message>
    <message>
        <source>runs %1</source>
        <translation>заездов %1</translation>
    </message>
    <message>
        <source>laps %1</source>
        <translation>кругов %1</translation>
    </message>
    <message>
        <source>No service is due. Karts: %1</source>
        <translation>Обслуживание не требуется. Картов: %1</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Модель</translation>
    </message>
    <message>
        <source>Kart</source>
        <translation>Карт</translation>
    </message>
    <message>
        <source>Operation</source>
        <translation>Операция</translation>
    </message>
    <message>
        <source>Last done</source>
        <translation>Последний раз</translation>
    </message>
    <message>
        <source>Driven</source>
        <translation>Наработка</translation>
    </message>
    <message>
        <source>Limit</source>
        <translation>Лимит</translation>
    </message>
    <message>
        <source>Services due</source>
        <translation>Требуется обслуживание</translation>
    </message>
    <message>
        <source>Entries: %1, karts in all: %2</source>
        <translation>Записей: %1, картов всего: %2</translation>
    </message>
    <message>
        <source>Complaint: %1</source>
        <translation>Жалоба: %1</translation>
    </message>
</context>
<context>
    <name>EventPlayer</name>
    <message>
        <source>cannot read file %1: %2</source>
        <translation>файл %1 не читается: %2</translation>
    </message>
    <message>
        <source>file %1, line %2 is not an event</source>
        <translation>файл %1, строка %2 не является событием</translation>
    </message>
</context>
<context>
    <name>FleetController</name>
    <message>
        <source>Not saved yet, tried again and again: %1</source>
        <translation>Ещё не записано, попытки продолжаются: %1</translation>
    </message>
    <message>
        <source>Not saved: %1</source>
        <translation>Не записано: %1</translation>
    </message>
</context>
<context>
    <name>FleetPanel</name>
    <message>
        <source>Number</source>
        <translation>Номер</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Модель</translation>
    </message>
    <message>
        <source>Available</source>
        <translation>В работе</translation>
    </message>
    <message>
        <source>Last name</source>
        <translation>Фамилия</translation>
    </message>
    <message>
        <source>First name</source>
        <translation>Имя</translation>
    </message>
    <message>
        <source>Middle name</source>
        <translation>Отчество</translation>
    </message>
    <message>
        <source>Service code</source>
        <translation>Сервисный код</translation>
    </message>
    <message>
        <source>Karts</source>
        <translation>Карты</translation>
    </message>
    <message>
        <source>People</source>
        <translation>Люди</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Добавить</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>New model</source>
        <translation>Новая модель</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Новый</translation>
    </message>
    <message>
        <source>Employee</source>
        <translation>Сотрудник</translation>
    </message>
    <message>
        <source>Remove kart %1 (%2)? Its laps and service records stay in the database.</source>
        <translation>Удалить карт %1 (%2)? Его круги и записи об обслуживании останутся в базе.</translation>
    </message>
    <message>
        <source>Remove %1 %2? The service records stay in the database.</source>
        <translation>Удалить: %1 %2? Записи об обслуживании останутся в базе.</translation>
    </message>
    <message>
        <source>Confirmation</source>
        <translation>Подтверждение</translation>
    </message>
</context>
<context>
    <name>HostDatabase</name>
    <message>
        <source>cannot create the folder %1</source>
        <translation>не удаётся создать папку %1</translation>
    </message>
    <message>
        <source>file %1: %2</source>
        <translation>файл %1: %2</translation>
    </message>
</context>
<context>
    <name>HostSettingsDialog</name>
    <message>
        <source>Settings</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
</context>
<context>
    <name>HostWindow</name>
    <message>
        <source>Kart track: garage module demo</source>
        <translation>Картодром — демонстрация гаража</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Трасса</translation>
    </message>
    <message>
        <source>Karts and people</source>
        <translation>Карты и люди</translation>
    </message>
    <message>
        <source>Remote side</source>
        <translation>Удалённая сторона</translation>
    </message>
    <message>
        <source>Message log</source>
        <translation>Журнал обмена</translation>
    </message>
    <message>
        <source>Attention: these are the user&apos;s real documents. File: %1</source>
        <translation>Внимание: это настоящие документы пользователя. Файл: %1</translation>
    </message>
    <message>
        <source>Demo data. File: %1</source>
        <translation>Демонстрационные данные. Файл: %1</translation>
    </message>
    <message>
        <source>Sections</source>
        <translation>Разделы</translation>
    </message>
    <message>
        <source>The remote side is not available</source>
        <translation>Удалённая сторона не работает</translation>
    </message>
    <message>
        <source>screenshot %1 not saved</source>
        <translation>снимок %1 не записан</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>&amp;Настройки</translation>
    </message>
</context>
<context>
    <name>LibraryChecks</name>
    <message>
        <source>the library does not export %1</source>
        <translation>библиотека не экспортирует %1</translation>
    </message>
    <message>
        <source>there is no metadata block</source>
        <translation>нет блока метаданных</translation>
    </message>
    <message>
        <source>the interface identifier</source>
        <translation>идентификатор интерфейса</translation>
    </message>
    <message>
        <source>%1 does not end in /v1.0</source>
        <translation>%1 не кончается на /v1.0</translation>
    </message>
    <message>
        <source>the class name</source>
        <translation>имя класса</translation>
    </message>
    <message>
        <source>the number of metadata entries</source>
        <translation>число записей метаданных</translation>
    </message>
    <message>
        <source>qt_plugin_instance returns null</source>
        <translation>qt_plugin_instance возвращает ноль</translation>
    </message>
    <message>
        <source>the root object has a parent</source>
        <translation>у корневого объекта есть родитель</translation>
    </message>
    <message>
        <source>the second call creates another root object</source>
        <translation>второй вызов создаёт другой корневой объект</translation>
    </message>
    <message>
        <source>no new root object is created after the first one was deleted</source>
        <translation>после удаления корневого объекта новый не создаётся</translation>
    </message>
    <message>
        <source>qobject_cast to the interface returns null</source>
        <translation>qobject_cast к интерфейсу возвращает ноль</translation>
    </message>
    <message>
        <source>the cast back returns another object</source>
        <translation>обратное приведение возвращает другой объект</translation>
    </message>
    <message>
        <source>qt_metacast(&quot;%1&quot;) returns another address</source>
        <translation>qt_metacast(&quot;%1&quot;) возвращает другой адрес</translation>
    </message>
    <message>
        <source>the root object does not inherit %1</source>
        <translation>корневой объект не наследует %1</translation>
    </message>
    <message>
        <source>settingsPage() is not the page that &quot;settings_dialog&quot; names</source>
        <translation>settingsPage() не та страница, которую называет &quot;settings_dialog&quot;</translation>
    </message>
    <message>
        <source>auxiliaryWidget() is not null</source>
        <translation>auxiliaryWidget() не равен нулю</translation>
    </message>
    <message>
        <source>caption()</source>
        <translation>caption()</translation>
    </message>
    <message>
        <source>moduleName()</source>
        <translation>moduleName()</translation>
    </message>
    <message>
        <source>pluginOrder</source>
        <translation>pluginOrder</translation>
    </message>
    <message>
        <source>fileName</source>
        <translation>fileName</translation>
    </message>
    <message>
        <source>method %1 of %2</source>
        <translation>метод %1 класса %2</translation>
    </message>
    <message>
        <source>%1 is of another kind</source>
        <translation>%1 другого вида</translation>
    </message>
    <message>
        <source>the class does not derive from TrivexPluginInterface</source>
        <translation>класс не наследует TrivexPluginInterface</translation>
    </message>
    <message>
        <source>the names of the arguments</source>
        <translation>имена аргументов</translation>
    </message>
    <message>
        <source>emittedEvents()</source>
        <translation>emittedEvents()</translation>
    </message>
    <message>
        <source>subscribedEvents()</source>
        <translation>subscribedEvents()</translation>
    </message>
    <message>
        <source>the library loads as a plug-in of this host</source>
        <translation>библиотека загружается как плагин этой программы</translation>
    </message>
    <message>
        <source>the metadata are the interface identifier and the class name only</source>
        <translation>метаданные содержат только идентификатор интерфейса и имя класса</translation>
    </message>
    <message>
        <source>the entry points return one root object, and a new one after its deletion</source>
        <translation>точки входа возвращают один корневой объект, а после его удаления новый</translation>
    </message>
    <message>
        <source>the root object casts to the interface and back</source>
        <translation>корневой объект приводится к интерфейсу и обратно</translation>
    </message>
    <message>
        <source>the interface&apos;s functions and members are in order</source>
        <translation>функции и поля интерфейса стоят по порядку</translation>
    </message>
    <message>
        <source>signals and slots are found by name</source>
        <translation>сигналы и слоты находятся по именам</translation>
    </message>
    <message>
        <source>the event lists are complete and in order</source>
        <translation>списки событий полны и упорядочены</translation>
    </message>
    <message>
        <source>a host that does not unload the library exits normally</source>
        <translation>программа, которая не выгружает библиотеку, завершается нормально</translation>
    </message>
    <message>
        <source>%1 does not return the metadata block</source>
        <translation>%1 не возвращает блок метаданных</translation>
    </message>
</context>
<context>
    <name>MessageChecks</name>
    <message>
        <source>there is no slot closeGarage()</source>
        <translation>нет слота closeGarage()</translation>
    </message>
    <message>
        <source>the number of records of the person with the service code</source>
        <translation>число записей человека с этим сервисным кодом</translation>
    </message>
    <message>
        <source>the number of records after invalid data</source>
        <translation>число записей после неверных данных</translation>
    </message>
    <message>
        <source>&quot;load_complete&quot; requests cars and remote records</source>
        <translation>&quot;load_complete&quot; вызывает запрос картов и удалённых записей</translation>
    </message>
    <message>
        <source>&quot;clicked&quot; with &quot;show_garage&quot; inserts the window</source>
        <translation>&quot;clicked&quot; с &quot;show_garage&quot; вставляет окно</translation>
    </message>
    <message>
        <source>closing the garage requests to hide the window</source>
        <translation>закрытие гаража вызывает запрос скрыть окно</translation>
    </message>
    <message>
        <source>the settings page is sent on request</source>
        <translation>страница настроек отправляется по запросу</translation>
    </message>
    <message>
        <source>after a saved run the due services and the counters are reported</source>
        <translation>после сохранённого заезда сообщаются требуемое обслуживание и наработка</translation>
    </message>
    <message>
        <source>&quot;cars_list_changed&quot; reloads a visible window only</source>
        <translation>&quot;cars_list_changed&quot; обновляет только видимое окно</translation>
    </message>
    <message>
        <source>people are identified by their service codes</source>
        <translation>люди определяются по сервисным кодам</translation>
    </message>
    <message>
        <source>remote controls switch a car and get an answer</source>
        <translation>пульты переключают карт и получают ответ</translation>
    </message>
    <message>
        <source>unknown and empty events are ignored</source>
        <translation>неизвестные и пустые события игнорируются</translation>
    </message>
    <message>
        <source>invalid data are ignored</source>
        <translation>неверные данные игнорируются</translation>
    </message>
</context>
<context>
    <name>MessageLogModel</name>
    <message>
        <source>→ plug-in</source>
        <translation>→ плагину</translation>
    </message>
    <message>
        <source>← host</source>
        <translation>← хосту</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Время</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Куда</translation>
    </message>
    <message>
        <source>Module</source>
        <translation>Модуль</translation>
    </message>
    <message>
        <source>Event</source>
        <translation>Событие</translation>
    </message>
    <message>
        <source>Bytes</source>
        <translation>Байт</translation>
    </message>
</context>
<context>
    <name>MessageLogPanel</name>
    <message>
        <source>→ plug-in</source>
        <translation>→ плагину</translation>
    </message>
    <message>
        <source>All events</source>
        <translation>Все события</translation>
    </message>
    <message>
        <source>Find in message</source>
        <translation>Найти в сообщении</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Копировать</translation>
    </message>
    <message>
        <source>Save…</source>
        <translation>Сохранить…</translation>
    </message>
    <message>
        <source>Replay…</source>
        <translation>Воспроизвести…</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Очистить</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Отправить</translation>
    </message>
    <message>
        <source>Event for the plug-in</source>
        <translation>Событие плагину</translation>
    </message>
    <message>
        <source>Save message log</source>
        <translation>Сохранить журнал</translation>
    </message>
    <message>
        <source>JSON lines (*.jsonl)</source>
        <translation>Строки JSON (*.jsonl)</translation>
    </message>
    <message>
        <source>Message log not saved</source>
        <translation>Журнал не сохранён</translation>
    </message>
    <message>
        <source>Replay message log</source>
        <translation>Воспроизвести журнал</translation>
    </message>
    <message>
        <source>JSON lines (*.jsonl);;All files (*)</source>
        <translation>Строки JSON (*.jsonl);;Все файлы (*)</translation>
    </message>
    <message>
        <source>Message log cannot be replayed</source>
        <translation>Журнал не воспроизводится</translation>
    </message>
    <message>
        <source>Replaying the message log…</source>
        <translation>Воспроизводится журнал…</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Остановить</translation>
    </message>
    <message>
        <source>The event is missing</source>
        <translation>Не указано событие</translation>
    </message>
    <message>
        <source>The data must be a JSON object</source>
        <translation>Данные должны быть объектом JSON</translation>
    </message>
    <message>
        <source>The data are not JSON: error after character %1</source>
        <translation>Данные не являются JSON: ошибка после символа %1</translation>
    </message>
</context>
<context>
    <name>PhoneDialog</name>
    <message>
        <source>Page for phones</source>
        <translation>Страница для телефонов</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Адрес</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Connected:</source>
        <translation>Подключены:</translation>
    </message>
    <message>
        <source>The address must be like 192.168.1.5:8080</source>
        <translation>Адрес должен выглядеть как 192.168.1.5:8080</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Остановить</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Запустить</translation>
    </message>
    <message>
        <source>The page is not served.</source>
        <translation>Страница не показывается.</translation>
    </message>
    <message>
        <source>Open this address on the phone and sign in with the service code.</source>
        <translation>Откройте этот адрес на телефоне и войдите по сервисному коду.</translation>
    </message>
    <message>
        <source>The connection is not encrypted: use it only in a network that you trust.</source>
        <translation>Соединение не шифруется: пользуйтесь им только в сети, которой доверяете.</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1 (pages: %2)</source>
        <translation>%1 (страниц: %2)</translation>
    </message>
    <message>
        <source>nobody</source>
        <translation>никого</translation>
    </message>
</context>
<context>
    <name>PlaySession</name>
    <message>
        <source>the plug-in did not answer</source>
        <translation>плагин не ответил</translation>
    </message>
</context>
<context>
    <name>PluginHost</name>
    <message>
        <source>file %1 does not exist</source>
        <translation>файла %1 нет</translation>
    </message>
    <message>
        <source>%1 is not a plug-in with the interface %2</source>
        <translation>%1 не является плагином с интерфейсом %2</translation>
    </message>
    <message>
        <source>%1 was built with Qt %2, this host with Qt %3</source>
        <translation>%1 собран с Qt %2, а эта программа — с Qt %3</translation>
    </message>
</context>
<context>
    <name>RemotePanel</name>
    <message>
        <source>Kart</source>
        <translation>Карт</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Модель</translation>
    </message>
    <message>
        <source>Operation</source>
        <translation>Операция</translation>
    </message>
    <message>
        <source>Last done</source>
        <translation>Последний раз</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>№</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Выполнено</translation>
    </message>
    <message>
        <source>Person</source>
        <translation>Исполнитель</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Состояние</translation>
    </message>
    <message>
        <source>Due services</source>
        <translation>Ждёт обслуживания</translation>
    </message>
    <message>
        <source>web service (remote_service_data)</source>
        <translation>веб-служба (remote_service_data)</translation>
    </message>
    <message>
        <source>remote control (remote_control_data)</source>
        <translation>пульт (remote_control_data)</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Примечание</translation>
    </message>
    <message>
        <source>Sent by</source>
        <translation>Через</translation>
    </message>
    <message>
        <source>Switch availability</source>
        <translation>Сменить доступность</translation>
    </message>
    <message>
        <source>Records of the remote side</source>
        <translation>Записи удалённой стороны</translation>
    </message>
    <message>
        <source>Send at once</source>
        <translation>Отправлять сразу</translation>
    </message>
    <message>
        <source>Send waiting</source>
        <translation>Отправить ожидающие</translation>
    </message>
    <message>
        <source>Complaint: %1</source>
        <translation>Жалоба: %1</translation>
    </message>
    <message>
        <source>at the track</source>
        <translation>на трассе</translation>
    </message>
    <message>
        <source>waiting</source>
        <translation>ждёт</translation>
    </message>
    <message>
        <source>sent</source>
        <translation>отправлена</translation>
    </message>
    <message>
        <source>archived</source>
        <translation>в архиве</translation>
    </message>
    <message>
        <source>deleted</source>
        <translation>удалена</translation>
    </message>
    <message>
        <source>%1 %2 (code %3)</source>
        <translation>%1 %2 (код %3)</translation>
    </message>
    <message>
        <source>%1 - %2 (%3)</source>
        <translation>%1 — %2 (%3)</translation>
    </message>
    <message>
        <source>available</source>
        <translation>в работе</translation>
    </message>
    <message>
        <source>not available</source>
        <translation>не в работе</translation>
    </message>
    <message>
        <source>failed, %1</source>
        <translation>не удалась, %1</translation>
    </message>
    <message>
        <source>archived records missing from the database: %1</source>
        <translation>в базе нет архивных записей: %1</translation>
    </message>
    <message>
        <source>deleted records still in the database: %1</source>
        <translation>в базе остались удалённые записи: %1</translation>
    </message>
    <message>
        <source>Comparison: %1 archived, all in the database</source>
        <translation>Сверка: в архиве %1, все есть в базе</translation>
    </message>
    <message>
        <source>Comparison: %1</source>
        <translation>Сверка: %1</translation>
    </message>
    <message>
        <source>Phone</source>
        <translation>Телефон</translation>
    </message>
</context>
<context>
    <name>RemoteSide</name>
    <message>
        <source>Records sent: %1</source>
        <translation>Отправлено записей: %1</translation>
    </message>
    <message>
        <source>Record %1 received: %2</source>
        <translation>Принята запись %1: %2</translation>
    </message>
    <message>
        <source>Record %1 deleted at the track</source>
        <translation>На трассе удалена запись %1</translation>
    </message>
    <message>
        <source>Archived: %1</source>
        <translation>В архив: %1</translation>
    </message>
    <message>
        <source>List of operations changed, operations: %1</source>
        <translation>Список операций изменён, операций: %1</translation>
    </message>
    <message>
        <source>Answer to remote controls: kart %1 %2</source>
        <translation>Ответ пультам: карт %1 %2</translation>
    </message>
    <message>
        <source>available</source>
        <translation>в работе</translation>
    </message>
    <message>
        <source>not available</source>
        <translation>не в работе</translation>
    </message>
    <message>
        <source>Records of the remote side not updated: %1</source>
        <translation>Записи удалённой стороны не обновлены: %1</translation>
    </message>
    <message>
        <source>with unknown id %1</source>
        <translation>с неизвестным id %1</translation>
    </message>
    <message>
        <source>Not recorded: %1</source>
        <translation>Не отмечено: %1</translation>
    </message>
    <message>
        <source>Not recorded: the kart or the operation does not exist any more</source>
        <translation>Не отмечено: этого карта или этой операции больше нет</translation>
    </message>
</context>
<context>
    <name>ScreenshotTour</name>
    <message>
        <source>done on request</source>
        <translation>сделано по заявке</translation>
    </message>
    <message>
        <source>the plug-in did not answer</source>
        <translation>плагин не ответил</translation>
    </message>
</context>
<context>
    <name>StdioSession</name>
    <message>
        <source>line %1 is not an event in JSON: %2</source>
        <translation>строка %1 не является событием в виде JSON: %2</translation>
    </message>
    <message>
        <source>the plug-in did not answer</source>
        <translation>плагин не ответил</translation>
    </message>
</context>
<context>
    <name>TourSession</name>
    <message>
        <source>Opens every page of the window, saves a screenshot of each, and prints which services are due. This takes about 20 seconds.</source>
        <translation>Открываются все страницы окна, каждая сохраняется снимком; затем печатается, какое обслуживание требуется. Это занимает около 20 секунд.</translation>
    </message>
    <message>
        <source>Screenshots: %1</source>
        <translation>Снимки: %1</translation>
    </message>
</context>
<context>
    <name>TrackPanel</name>
    <message>
        <source>Laps wait to be saved: %1</source>
        <translation>Круги ждут записи: %1</translation>
    </message>
    <message>
        <source>Manual run</source>
        <translation>Записать заезд вручную</translation>
    </message>
    <message>
        <source>Record run</source>
        <translation>Записать заезд</translation>
    </message>
    <message>
        <source>Karts of the run</source>
        <translation>Кто ехал</translation>
    </message>
    <message>
        <source>Laps</source>
        <translation>Кругов</translation>
    </message>
    <message>
        <source>Lap time, s</source>
        <translation>Время круга, с</translation>
    </message>
    <message>
        <source>Live simulation</source>
        <translation>Карты едут сами</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Скорость</translation>
    </message>
    <message>
        <source>Saved</source>
        <translation>Записано</translation>
    </message>
    <message>
        <source>On the track</source>
        <translation>На трассе</translation>
    </message>
    <message>
        <source>%1 - %2</source>
        <translation>%1 — %2</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Остановить</translation>
    </message>
    <message>
        <source>Start simulation</source>
        <translation>Выпустить карты на трассу</translation>
    </message>
    <message>
        <source>%1×</source>
        <translation>%1×</translation>
    </message>
    <message>
        <source>runs %1, laps %2</source>
        <translation>заездов %1, кругов %2</translation>
    </message>
    <message>
        <source>no.&#xa0;%1:&#xa0;%2</source>
        <translation>№&#xa0;%1:&#xa0;%2</translation>
    </message>
    <message>
        <source>removed</source>
        <translation>удалён</translation>
    </message>
    <message>
        <source>run %1, number: laps
%2</source>
        <translation>заезд %1 — номер: круги
%2</translation>
    </message>
    <message>
        <source>none</source>
        <translation>никого</translation>
    </message>
</context>
<context>
    <name>Validation</name>
    <message>
        <source>file %1 does not exist</source>
        <translation>файла %1 нет</translation>
    </message>
    <message>
        <source>the library does not load: %1</source>
        <translation>библиотека не загружается: %1</translation>
    </message>
    <message>
        <source>%1 passed, %2 failed</source>
        <translation>пройдено %1, не пройдено %2</translation>
    </message>
    <message>
        <source>, %1 skipped</source>
        <translation>, пропущено %1</translation>
    </message>
</context>
<context>
    <name>WebService</name>
    <message>
        <source>no web server at %1: %2</source>
        <translation>веб-сервер не запущен по адресу %1: %2</translation>
    </message>
</context>
<context>
    <name>WindowChecks</name>
    <message>
        <source>the window has no &quot;%1&quot;</source>
        <translation>в окне нет &quot;%1&quot;</translation>
    </message>
    <message>
        <source>no dialog opened for car %1</source>
        <translation>для карта %1 не открылся диалог</translation>
    </message>
    <message>
        <source>the number of records after a cancelled complaint</source>
        <translation>число записей после отмены жалобы</translation>
    </message>
    <message>
        <source>the number of open complaints about car 1</source>
        <translation>число открытых жалоб на карт 1</translation>
    </message>
    <message>
        <source>the number of records after the open complaint was amended</source>
        <translation>число записей после дополнения открытой жалобы</translation>
    </message>
    <message>
        <source>no button appears over a cell of the maintenance table</source>
        <translation>над ячейкой таблицы обслуживания не появляется кнопка</translation>
    </message>
    <message>
        <source>the service button opens no dialog</source>
        <translation>кнопка обслуживания не открывает диалог</translation>
    </message>
    <message>
        <source>the keys of &quot;add_remote_service&quot;</source>
        <translation>ключи &quot;add_remote_service&quot;</translation>
    </message>
    <message>
        <source>the number of new done records</source>
        <translation>число новых выполненных записей</translation>
    </message>
    <message>
        <source>no confirmation dialog opens</source>
        <translation>диалог подтверждения не открывается</translation>
    </message>
    <message>
        <source>the number of records with the deleted id</source>
        <translation>число записей с удалённым номером</translation>
    </message>
    <message>
        <source>the number of records left</source>
        <translation>число оставшихся записей</translation>
    </message>
    <message>
        <source>&quot;car_complain&quot; opens the complaint dialog; a car has one open complaint</source>
        <translation>&quot;car_complain&quot; открывает диалог жалобы; у карта одна открытая жалоба</translation>
    </message>
    <message>
        <source>the availability buttons notify the host and the remote controls</source>
        <translation>кнопки доступности уведомляют программу и пульты</translation>
    </message>
    <message>
        <source>a service recorded in the window is stored and announced</source>
        <translation>обслуживание, записанное в окне, сохраняется, и о нём сообщается</translation>
    </message>
    <message>
        <source>a record deleted in the window is deleted and announced</source>
        <translation>запись, удалённая в окне, удаляется из базы, и об этом сообщается</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>generating sample data: %1 %</source>
        <translation>готовятся примеры данных: %1 %</translation>
    </message>
    <message>
        <source>Generating sample data…</source>
        <translation>Готовятся примеры данных…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Прервать</translation>
    </message>
    <message>
        <source>the database is not ready: %1</source>
        <translation>база данных не готова: %1</translation>
    </message>
    <message>
        <source>the generation of sample data was cancelled</source>
        <translation>подготовка примеров данных прервана</translation>
    </message>
    <message>
        <source>sample data not written: %1</source>
        <translation>примеры данных не записаны: %1</translation>
    </message>
    <message>
        <source>libruvalogarage.so was not found beside the program</source>
        <translation>libruvalogarage.so рядом с программой не найдена</translation>
    </message>
    <message>
        <source>plug-in not loaded: %1</source>
        <translation>плагин не загружен: %1</translation>
    </message>
    <message>
        <source>--data was not applied: no sample data are written to the user&apos;s documents</source>
        <translation>--data не применён: в документы пользователя примеры данных не записываются</translation>
    </message>
    <message>
        <source>--data was not applied: file %1 has data already; --fresh starts over</source>
        <translation>--data не применён: в файле %1 уже есть данные; --fresh начинает заново</translation>
    </message>
    <message>
        <source>Page for phones: %1</source>
        <translation>Страница для телефонов: %1</translation>
    </message>
</context>
</TS>
