#include "settings/servicedialog.h"
#include "support/garagetest.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QJsonObject>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>

/// The dialog for a service done or a complaint.
class TestServiceDialog : public GarageTest
{
    Q_OBJECT
private slots:
    void theFormReadsAsIntended();
    void operationsComeByIdAndEndWithNone();
    void peopleComeInOrderAfterNone();
    void aNameLeavesOutEmptyParts_data();
    void aNameLeavesOutEmptyParts();
    void anOperationIsChosenById_data();
    void anOperationIsChosenById();
    void aPersonIsChosenByName();
    void filledAgainTheListsStartAnew();
    void aLockedOperationCannotBeChanged();
    void titlesGrow();
    void complaintModeAsksForATask();
    void acceptingGivesWhatTheUserEntered();
    void acceptingAnUntouchedDialogGivesNobodyAndNothing();
    void aPersonWithoutIdKeepsTheName();
    void anOperationCalledNoneHasNoName();
    void cancellingGivesNothing_data();
    void cancellingGivesNothing();
    void tabGoesThroughTheFieldsInOrder();
    void anyListFitsIntoTheDialog();
    void nothingIsCutOff_data();
    void nothingIsCutOff();
};

namespace {

const QDateTime sampleTime(QDate(2024, 3, 9), QTime(18, 5));

QJsonObject person(int id, const QString &last, const QString &first, const QString &mid)
{
    return {{QStringLiteral("id"), id},
            {QStringLiteral("lastName"), last},
            {QStringLiteral("firstName"), first},
            {QStringLiteral("midName"), mid}};
}

/// The dialog with its fields at hand.
struct Form
{
    Form()
    {
        dialog.setOperations({{7, QStringLiteral("Цепь")}, {2, QStringLiteral("Замена масла")}});
        dialog.setPersonal(
            {person(31, QStringLiteral("Петров"), QStringLiteral("Пётр"), QString()),
             person(4, QStringLiteral("Иванов"), QStringLiteral("Иван"), QStringLiteral("Иванович"))});
        dialog.setDateTime(sampleTime);
    }

