#include "settings/servicedialog.h"
#include "support/garagetest.h"
#include "support/json.h"
#include "support/userinput.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QJsonObject>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTimeZone>

/// The dialog for a service operation or a complaint, used as a mechanic does.
class TestServiceDialog : public GarageTest
{
    Q_OBJECT
private slots:
    void asksForTimeOperationPersonAndNote();
    void complaintModeRenamesNoteAndTitle();
    void eachTitleSuffixIsAppended();
    void operationsAreListedByIdAndNoneIsLast();
    void peopleAreListedInTheGivenOrderAndNoneIsFirst_data();
    void peopleAreListedInTheGivenOrderAndNoneIsFirst();
    void listsThatAreSetAgainReplaceTheOldOnes();
    void anOperationIsChosenById_data();
    void anOperationIsChosenById();
    void aPersonIsChosenByName_data();
    void aPersonIsChosenByName();
    void aLockedOperationCannotBeChanged();
    void everythingTypedIsReadByTheOkButton();
    void nothingChosenIsAccepted();
    void aDialogWithoutListsIsAccepted();
    void aPersonWithoutIdKeepsTheName();
    void anOperationNamedLikeNoneHasNoName();
    void timesAreShownAndReadInLocalTime();
    void anInvalidTimeChangesNothing();
    void theDateIsTypedByKeys();
    void cancellingReadsNothing_data();
    void cancellingReadsNothing();
    void returnAcceptsExceptInTheNote();
    void tabGoesFromTopToBottom();
    void namesAreShownAndReadAsTheyAre_data();
    void namesAreShownAndReadAsTheyAre();
    void aChosenNameIsShownOnOneLine();
    void longListsAndNamesDoNotStretchTheDialog();
    void theDialogFitsItsTexts_data();
    void theDialogFitsItsTexts();
};

namespace {

QComboBox *operations(const ServiceDialog &dialog)
{
    return child<QComboBox>(dialog, "cbOperation");
}

QComboBox *people(const ServiceDialog &dialog)
{
    return child<QComboBox>(dialog, "cbPersonal");
}

QPlainTextEdit *note(const ServiceDialog &dialog)
{
    return child<QPlainTextEdit>(dialog, "teComments");
}

QDateTimeEdit *time(const ServiceDialog &dialog)
{
    return child<QDateTimeEdit>(dialog, "deOperationDateTime");
}

QPushButton *button(const ServiceDialog &dialog, QDialogButtonBox::StandardButton which)
{
    return child<QDialogButtonBox>(dialog, "buttonBox")->button(which);
}

/// "id:text" of each item.
QStringList items(const QComboBox &combo)
{
    QStringList items;
    for (int i = 0; i < combo.count(); ++i)
        items.append(QString::number(combo.itemData(i, Qt::UserRole).toInt()) + ':' + combo.itemText(i));
    return items;
}

QJsonObject person(int id, const char *lastName, const char *firstName = "", const char *midName = "")
{
    return {{"id", id},
            {"lastName", QString::fromUtf8(lastName)},
            {"firstName", QString::fromUtf8(firstName)},
            {"midName", QString::fromUtf8(midName)}};
}

const ServiceOperations sampleOperations {{1, "Замена масла"}, {2, "Цепь"}, {5, "Тормоза"}};

QJsonArray samplePeople()
{
    return {person(31, "Яковлев", "Пётр", "Ильич"), person(4, "Абрамов", "Иван")};
}

/// Fills the lists and shows the dialog.
void show(ServiceDialog &dialog)
{
    dialog.setOperations(sampleOperations);
    dialog.setOperation(noId);
    dialog.setPersonal(samplePeople());
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
}

void clickOk(const ServiceDialog &dialog)
{
    press(dialog, QDialogButtonBox::Ok);
}

} // namespace

