#include "models/clearbackgroundtablemodel.h"
#include "models/columnwidthguard.h"
#include "support/garagetest.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QTreeView>

namespace {

class LettersModel final : public ClearbackgroundTableModel
{
public:
    LettersModel()
    {
        appendColumn({"#", Qt::AlignRight, 40, "POS", Qt::AlignCenter});
        appendColumn({"Letter", Qt::AlignLeft, 80, "LETTER", -1});
        appendColumn({"Extra", Qt::AlignLeft, 90, "EXTRA", -1});
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(letters.size());
    }
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override
    {
        if (role == Qt::DisplayRole && isCell(index))
            return letters.at(index.row());
        return ClearbackgroundTableModel::data(index, role);
    }

    void replace(const QStringList &newLetters)
    {
        const LayoutChange change(*this);
        letters = newLetters;
    }
    void dropColumn(int column)
    {
        const LayoutChange change(*this);
        removeColumnAt(column);
    }
    void addColumn(const QString &key, int width)
    {
        const LayoutChange outer(*this);
        const LayoutChange inner(*this);
        appendColumn({key, Qt::AlignLeft, width, key, -1});
    }

    QStringList letters;

protected:
    QString recordId(int row) const override { return letters.at(row); }
};

} // namespace

/// The base of all tables: keyed columns, and indexes that follow their record.
class TestClearbackgroundTableModel : public GarageTest
{
    Q_OBJECT
private slots:
    void cellsAreTransparentAndAligned();
    void headersAreAlignedLikeTheirCellsByDefault();
    void nothingOutOfRangeIsAnswered();
    void persistentIndexesFollowTheirRecordAndColumn();
    void equalRecordsKeepTheirOrder();
    void indexesInColumnsOfOneKeyStayInTheirs();
    void nestedChangesAreAnnouncedOnce();
    void widthsSurviveAChangeOfColumns();
};

void TestClearbackgroundTableModel::cellsAreTransparentAndAligned()
{
    LettersModel model;
    model.replace({"a"});
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QCOMPARE(model.index(0, 0).data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignRight));
    QCOMPARE(model.index(0, 1).data(Qt::BackgroundRole).value<QBrush>(), QBrush(Qt::transparent));
    QVERIFY(!model.index(0, 0).data(Qt::ToolTipRole).isValid());
}

void TestClearbackgroundTableModel::headersAreAlignedLikeTheirCellsByDefault()
{
    const LettersModel model;
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), "Letter");
    QCOMPARE(model.headerData(0, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), int(Qt::AlignCenter));
    QCOMPARE(model.headerData(1, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), int(Qt::AlignLeft));
    QVERIFY(!model.headerData(0, Qt::Vertical).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::DecorationRole).isValid());
}

void TestClearbackgroundTableModel::nothingOutOfRangeIsAnswered()
{
    const LettersModel model;
    for (int section : {-1, 3, 1000})
        QVERIFY(!model.headerData(section, Qt::Horizontal).isValid());
    QCOMPARE(model.columnKey(-1), QString());
    QCOMPARE(model.columnKey(3), QString());
    QCOMPARE(model.columnCount(), 3);
    QVERIFY(!model.data({}, Qt::TextAlignmentRole).isValid());
}

void TestClearbackgroundTableModel::persistentIndexesFollowTheirRecordAndColumn()
{
    LettersModel model;
    model.replace({"a", "b", "c"});
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QPersistentModelIndex a = model.index(0, 1);
    const QPersistentModelIndex c = model.index(2, 2);

    model.replace({"c", "x", "a", "b"});
    QCOMPARE(a.row(), 2);
    QCOMPARE(c.row(), 0);

    model.dropColumn(1);
    QVERIFY(!a.isValid());
    QCOMPARE(c.column(), 1);

    model.replace({});
    QVERIFY(!c.isValid());
}

void TestClearbackgroundTableModel::equalRecordsKeepTheirOrder()
{
    LettersModel model;
    model.replace({"a", "a", "b"});
    const QPersistentModelIndex second = model.index(1, 0);
    model.replace({"b", "a", "a"});
    QCOMPARE(second.row(), 2);
    model.replace({"a"});
    QVERIFY(!second.isValid());
}

void TestClearbackgroundTableModel::indexesInColumnsOfOneKeyStayInTheirs()
{
    LettersModel model;
    model.replace({"a"});
    model.addColumn("EXTRA", 90);
    const QPersistentModelIndex first = model.index(0, 2);
    const QPersistentModelIndex second = model.index(0, 3);
    model.replace({"b", "a"});
    QCOMPARE(QModelIndex(first), model.index(1, 2));
    QCOMPARE(QModelIndex(second), model.index(1, 3));
    model.dropColumn(3);
    QCOMPARE(QModelIndex(first), model.index(1, 2));
    QVERIFY(!second.isValid());
}

void TestClearbackgroundTableModel::nestedChangesAreAnnouncedOnce()
{
    LettersModel model;
    QSignalSpy before(&model, &QAbstractItemModel::layoutAboutToBeChanged);
    QSignalSpy after(&model, &QAbstractItemModel::layoutChanged);
    model.addColumn("NEW", 100);
    QCOMPARE(before.count(), 1);
    QCOMPARE(after.count(), 1);
}

void TestClearbackgroundTableModel::widthsSurviveAChangeOfColumns()
{
    LettersModel model;
    model.replace({"a"});
    QTreeView view;
    view.header()->setStretchLastSection(false);
    view.setModel(&model);
    model.applyColumnWidths(&view);
    view.setColumnWidth(1, 133); // as a user drags it
    {
        const ColumnWidthGuard guard(&view, model);
        model.dropColumn(0);
        model.addColumn("NEW", 155);
    }
    QCOMPARE(view.columnWidth(0), 133);
    QCOMPARE(view.columnWidth(1), 90);
    QCOMPARE(view.columnWidth(2), 155);
}

GARAGE_TEST(TestClearbackgroundTableModel)
#include "tst_clearbackgroundtablemodel.moc"