    template<class Widget> Widget *field(const char *name) const
    {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
    QComboBox *operation() const { return field<QComboBox>("cbOperation"); }
    QComboBox *personal() const { return field<QComboBox>("cbPersonal"); }
    QPlainTextEdit *comments() const { return field<QPlainTextEdit>("teComments"); }
    QDateTimeEdit *time() const { return field<QDateTimeEdit>("deOperationDateTime"); }
    QLabel *label(const char *name) const { return field<QLabel>(name); }
    QPushButton *button(QDialogButtonBox::StandardButton which) const
    {
        return field<QDialogButtonBox>("buttonBox")->button(which);
    }
    bool show()
    {
        dialog.show();
        dialog.activateWindow();
        return QTest::qWaitForWindowActive(&dialog);
    }

    ServiceDialog dialog;
};

QStringList texts(const QComboBox *combo)
{
    QStringList list;
    for (int i = 0; i < combo->count(); ++i)
        list.append(combo->itemText(i));
    return list;
}

QVariantList ids(const QComboBox *combo)
{
    QVariantList list;
    for (int i = 0; i < combo->count(); ++i)
        list.append(combo->itemData(i, Qt::UserRole));
    return list;
}

} // namespace

void TestServiceDialog::theFormReadsAsIntended()
{
    const Form form;
    QCOMPARE(form.dialog.windowTitle(), QStringLiteral("Сервисное обслуживание"));
    const auto *layout = form.dialog.findChild<QFormLayout *>(QStringLiteral("formLayout"));
    QVERIFY(layout);
    const struct
    {
        const char *label;
        QString text;
        QWidget *field;
    } rows[] = {{"label", QStringLiteral("Дата и время"), form.time()},
                {"label_2", QStringLiteral("Операция"), form.operation()},
                {"label_4", QStringLiteral("Исполнитель"), form.personal()},
                {"lComment", QStringLiteral("Примечание"), form.comments()}};
    QCOMPARE(layout->rowCount(), 4);
    for (const auto &row : rows) {
        QCOMPARE(form.label(row.label)->text(), row.text);
        QCOMPARE(layout->labelForField(row.field), form.label(row.label));
        QCOMPARE(form.label(row.label)->buddy(), row.field);
    }
    QCOMPARE(form.time()->displayFormat(), QStringLiteral("dd.MM.yyyy HH:mm"));
    QCOMPARE(form.time()->text(), QStringLiteral("09.03.2024 18:05"));
    QCOMPARE(form.button(QDialogButtonBox::Ok)->text(), QStringLiteral("ОК"));
    QCOMPARE(form.button(QDialogButtonBox::Cancel)->text(), QStringLiteral("Отмена"));
    QCOMPARE(form.dialog.personId(), -1);
    QCOMPARE(form.dialog.operationId(), -1);
}

void TestServiceDialog::operationsComeByIdAndEndWithNone()
{
    Form form;
    QCOMPARE(texts(form.operation()),
             QStringList({QStringLiteral("Замена масла"), QStringLiteral("Цепь"), QStringLiteral("--")}));
    QCOMPARE(ids(form.operation()), QVariantList({2, 7, -1}));
    QVERIFY(form.operation()->itemIcon(0).isNull());

    form.dialog.setOperations({});
    QCOMPARE(texts(form.operation()), QStringList {QStringLiteral("--")});
    QCOMPARE(ids(form.operation()), QVariantList {-1});
}

void TestServiceDialog::peopleComeInOrderAfterNone()
{
    Form form;
    QCOMPARE(texts(form.personal()),
             QStringList({QStringLiteral("--"), QStringLiteral("Петров Пётр"),
                          QStringLiteral("Иванов Иван Иванович")}));
    QCOMPARE(ids(form.personal()), QVariantList({-1, 31, 4}));
    QCOMPARE(form.personal()->currentIndex(), 0);
    QVERIFY(form.personal()->itemIcon(1).isNull());

    form.dialog.setPersonal({});
    QCOMPARE(texts(form.personal()), QStringList {QStringLiteral("--")});
}

void TestServiceDialog::aNameLeavesOutEmptyParts_data()
{
    QTest::addColumn<QJsonValue>("record");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("id");
    const auto row = [](const char *title, const QJsonValue &record, const QString &name, int id) {
        QTest::newRow(title) << record << name << id;
    };
    const QString last = QStringLiteral("Петров"), first = QStringLiteral("Пётр"),
                  mid = QStringLiteral("Ильич");
    row("all three", person(1, last, first, mid), QStringLiteral("Петров Пётр Ильич"), 1);
    row("no middle name", person(1, last, first, {}), QStringLiteral("Петров Пётр"), 1);
    row("no first name", person(1, last, {}, mid), QStringLiteral("Петров Ильич"), 1);
    row("no last name", person(1, {}, first, mid), QStringLiteral("Пётр Ильич"), 1);
    row("last name only", person(1, last, {}, {}), last, 1);
    row("nothing", person(1, {}, {}, {}), QString(), 1);
    row("keys missing", QJsonObject {{QStringLiteral("lastName"), last}}, last, -1);
    row("id as text", QJsonObject {{QStringLiteral("id"), QStringLiteral("5")}}, QString(), -1);
    row("names as numbers", QJsonObject {{QStringLiteral("id"), 5}, {QStringLiteral("lastName"), 6}},
        QString(), 5);
    row("no object", QJsonValue(17), QString(), -1);
    row("looks like markup", person(1, QStringLiteral("<b>%1 & Ко</b>"), {}, {}),
        QStringLiteral("<b>%1 & Ко</b>"), 1);
}

void TestServiceDialog::aNameLeavesOutEmptyParts()
{
    QFETCH(QJsonValue, record);
    QFETCH(QString, name);
    QFETCH(int, id);
    Form form;
    form.dialog.setPersonal(QJsonArray {record});
    QCOMPARE(texts(form.personal()), QStringList({QStringLiteral("--"), name}));
    QCOMPARE(ids(form.personal()), QVariantList({-1, id}));
}

void TestServiceDialog::anOperationIsChosenById_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("index");
    QTest::newRow("first") << 2 << 0;
    QTest::newRow("second") << 7 << 1;
    QTest::newRow("none") << -1 << 2;
    QTest::newRow("gone") << 5 << 2;
    QTest::newRow("far out") << std::numeric_limits<int>::max() << 2;
}

void TestServiceDialog::anOperationIsChosenById()
{
    QFETCH(int, id);
    QFETCH(int, index);
    Form form;
    form.operation()->setCurrentIndex(index == 0 ? 1 : 0);
    form.dialog.setOperation(id);
    QCOMPARE(form.operation()->currentIndex(), index);

    form.dialog.accept();
    QCOMPARE(form.dialog.operationId(), index == 2 ? -1 : id);
    QCOMPARE(form.dialog.operationName(), index == 2 ? QString() : form.operation()->itemText(index));
}

void TestServiceDialog::aPersonIsChosenByName()
{
    Form form;
    form.dialog.setPersonName(QStringLiteral("Иванов Иван Иванович"));
    QCOMPARE(form.personal()->currentIndex(), 2);
    form.dialog.setPersonName(QStringLiteral("Сидоров"));
    QCOMPARE(form.personal()->currentIndex(), 2);
    form.dialog.setPersonName(QStringLiteral("--"));
    QCOMPARE(form.personal()->currentIndex(), 0);
}