void TestServiceDialog::asksForTimeOperationPersonAndNote()
{
    ServiceDialog dialog;
    QCOMPARE(dialog.windowTitle(), "Сервисное обслуживание");
    const auto *form = child<QFormLayout>(dialog, "formLayout");
    const struct
    {
        const char *label;
        QString text;
        const char *field;
    } rows[] = {{"label", "Дата и время", "deOperationDateTime"},
                {"label_2", "Операция", "cbOperation"},
                {"label_4", "Исполнитель", "cbPersonal"},
                {"lComment", "Примечание", "teComments"}};
    QCOMPARE(form->rowCount(), 4);
    int row = 0;
    for (const auto &expected : rows) {
        const auto *label = child<QLabel>(dialog, expected.label);
        auto *field = child<QWidget>(dialog, expected.field);
        QCOMPARE(label->text(), expected.text);
        QCOMPARE(label->buddy(), field);
        QCOMPARE(form->itemAt(row, QFormLayout::LabelRole)->widget(), label);
        QCOMPARE(form->itemAt(row, QFormLayout::FieldRole)->widget(), field);
        ++row;
    }
    QCOMPARE(time(dialog)->displayFormat(), "dd.MM.yyyy HH:mm");
    QCOMPARE(button(dialog, QDialogButtonBox::Ok)->text(), "ОК");
    QCOMPARE(button(dialog, QDialogButtonBox::Cancel)->text(), "Отмена");

    QCOMPARE(dialog.personId(), noId);
    QCOMPARE(dialog.operationId(), noId);
    QCOMPARE(dialog.operationName() + dialog.personName() + dialog.comment(), QString());
    QVERIFY(!dialog.dateTime().isValid());
}

void TestServiceDialog::complaintModeRenamesNoteAndTitle()
{
    ServiceDialog dialog;
    dialog.setComplaintMode();
    QCOMPARE(child<QLabel>(dialog, "lComment")->text(), "Жалоба на карт\nили задание механику");
    QCOMPARE(dialog.windowTitle(), "Задание");
    dialog.setTitleSuffix("SODI  12");
    QCOMPARE(dialog.windowTitle(), "Задание - SODI  12");
    QVERIFY(operations(dialog)->isEnabled());
}

void TestServiceDialog::eachTitleSuffixIsAppended()
{
    ServiceDialog dialog;
    dialog.setTitleSuffix("SODI  %1");
    dialog.setTitleSuffix(QString());
    dialog.setTitleSuffix("7");
    QCOMPARE(dialog.windowTitle(), "Сервисное обслуживание - SODI  %1 -  - 7");
}

void TestServiceDialog::operationsAreListedByIdAndNoneIsLast()
{
    ServiceDialog dialog;
    dialog.setOperations({{7, "Я"}, {-3, "Б"}, {2, "А"}});
    QCOMPARE(items(*operations(dialog)), QStringList({"-3:Б", "2:А", "7:Я", "-1:--"}));
    QVERIFY(operations(dialog)->itemIcon(0).isNull());

    dialog.setOperations({});
    QCOMPARE(items(*operations(dialog)), QStringList("-1:--"));
}

void TestServiceDialog::peopleAreListedInTheGivenOrderAndNoneIsFirst_data()
{
    QTest::addColumn<QJsonArray>("array");
    QTest::addColumn<QStringList>("people");
    const auto row = [](const char *name, const QJsonArray &array, const QStringList &people) {
        QTest::newRow(name) << array << QStringList("-1:--") + people;
    };
    row("nobody", {}, {});
    row("in the array's order", samplePeople(), {"31:Яковлев Пётр Ильич", "4:Абрамов Иван"});
    row("the same person twice", {person(4, "Абрамов"), person(4, "Абрамов")}, {"4:Абрамов", "4:Абрамов"});
    row("no first name", {person(1, "Яковлев", "", "Ильич")}, {"1:Яковлев Ильич"});
    row("only a first name", {person(1, "", "Пётр")}, {"1:Пётр"});
    row("no name", {person(1, "")}, {"1:"});
    row("blanks within a name", {person(1, "Де ла  Крус", "Хуан")}, {"1:Де ла  Крус Хуан"});
    row("no id", {json(R"({"lastName": "Абрамов"})")}, {"-1:Абрамов"});
    row("an id that is a text", {json(R"({"id": "4", "lastName": "Абрамов"})")}, {"-1:Абрамов"});
    row("names that are no texts",
        {QJsonObject {{"id", 4}, {"lastName", 12}, {"firstName", QJsonValue()}, {"midName", "Ильич"}}},
        {"4:Ильич"});
    row("elements that are no records", {12, "Иван", QJsonArray()}, {"-1:", "-1:", "-1:"});
}

void TestServiceDialog::peopleAreListedInTheGivenOrderAndNoneIsFirst()
{
    QFETCH(QJsonArray, array);
    ServiceDialog dialog;
    dialog.setPersonal(array);
    QTEST(items(*people(dialog)), "people");
    QCOMPARE(people(dialog)->currentIndex(), 0);
    QVERIFY(people(dialog)->itemIcon(people(dialog)->count() - 1).isNull());
}

void TestServiceDialog::listsThatAreSetAgainReplaceTheOldOnes()
{
    ServiceDialog dialog;
    for (int i = 0; i < 2; ++i) {
        dialog.setOperations(sampleOperations);
        dialog.setPersonal(samplePeople());
    }
    QCOMPARE(operations(dialog)->count(), 4);
    QCOMPARE(people(dialog)->count(), 3);
}

