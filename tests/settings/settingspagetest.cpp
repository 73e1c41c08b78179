#include "settingspagetest.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVBoxLayout>

void SettingsPageTest::init()
{
    DatabaseTest::init();
    database->addCar(1, "1", "SODI");
    database->addCar(2, "2", "Rimo");
    database->addCar(3, "3", "SODI");
    database->addOperation(2, "Масло");
    database->addOperation(5, "Цепь");
    database->addLimit("SODI", 2, 5400, 10, 0);
}

void SettingsPageTest::cleanup()
{
    QVERIFY(allDialogsAnswered());
    m_events.reset();
    m_host.reset();
    DatabaseTest::cleanup();
}

void SettingsPageTest::open()
{
    m_host = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(m_host.get());
    m_form = new GarageSettingsForm;
    layout->addWidget(m_form);
    m_events = std::make_unique<QSignalSpy>(m_form.data(), &GarageSettingsForm::pluginSignal);
    for (QAbstractItemModel *model : {operations(), schedule()})
        new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::Fatal, m_form);
    m_host->show();
    QVERIFY(QTest::qWaitForWindowActive(m_host.get()));
}

QStringList SettingsPageTest::titles() const
{
    QStringList texts;
    for (int column = 2; column < schedule()->columnCount(); ++column)
        texts.append(schedule()->headerData(column, Qt::Horizontal).toString());
    return texts;
}

void SettingsPageTest::trigger(const char *action) const
{
    find<QAction>(action)->trigger();
}

void SettingsPageTest::select(int row) const
{
    click(operationsView(), operations()->index(row, 1));
    QCOMPARE(operationsView()->currentIndex().row(), row);
}

void SettingsPageTest::startRenaming(int row) const
{
    select(row);
    QTest::keyClick(operationsView(), Qt::Key_F2);
    QVERIFY(editor());
}

QLineEdit *SettingsPageTest::editor() const
{
    return operationsView()->viewport()->findChild<QLineEdit *>();
}

void SettingsPageTest::enterName(const QString &name) const
{
    QVERIFY(editor());
    QVERIFY(editor()->hasFocus());
    enterText(editor(), name);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_VERIFY(!editor());
}

QPair<QStringList, QStringList> SettingsPageTest::stored(const TestDatabase &file)
{
    return {file.rows("SELECT * FROM service_operations ORDER BY id"),
            file.rows("SELECT * FROM service_reglament ORDER BY model,operation_id")};
}

QStringList SettingsPageTest::takeAnnouncedOperations()
{
    if (m_events->count() != 1)
        return {QString("%1 messages").arg(m_events->count())};
    const QVariantList event = m_events->takeFirst();
    const QJsonObject data = event.at(2).toJsonObject();
    const QString text = QJsonDocument(data).toJson();
    if (event.at(0) != "garage_settings" || event.at(1) != "service_ops_changed"
        || data.keys() != QStringList("opsList"))
        return {event.at(0).toString(), event.at(1).toString(), text};
    QStringList rows;
    for (const QJsonValue &value : data.value("opsList").toArray()) {
        const QJsonObject operation = value.toObject();
        if (operation.keys() != QStringList({"id", "opName"}) || !operation.value("id").isDouble()
            || !operation.value("opName").isString())
            return {text};
        rows.append(
            QString("%1|%2").arg(operation.value("id").toInt()).arg(operation.value("opName").toString()));
    }
    return rows;
}