void TestServiceDialog::filledAgainTheListsStartAnew()
{
    Form form;
    form.dialog.setPersonal({person(9, QStringLiteral("Новый"), {}, {})});
    QCOMPARE(texts(form.personal()), QStringList({QStringLiteral("--"), QStringLiteral("Новый")}));
    form.dialog.setOperations({{1, QStringLiteral("Мойка")}});
    QCOMPARE(texts(form.operation()), QStringList({QStringLiteral("Мойка"), QStringLiteral("--")}));
}

void TestServiceDialog::aLockedOperationCannotBeChanged()
{
    Form form;
    QVERIFY(form.show());
    form.dialog.setOperation(7);
    form.dialog.lockOperation();
    QTest::keyClick(form.operation(), Qt::Key_Up);
    QTest::mouseClick(form.operation(), Qt::LeftButton);
    QVERIFY(!form.operation()->view()->isVisible());
    QVERIFY(!form.operation()->isEnabled());
    QTest::mouseClick(form.button(QDialogButtonBox::Ok), Qt::LeftButton);
    QCOMPARE(form.dialog.operationId(), 7);
    QCOMPARE(form.dialog.operationName(), QStringLiteral("Цепь"));
}

void TestServiceDialog::titlesGrow()
{
    Form form;
    form.dialog.setTitleSuffix(QStringLiteral("Модель  12"));
    QCOMPARE(form.dialog.windowTitle(), QStringLiteral("Сервисное обслуживание - Модель  12"));
    form.dialog.setTitleSuffix(QStringLiteral("%1"));
    QCOMPARE(form.dialog.windowTitle(), QStringLiteral("Сервисное обслуживание - Модель  12 - %1"));
}

void TestServiceDialog::complaintModeAsksForATask()
{
    Form form;
    form.dialog.setComplaintMode();
    form.dialog.setTitleSuffix(QStringLiteral("Модель  12"));
    QCOMPARE(form.label("lComment")->text(), QStringLiteral("Жалоба на карт\nили задание механику"));
    QCOMPARE(form.dialog.windowTitle(), QStringLiteral("Задание - Модель  12"));
    QVERIFY(form.operation()->isEnabled());
}

void TestServiceDialog::acceptingGivesWhatTheUserEntered()
{
    Form form;
    QVERIFY(form.show());
    QSignalSpy accepted(&form.dialog, &QDialog::accepted);
    form.operation()->setFocus();
    QTest::keyClick(form.operation(), Qt::Key_Down);
    form.personal()->setFocus();
    QTest::keyClick(form.personal(), Qt::Key_Down);
    QTest::keyClick(form.personal(), Qt::Key_Down);
    form.comments()->setFocus();
    QTest::keyClicks(form.comments(), QStringLiteral("first"));
    QTest::keyClick(form.comments(), Qt::Key_Return);
    QTest::keyClicks(form.comments(), QStringLiteral("<b>%1</b> 'second'"));
    form.time()->setFocus();
    form.time()->setCurrentSection(QDateTimeEdit::MinuteSection);
    QTest::keyClick(form.time(), Qt::Key_Up);
    QVERIFY(accepted.isEmpty());
    QTest::mouseClick(form.button(QDialogButtonBox::Ok), Qt::LeftButton);

    QCOMPARE(accepted.size(), 1);
    QCOMPARE(form.dialog.result(), int(QDialog::Accepted));
    QVERIFY(!form.dialog.isVisible());
    QCOMPARE(form.dialog.dateTime(), sampleTime.addSecs(60));
    QCOMPARE(form.dialog.operationId(), 7);
    QCOMPARE(form.dialog.operationName(), QStringLiteral("Цепь"));
    QCOMPARE(form.dialog.personId(), 4);
    QCOMPARE(form.dialog.personName(), QStringLiteral("Иванов Иван Иванович"));
    QCOMPARE(form.dialog.comment(), QStringLiteral("first\n<b>%1</b> 'second'"));
}

void TestServiceDialog::acceptingAnUntouchedDialogGivesNobodyAndNothing()
{
    Form form;
    form.dialog.accept();
    QCOMPARE(form.dialog.personId(), -1);
    QCOMPARE(form.dialog.personName(), QString());

    ServiceDialog dialog; // its lists were never filled
    dialog.setOperation(3);
    dialog.setPersonName(QStringLiteral("Петров"));
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.operationId(), -1);
    QCOMPARE(dialog.personId(), -1);
    QCOMPARE(dialog.operationName(), QString());
    QCOMPARE(dialog.personName(), QString());
    QCOMPARE(dialog.comment(), QString());
    QVERIFY(dialog.dateTime().isValid());
}