void TestServiceDialog::anOperationIsChosenById_data()
{
    QTest::addColumn<int>("opId");
    QTest::addColumn<QString>("text");
    QTest::newRow("first") << 1 << "Замена масла";
    QTest::newRow("last") << 5 << "Тормоза";
    QTest::newRow("none") << noId << "--";
    QTest::newRow("no longer there") << 3 << "--";
    QTest::newRow("zero") << 0 << "--";
}

void TestServiceDialog::anOperationIsChosenById()
{
    QFETCH(int, opId);
    QFETCH(QString, text);
    ServiceDialog dialog;
    show(dialog);
    dialog.setOperation(opId);
    QCOMPARE(operations(dialog)->currentText(), text);
    clickOk(dialog);
    const bool isNone = text == "--";
    QCOMPARE(dialog.operationId(), isNone ? noId : opId);
    QCOMPARE(dialog.operationName(), isNone ? QString() : text);
}

void TestServiceDialog::aPersonIsChosenByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("personId");
    QTest::newRow("offered") << "Яковлев Пётр Ильич" << 31;
    QTest::newRow("none") << "--" << noId;
    QTest::newRow("unknown") << "Сидоров" << 4;
    QTest::newRow("part of a name") << "Яковлев" << 4;
    QTest::newRow("other case") << "яковлев пётр ильич" << 4;
    QTest::newRow("empty") << QString() << 4;
}

void TestServiceDialog::aPersonIsChosenByName()
{
    QFETCH(QString, name);
    ServiceDialog dialog;
    show(dialog);
    dialog.setPersonName("Абрамов Иван");
    dialog.setPersonName(name);
    clickOk(dialog);
    QTEST(dialog.personId(), "personId");
}

void TestServiceDialog::aLockedOperationCannotBeChanged()
{
    ServiceDialog dialog;
    show(dialog);
    dialog.setOperation(2);
    dialog.lockOperation();
    QVERIFY(!operations(dialog)->isEnabled());
    QTest::mouseClick(operations(dialog), Qt::LeftButton);
    QVERIFY(!operations(dialog)->view()->isVisible());
    QTest::keyClick(operations(dialog), Qt::Key_Down);
    clickOk(dialog);
    QCOMPARE(dialog.operationId(), 2);
    QCOMPARE(dialog.operationName(), "Цепь");
}

void TestServiceDialog::everythingTypedIsReadByTheOkButton()
{
    ServiceDialog dialog;
    show(dialog);
    dialog.setDateTime(QDateTime({2024, 2, 29}, {23, 59}));
    dialog.setComment("старое");

    operations(dialog)->setFocus();
    QTest::keyClick(operations(dialog), Qt::Key_Home);
    QTest::keyClick(operations(dialog), Qt::Key_Down);
    QTest::keyClick(people(dialog), Qt::Key_Down);
    QTest::keySequence(note(dialog), QKeySequence::SelectAll);
    typeText(note(dialog), "Новая цепь");
    QTest::keyClick(note(dialog), Qt::Key_Return);
    typeText(note(dialog), " 100 % \"ок\"");
    clickOk(dialog);

    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.dateTime(), QDateTime({2024, 2, 29}, {23, 59}));
    QCOMPARE(dialog.operationId(), 2);
    QCOMPARE(dialog.operationName(), "Цепь");
    QCOMPARE(dialog.personId(), 31);
    QCOMPARE(dialog.personName(), "Яковлев Пётр Ильич");
    QCOMPARE(dialog.comment(), "Новая цепь\n 100 % \"ок\"");
}

void TestServiceDialog::nothingChosenIsAccepted()
{
    ServiceDialog dialog;
    show(dialog);
    clickOk(dialog);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.operationId(), noId);
    QCOMPARE(dialog.personId(), noId);
    QCOMPARE(dialog.operationName() + dialog.personName() + dialog.comment(), QString());
}

void TestServiceDialog::aDialogWithoutListsIsAccepted()
{
    ServiceDialog dialog;
    dialog.setOperation(4);
    dialog.setPersonName("Абрамов");
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    clickOk(dialog);
    QCOMPARE(dialog.operationId(), noId);
    QCOMPARE(dialog.personId(), noId);
    QCOMPARE(dialog.operationName() + dialog.personName(), QString());
}

