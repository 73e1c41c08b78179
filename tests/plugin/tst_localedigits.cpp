#include "data/records.h"
#include "support/garagetest.h"
#include "support/json.h"
#include "support/loadedplugin.h"
#include "support/userinput.h"

#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QJsonDocument>
#include <QProcess>
#include <QStyledItemDelegate>
#include <QTemporaryDir>
#include <QTreeView>

/// Messages, cells and dialogs have ASCII digits in every system locale. Each locale needs a process of
/// its own, because Qt reads it once.
class TestLocaleDigits : public GarageTest
{
    Q_OBJECT
private slots:
    void everyTextIsTheSameInEveryLocale_data();
    void everyTextIsTheSameInEveryLocale();
    /// Writes the texts of one session to the file of that environment variable, or nowhere.
    void textsOfOneSession();

private:
    static QByteArray textsUnder(const QString &variable, const QString &locale);
};

namespace {

constexpr char outputVariable[] = "GARAGE_TEXTS_FILE";

/// As a view shows them, with the conversions of its delegate.
QStringList shownCells(const QTreeView &view)
{
    const auto *delegate = qobject_cast<const QStyledItemDelegate *>(view.itemDelegate());
    QStringList rows;
    for (int row = 0; row < view.model()->rowCount(); ++row) {
        QStringList cells(view.objectName());
        for (int column = 0; column < view.model()->columnCount(); ++column)
            cells.append(delegate->displayText(view.model()->index(row, column).data(), view.locale()));
        rows.append(cells.join('|'));
    }
    return rows;
}

QString messageText(const LoadedPlugin::Message &message)
{
    return message.event + ' ' + QString(QJsonDocument(message.data).toJson(QJsonDocument::Compact));
}

/// Accepts the next dialog and stores the text of its date field.
void acceptNextDialog(QString &shownDate)
{
    onNextDialog([&shownDate](QDialog &dialog) {
        auto *date = child<QDateTimeEdit>(dialog, "deOperationDateTime");
        date->setDateTime(QDateTime(QDate(2026, 3, 9), QTime(8, 7)));
        shownDate = date->text();
        press(dialog, QDialogButtonBox::Ok);
    });
}

void addRecords(const TestDatabase &database)
{
    database.addCar(1, "10", "Sodi");
    database.addCar(2, "9", "RX");
    database.addOperation(1, "Oil");
    database.addLimit("Sodi", 1, 5400, 10, 20);
    database.addRecord(1, 1, "2026-03-04T05:06Z", DoneState);
    database.addRecord(2, -1, "2026-03-05T06:07:08.009Z", OpenState, "knocks");
    for (int lap = 10; lap < 40; ++lap)
        database.addLap(1, 1, QString("2026-03-06T05:%1:00.000Z").arg(lap), 61000);
}

} // namespace

void TestLocaleDigits::textsOfOneSession()
{
    const auto database = createDatabase();
    addRecords(*database);
    QStringList texts;
    {
        LoadedPlugin host;
        host.showWindow();
        QWidget *window = host.window();
        QWidget *page = host.settingsPage();
        host.takeMessages(); // the addresses of widgets
        const auto *table = window->findChild<QTreeView *>("tvMaintainanceTable");
        auto *log = window->findChild<QTreeView *>("tvServiceLog");
        const auto reload = [&] {
            for (const LoadedPlugin::Message &message : host.awaitReload()) {
                if (message.event != "remote_service_move_to_archive") // may come later
                    texts.append(messageText(message));
            }
        };
        const auto appendTables = [&] {
            for (const QWidget *widget : {window, page}) {
                for (const QTreeView *view : widget->findChildren<QTreeView *>())
                    texts += shownCells(*view);
            }
        };
        host.send("cars_list_changed", json(R"({"cars": [{"id": 1, "name": "Sodi", "num": "10"}]})"));
        reload();
        appendTables();

        QString shownDate;
        acceptNextDialog(shownDate);
        QMetaObject::invokeMethod(window, "serviceClicked", Q_ARG(QModelIndex, table->model()->index(1, 3)));
        texts.append(shownDate);
        reload();

        acceptNextDialog(shownDate);
        log->setCurrentIndex(log->model()->index(0, 0));
        QMetaObject::invokeMethod(window, "on_actionDoneOperation_triggered");
        texts.append(shownDate);
        for (const LoadedPlugin::Message &message : host.takeMessages())
            texts.append(messageText(message));

        host.send("remote_service_data",
                  {{"data", R"([{"id":7,"carId":2,"opId":-1,"opDoneDateTime":"2026-03-10T11:12Z"}])"}});
        reload();
        appendTables();
    }
    texts += database->rows("SELECT * FROM maintainance ORDER BY id");

    QVERIFY(texts.join('\n').contains("2026-03-04T05:06"));
    for (const QString &text : qAsConst(texts)) {
        const bool hasOther =
            std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.isDigit() && c.unicode() > '9'; });
        QVERIFY2(!hasOther, qPrintable(text));
    }
    if (qEnvironmentVariableIsSet(outputVariable)) {
        QFile file(qEnvironmentVariable(outputVariable));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(texts.join('\n').toUtf8());
    }
}

QByteArray TestLocaleDigits::textsUnder(const QString &variable, const QString &locale)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("texts");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", QString());
    environment.insert("LANG", "C.UTF-8");
    environment.insert(variable, locale);
    environment.insert(outputVariable, path);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {"tst_localedigits", "textsOfOneSession"});
    process.waitForFinished(120000);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return process.readAll();
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestLocaleDigits::everyTextIsTheSameInEveryLocale_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("locale");
    QTest::newRow("Persian") << "LC_ALL"
                             << "fa_IR.UTF-8";
    QTest::newRow("Arabic") << "LC_ALL"
                            << "ar_EG.UTF-8";
    QTest::newRow("Persian numbers alone") << "LC_NUMERIC"
                                           << "fa_IR.UTF-8";
}

void TestLocaleDigits::everyTextIsTheSameInEveryLocale()
{
    QFETCH(QString, variable);
    QFETCH(QString, locale);
    const QByteArray expected = textsUnder("LC_ALL", "C.UTF-8");
    QVERIFY(expected.contains("2026-03-04T05:06"));
    QCOMPARE(textsUnder(variable, locale), expected);
}

GARAGE_TEST(TestLocaleDigits)
#include "tst_localedigits.moc"