void TestServiceDialog::aPersonWithoutIdKeepsTheName()
{
    Form form;
    form.dialog.setPersonal({QJsonObject {{QStringLiteral("lastName"), QStringLiteral("Гость")}}});
    form.dialog.setPersonName(QStringLiteral("Гость"));
    form.dialog.accept();
    QCOMPARE(form.dialog.personId(), -1);
    QCOMPARE(form.dialog.personName(), QStringLiteral("Гость"));
}

void TestServiceDialog::anOperationCalledNoneHasNoName()
{
    Form form;
    form.dialog.setOperations({{3, QStringLiteral("--")}});
    form.dialog.setOperation(3);
    form.dialog.accept();
    QCOMPARE(form.dialog.operationId(), 3);
    QCOMPARE(form.dialog.operationName(), QString());
}

void TestServiceDialog::cancellingGivesNothing_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Escape") << true;
    QTest::newRow("button") << false;
}

void TestServiceDialog::cancellingGivesNothing()
{
    QFETCH(bool, byKey);
    Form form;
    QVERIFY(form.show());
    form.dialog.setOperation(7);
    form.dialog.setComment(QStringLiteral("note"));
    QSignalSpy rejected(&form.dialog, &QDialog::rejected);
    if (byKey)
        QTest::keyClick(&form.dialog, Qt::Key_Escape);
    else
        QTest::mouseClick(form.button(QDialogButtonBox::Cancel), Qt::LeftButton);
    QCOMPARE(rejected.size(), 1);
    QVERIFY(!form.dialog.isVisible());
    QCOMPARE(form.dialog.operationId(), -1);
    QCOMPARE(form.dialog.comment(), QString());
}

void TestServiceDialog::tabGoesThroughTheFieldsInOrder()
{
    Form form;
    QVERIFY(form.show());
    form.time()->setFocus();
    // A date-time edit goes through its five sections by Tab as well.
    form.time()->setCurrentSection(QDateTimeEdit::MinuteSection);
    QWidget *const fields[] = {form.operation(), form.personal(), form.comments(),
                               form.button(QDialogButtonBox::Ok), form.button(QDialogButtonBox::Cancel)};
    for (QWidget *field : fields) {
        QTest::keyClick(form.dialog.focusWidget(), Qt::Key_Tab);
        QCOMPARE(form.dialog.focusWidget(), field);
    }
}

void TestServiceDialog::anyListFitsIntoTheDialog()
{
    Form form;
    QVERIFY(form.show());
    const QSize before = form.dialog.minimumSizeHint();
    ServiceOperations operations;
    QJsonArray people;
    for (int i = 0; i < 2000; ++i) {
        operations.insert(i, QStringLiteral("Очень долгая операция ").repeated(20) + QString::number(i));
        people.append(person(i, QStringLiteral("Многобуквенный").repeated(20), QString::number(i), {}));
    }
    form.dialog.setOperations(operations);
    form.dialog.setPersonal(people);
    form.dialog.setOperation(1999);
    form.dialog.setComment(QStringLiteral("слово ").repeated(5000));
    QCoreApplication::processEvents();
    QCOMPARE(form.dialog.minimumSizeHint(), before);
    QVERIFY(form.button(QDialogButtonBox::Ok)->isVisible());
    form.dialog.accept();
    QCOMPARE(form.dialog.operationId(), 1999);
    QCOMPARE(form.dialog.operationName(), operations.value(1999));
}

void TestServiceDialog::nothingIsCutOff_data()
{
    QTest::addColumn<bool>("isComplaint");
    QTest::addColumn<int>("pointSize");
    for (const int size : {9, 14, 18}) {
        QTest::addRow("service, %d pt", size) << false << size;
        QTest::addRow("complaint, %d pt", size) << true << size;
    }
}

void TestServiceDialog::nothingIsCutOff()
{
    QFETCH(bool, isComplaint);
    QFETCH(int, pointSize);
    Form form;
    QFont font = form.dialog.font();
    font.setPointSize(pointSize);
    form.dialog.setFont(font);
    if (isComplaint)
        form.dialog.setComplaintMode();
    QVERIFY(form.show());
    const QRect inside = form.dialog.rect();
    const auto fields = form.dialog.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(fields.size() >= 9);
    for (const QWidget *field : fields) {
        const QByteArray name = field->objectName().toUtf8();
        QVERIFY2(inside.contains(field->geometry()), name.constData());
        QVERIFY2(field->width() >= field->minimumSizeHint().width(), name.constData());
        QVERIFY2(field->height() >= field->minimumSizeHint().height(), name.constData());
        for (const QWidget *other : fields)
            QVERIFY2(field == other || !field->geometry().intersects(other->geometry()), name.constData());
    }
}

QTEST_MAIN(TestServiceDialog)
#include "tst_servicedialog.moc"
