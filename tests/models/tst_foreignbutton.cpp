#include "models/qgaragetreeview.h"
#include "support/garagetest.h"

#include <QSignalSpy>
#include <QStandardItemModel>

/// The slot of the hover buttons, called by another object.
class TestForeignButton : public GarageTest
{
    Q_OBJECT
private slots:
    void aForeignButtonMeansNothing();
};

void TestForeignButton::aForeignButtonMeansNothing()
{
    QStandardItemModel model(3, 3);
    QGarageTreeView view;
    view.setModel(&model);
    view.resize(400, 200);
    view.show();
    QSignalSpy service(&view, &QGarageTreeView::serviceButtonClicked);
    QSignalSpy attention(&view, &QGarageTreeView::attentionButtonClicked);
    QPushButton foreign(view.viewport());
    foreign.setGeometry(view.visualRect(model.index(1, 1)));
    foreign.show();
    connect(&foreign, SIGNAL(clicked()), &view, SLOT(serviceButtonClick()));
    QTest::mouseClick(&foreign, Qt::LeftButton);
    QCOMPARE(service.count(), 0);
    QCOMPARE(attention.count(), 0);
    QVERIFY(!view.currentIndex().isValid());
}

GARAGE_TEST(TestForeignButton)
#include "tst_foreignbutton.moc"