void TestServiceDialog::aPersonWithoutIdKeepsTheName()
{
    ServiceDialog dialog;
    show(dialog);
    dialog.setPersonal({json(R"({"lastName": "Абрамов"})")});
    QTest::keyClick(people(dialog), Qt::Key_Down);
    clickOk(dialog);
    QCOMPARE(dialog.personId(), noId);
    QCOMPARE(dialog.personName(), "Абрамов");
}

void TestServiceDialog::anOperationNamedLikeNoneHasNoName()
{
    ServiceDialog dialog;
    show(dialog);
    dialog.setOperations({{3, "--"}});
    dialog.setOperation(3);
    dialog.setPersonal({person(8, "--")});
    QTest::keyClick(people(dialog), Qt::Key_Down);
    clickOk(dialog);
    QCOMPARE(dialog.operationId(), 3);
    QCOMPARE(dialog.operationName(), QString());
    QCOMPARE(dialog.personId(), 8);
    QCOMPARE(dialog.personName(), "--");
}

void TestServiceDialog::timesAreShownAndReadInLocalTime()
{
    const QDateTime utc({2024, 6, 30}, {22, 15}, Qt::UTC);
    for (const QDateTime &given :
         {utc, utc.toLocalTime(), utc.toOffsetFromUtc(19800), utc.toTimeZone(QTimeZone("Asia/Tokyo"))}) {
        ServiceDialog dialog;
        show(dialog);
        dialog.setDateTime(given);
        QCOMPARE(time(dialog)->text(), utc.toLocalTime().toString("dd.MM.yyyy HH:mm"));
        clickOk(dialog);
        QCOMPARE(dialog.dateTime(), utc);
        QCOMPARE(dialog.dateTime().timeSpec(), Qt::LocalTime);
    }
}

void TestServiceDialog::anInvalidTimeChangesNothing()
{
    ServiceDialog dialog;
    show(dialog);
    dialog.setDateTime(QDateTime({2024, 5, 1}, {10, 0}));
    dialog.setDateTime(QDateTime());
    clickOk(dialog);
    QCOMPARE(dialog.dateTime(), QDateTime({2024, 5, 1}, {10, 0}));
}

void TestServiceDialog::theDateIsTypedByKeys()
{
    ServiceDialog dialog;
    show(dialog);
    dialog.setDateTime(QDateTime({2024, 5, 1}, {10, 0}));
    QVERIFY(time(dialog)->hasFocus());
    QTest::keyClicks(time(dialog), "311220250730");
    QCOMPARE(time(dialog)->text(), "31.12.2025 07:30");
    QTest::keyClick(time(dialog), Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.dateTime(), QDateTime({2025, 12, 31}, {7, 30}));
}

void TestServiceDialog::cancellingReadsNothing_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("button") << "button";
    QTest::newRow("Escape") << "Escape";
    QTest::newRow("window's cross") << "cross";
}

void TestServiceDialog::cancellingReadsNothing()
{
    QFETCH(QString, way);
    ServiceDialog dialog;
    show(dialog);
    dialog.setOperation(2);
    dialog.setPersonName("Абрамов Иван");
    typeText(note(dialog), "нет");
    if (way == "button")
        press(dialog, QDialogButtonBox::Cancel);
    else if (way == "Escape")
        QTest::keyClick(note(dialog), Qt::Key_Escape);
    else
        dialog.close();
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.operationId(), noId);
    QCOMPARE(dialog.personId(), noId);
    QCOMPARE(dialog.operationName() + dialog.personName() + dialog.comment(), QString());
    QVERIFY(!dialog.dateTime().isValid());
}

void TestServiceDialog::returnAcceptsExceptInTheNote()
{
    for (const char *name : {"deOperationDateTime", "cbOperation", "cbPersonal"}) {
        ServiceDialog dialog;
        show(dialog);
        auto *field = child<QWidget>(dialog, name);
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Return);
        QVERIFY2(!dialog.isVisible(), name);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
    }
    ServiceDialog dialog;
    show(dialog);
    note(dialog)->setFocus();
    QTest::keyClick(note(dialog), Qt::Key_Return);
    QVERIFY(dialog.isVisible());
    QCOMPARE(note(dialog)->toPlainText(), "\n");
}

