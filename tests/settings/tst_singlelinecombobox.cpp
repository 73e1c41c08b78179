#include "settings/singlelinecombobox.h"
#include "support/garagetest.h"

/// The signal that slots of forms are connected to by name.
class TestSingleLineComboBox : public GarageTest
{
    Q_OBJECT
private slots:
    void eachChangeOfTheIndexSignalsTheText();
    void aKeySignalsTheText();
};

namespace {

QStringList textsOf(const QSignalSpy &spy)
{
    QStringList texts;
    for (const QList<QVariant> &arguments : spy)
        texts.append(arguments.first().toString());
    return texts;
}

} // namespace

void TestSingleLineComboBox::eachChangeOfTheIndexSignalsTheText()
{
    SingleLineComboBox combo;
    const QSignalSpy changes(&combo, SIGNAL(currentIndexChanged(QString)));
    combo.addItems({"Sodi", "RX", "RX"});
    QCOMPARE(textsOf(changes), QStringList("Sodi"));
    combo.setCurrentIndex(1);
    combo.setCurrentIndex(2);
    combo.setCurrentIndex(2);
    QCOMPARE(textsOf(changes), QStringList({"Sodi", "RX", "RX"}));
    combo.setItemText(2, "LR");
    QCOMPARE(changes.size(), 3);
    combo.clear();
    QCOMPARE(textsOf(changes), QStringList({"Sodi", "RX", "RX", ""}));
}

void TestSingleLineComboBox::aKeySignalsTheText()
{
    SingleLineComboBox combo;
    combo.addItems({"Sodi", "RX"});
    const QSignalSpy changes(&combo, SIGNAL(currentIndexChanged(QString)));
    QTest::keyClick(&combo, Qt::Key_Down);
    QCOMPARE(textsOf(changes), QStringList("RX"));
}

GARAGE_TEST(TestSingleLineComboBox)
#include "tst_singlelinecombobox.moc"