void TestServiceDialog::tabGoesFromTopToBottom()
{
    ServiceDialog dialog;
    show(dialog);
    QStringList names;
    // The date's sections are stops of their own.
    while (!button(dialog, QDialogButtonBox::Ok)->hasFocus() && names.size() < 20) {
        names.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    names.removeDuplicates();
    QCOMPARE(names, QStringList({"deOperationDateTime", "cbOperation", "cbPersonal", "teComments"}));
    QVERIFY(button(dialog, QDialogButtonBox::Ok)->hasFocus());
    QVERIFY(button(dialog, QDialogButtonBox::Ok)->isDefault());
}

void TestServiceDialog::namesAreShownAndReadAsTheyAre_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("quotes") << "\"Масло\" 'синт.'";
    QTest::newRow("percent") << "100% %1 %s %n";
    QTest::newRow("markup") << "<b>Масло</b>";
    QTest::newRow("ampersand") << "Масло & фильтр";
    QTest::newRow("emoji") << "🏎 Цепь";
    QTest::newRow("line feeds") << "Масло\nи\nфильтр";
    QTest::newRow("blank") << " ";
    QTest::newRow("empty") << QString();
}

void TestServiceDialog::namesAreShownAndReadAsTheyAre()
{
    QFETCH(QString, name);
    ServiceDialog dialog;
    show(dialog);
    dialog.setOperations({{1, name}});
    dialog.setPersonal({QJsonObject {{"id", 2}, {"lastName", name}}});
    dialog.setTitleSuffix(name);
    dialog.setComment(name);
    QTest::keyClick(people(dialog), Qt::Key_Down);
    QVERIFY(!dialog.grab().isNull());
    clickOk(dialog);
    QCOMPARE(dialog.windowTitle(), QString("Сервисное обслуживание - " + name));
    QCOMPARE(dialog.operationName(), name);
    QCOMPARE(dialog.operationId(), 1);
    QCOMPARE(dialog.personName(), name);
    QCOMPARE(dialog.personId(), 2);
    QCOMPARE(dialog.comment(), name);
}

void TestServiceDialog::aChosenNameIsShownOnOneLine()
{
    ServiceDialog dialog;
    show(dialog);
    const auto picture = [&dialog](const QString &text) {
        dialog.setOperations({{1, text}});
        dialog.setPersonal({QJsonObject {{"lastName", text}}});
        people(dialog)->setCurrentIndex(1);
        const QImage operation = operations(dialog)->grab().toImage();
        const QImage person = people(dialog)->grab().toImage();
        return QVector<QImage> {operation, person};
    };
    const QVector<QImage> shown = picture("Масло\nи\nфильтр");
    QVERIFY(shown == picture("Масло и фильтр"));
    QVERIFY(shown != picture("Масло"));
}

void TestServiceDialog::longListsAndNamesDoNotStretchTheDialog()
{
    ServiceDialog ordinary;
    show(ordinary);

    ServiceOperations many;
    QJsonArray crowd;
    for (int id = 1; id <= 2000; ++id) {
        many.insert(id, QString(300, 'W') + QString::number(id));
        crowd.append(person(id, QByteArray(300, 'W').constData()));
    }
    ServiceDialog dialog;
    show(dialog);
    dialog.setOperations(many);
    dialog.setPersonal(crowd);
    dialog.setTitleSuffix(QString(10000, 'x'));
    dialog.setComment(QString(10000, 'x'));
    QTest::qWait(0);
    QCOMPARE(dialog.size(), ordinary.size());
    QCOMPARE(dialog.minimumSizeHint(), ordinary.minimumSizeHint());

    operations(dialog)->showPopup();
    QTRY_VERIFY(operations(dialog)->view()->isVisible());
    const QRect screen = dialog.screen()->availableGeometry();
    QVERIFY(operations(dialog)->view()->window()->width() <= screen.width());
    QVERIFY(operations(dialog)->view()->window()->height() <= screen.height());
    operations(dialog)->hidePopup();
}

void TestServiceDialog::theDialogFitsItsTexts_data()
{
    QTest::addColumn<bool>("complaint");
    QTest::addColumn<int>("points");
    for (const int points : {9, 14, 24}) {
        QTest::addRow("operation, %d pt", points) << false << points;
        QTest::addRow("complaint, %d pt", points) << true << points;
    }
}

void TestServiceDialog::theDialogFitsItsTexts()
{
    QFETCH(bool, complaint);
    QFETCH(int, points);
    ServiceDialog dialog;
    if (complaint)
        dialog.setComplaintMode();
    QFont font = dialog.font();
    font.setPointSize(points);
    dialog.setFont(font);
    show(dialog);
    const QList<QWidget *> widgets = dialog.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *widget : widgets) {
        QVERIFY2(dialog.rect().contains(widget->geometry()), qPrintable(widget->objectName()));
        QVERIFY2(widget->width() >= widget->minimumSizeHint().width(), qPrintable(widget->objectName()));
        QVERIFY2(widget->height() >= widget->minimumSizeHint().height(), qPrintable(widget->objectName()));
    }
}

GARAGE_TEST(TestServiceDialog)
#include "tst_servicedialog.moc"
