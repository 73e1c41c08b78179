#include "support/modelcontract.h"

#include "support/positionlessproxy.h"

#include <QAbstractItemModelTester>
#include <QTreeView>
#include <QtTest>

#include <algorithm>

namespace ModelContract {

namespace {

/// Logs every signal of a model, by name.
class SignalLog final : public QObject
{
public:
    explicit SignalLog(QAbstractItemModel &model)
    {
        log(model, "layoutAboutToBeChanged", &QAbstractItemModel::layoutAboutToBeChanged);
        log(model, "layoutChanged", &QAbstractItemModel::layoutChanged);
        log(model, "dataChanged", &QAbstractItemModel::dataChanged);
        log(model, "headerDataChanged", &QAbstractItemModel::headerDataChanged);
        log(model, "rowsAboutToBeInserted", &QAbstractItemModel::rowsAboutToBeInserted);
        log(model, "rowsInserted", &QAbstractItemModel::rowsInserted);
        log(model, "rowsAboutToBeRemoved", &QAbstractItemModel::rowsAboutToBeRemoved);
        log(model, "rowsRemoved", &QAbstractItemModel::rowsRemoved);
        log(model, "rowsMoved", &QAbstractItemModel::rowsMoved);
        log(model, "columnsInserted", &QAbstractItemModel::columnsInserted);
        log(model, "columnsRemoved", &QAbstractItemModel::columnsRemoved);
        log(model, "columnsMoved", &QAbstractItemModel::columnsMoved);
        log(model, "modelAboutToBeReset", &QAbstractItemModel::modelAboutToBeReset);
        log(model, "modelReset", &QAbstractItemModel::modelReset);
    }

    QStringList take()
    {
        QStringList taken;
        taken.swap(m_names);
        return taken;
    }

private:
    template<typename Signal> void log(QAbstractItemModel &model, const char *name, Signal signal)
    {
        connect(&model, signal, this, [this, name] { m_names.append(name); });
    }

    QStringList m_names;
};

QAbstractItemModelTester *attachTester(QAbstractItemModel &model, QObject *parent)
{
    auto *const proxy = new PositionlessProxy(parent);
    proxy->setSourceModel(&model);
    return new QAbstractItemModelTester(proxy, QAbstractItemModelTester::FailureReportingMode::Fatal, parent);
}

/// The shown rows as reconstructed from the signals alone.
class Mirror final : public QObject
{
public:
    explicit Mirror(Subject &subject) : m_subject(subject), m_rows(subject.actual())
    {
        QAbstractItemModel &model = subject.shown();
        connect(&model, &QAbstractItemModel::layoutChanged, this, [this] {
            m_rows = m_subject.expected();
            compare("layoutChanged");
        });
        connect(&model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) {
                    m_rows.remove(first, last - first + 1);
                    compare("rowsRemoved");
                });
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) {
                    for (int row = first; row <= last; ++row)
                        m_rows.insert(row, m_subject.recordAt(row));
                    compare("rowsInserted");
                });
        connect(&model, &QAbstractItemModel::dataChanged, this, [this] { compare("dataChanged"); });
    }

    void compare(const char *moment)
    {
        if (m_subject.actual() != m_rows && m_difference.isEmpty())
            m_difference = QString("rows differ from the plain list at ") + moment;
    }
    /// Empty as long as the rows have always been those of the plain list.
    QString difference() const { return m_difference; }

private:
    Subject &m_subject;
    Records m_rows;
    QString m_difference;
};

/// A cell, and what it must be afterwards.
struct FollowedCell
{
    QPersistentModelIndex index;
    int record = -1;
    QString columnKey;
};

/// Persistent indexes, the selection and the current cell of a shown view, taken before a change.
class Followers final
{
    Q_DISABLE_COPY(Followers)
public:
    Followers(Subject &subject, QTreeView &view) : m_subject(subject), m_view(view)
    {
        const QModelIndexList selected = view.selectionModel()->selectedRows(0);
        for (const QModelIndex &index : selected)
            m_selectedRecords.append(subject.recordAt(index.row()));
        m_current = view.currentIndex().isValid() ? followed(view.currentIndex()) : FollowedCell {};
    }

    void follow(int row, int column) { m_cells.append(followed(m_subject.shown().index(row, column))); }

    /// What went wrong, or nothing. Where rows are removed, Qt makes a neighbour current.
    QString verdict(bool rowsWereRemoved) const
    {
        const Records rows = m_subject.actual();
        for (const FollowedCell &cell : m_cells) {
            if (!isWhereItBelongs(cell, rows))
                return "a persistent index left its record";
        }

        Records stillSelected;
        const QModelIndexList selected = m_view.selectionModel()->selectedRows(0);
        for (const QModelIndex &index : selected)
            stillSelected.append(rows.value(index.row(), -1));
        std::sort(stillSelected.begin(), stillSelected.end());
        if (stillSelected != surviving(m_selectedRecords, rows))
            return "the selection left its records";

        if (rows.contains(m_current.record)) {
            if (m_view.currentIndex() != m_current.index || !isWhereItBelongs(m_current, rows))
                return "the current cell left its record";
        } else if (!rowsWereRemoved && m_view.currentIndex().isValid()) {
            return "the current cell outlived its record";
        }
        return {};
    }

private:
    FollowedCell followed(const QModelIndex &index) const
    {
        return {index, m_subject.recordAt(index.row()), m_subject.model().columnKey(index.column())};
    }
    bool isWhereItBelongs(const FollowedCell &cell, const Records &rows) const
    {
        const int row = int(rows.indexOf(cell.record));
        int column = -1;
        for (int candidate = 0; candidate < m_subject.model().columnCount(); ++candidate) {
            if (m_subject.model().columnKey(candidate) == cell.columnKey)
                column = candidate;
        }
        return QModelIndex(cell.index) == m_subject.shown().index(row, column);
    }
    static Records surviving(Records records, const Records &rows)
    {
        records.erase(std::remove_if(records.begin(), records.end(),
                                     [&rows](int record) { return !rows.contains(record); }),
                      records.end());
        std::sort(records.begin(), records.end());
        return records;
    }

    Subject &m_subject;
    QTreeView &m_view;
    QVector<FollowedCell> m_cells;
    Records m_selectedRecords;
    FollowedCell m_current;
};

void showAll(QTreeView &view, Subject &subject)
{
    view.setModel(&subject.shown());
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    view.resize(300, 150);
    view.show();
}

void selectRow(QTreeView &view, int row)
{
    view.selectionModel()->select(view.model()->index(row, 0),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

void selectEverySecondRow(QTreeView &view, int currentRow)
{
    view.setCurrentIndex(view.model()->index(currentRow, 1));
    view.clearSelection();
    for (int row = 0; row < view.model()->rowCount(); row += 2)
        selectRow(view, row);
}

/// What the indexes of all cells, the selection or the current cell lose by a layout change; empty: nothing.
QString lostBy(const std::function<void()> &layoutChange, Subject &subject, QTreeView &view)
{
    view.grab();
    Followers followers(subject, view);
    for (int row = 0; row < subject.shown().rowCount(); ++row) {
        for (int column = 0; column < subject.shown().columnCount(); ++column)
            followers.follow(row, column);
    }
    layoutChange();
    view.grab();
    return followers.verdict(false);
}

Records sequence(int first, int last)
{
    Records records;
    for (int record = first; record <= last; ++record)
        records.append(record);
    return records;
}

Records reversed(Records records)
{
    std::reverse(records.begin(), records.end());
    return records;
}

struct NamedRefill
{
    const char *name;
    Records from;
    Records to;
};

const QVector<NamedRefill> &refills()
{
    static const QVector<NamedRefill> all {
        {"first content", {}, sequence(1, 5)},
        {"unchanged", sequence(1, 5), sequence(1, 5)},
        {"growing at the end", sequence(1, 5), sequence(1, 60)},
        {"growing at the start", sequence(30, 40), sequence(1, 40)},
        {"shrinking at the end", sequence(1, 60), sequence(1, 3)},
        {"shrinking at the start", sequence(1, 60), sequence(55, 60)},
        {"losing the middle", sequence(1, 9), {1, 2, 8, 9}},
        {"reordered", sequence(1, 20), reversed(sequence(1, 20))},
        {"other records", sequence(1, 9), sequence(11, 19)},
        {"overlapping and mixed", sequence(1, 9), {14, 9, 3, 12, 1, 20, 7}},
        {"emptied", sequence(1, 9), {}},
    };
    return all;
}

QString report(const QString &moment, const QString &problem)
{
    return moment + ": " + problem;
}

Records randomRecords(QRandomGenerator &random)
{
    Records records = sequence(1, 40);
    std::shuffle(records.begin(), records.end(), random);
    records.resize(random.bounded(8) == 0 ? 0 : random.bounded(40));
    return records;
}

} // namespace

void Subject::refill(const Records &records)
{
    m_records = records;
    fill(records);
}

void Subject::sort(int, Qt::SortOrder)
{
}

void Subject::edit(QRandomGenerator &random)
{
    refill(randomRecords(random));
}

Records Subject::actual()
{
    Records rows;
    for (int row = 0, count = shown().rowCount(); row < count; ++row)
        rows.append(recordAt(row));
    return rows;
}

int Subject::recordAt(int row)
{
    for (int column = 0; column < model().columnCount(); ++column) {
        if (model().columnKey(column) != recordKey())
            continue;
        const QString text = shown().index(row, column).data().toString();
        bool isNumber = false;
        const int record = text.mid(text.lastIndexOf('-') + 1).toInt(&isNumber);
        return isNumber ? record : -1;
    }
    return -1;
}

void checkSignals(Subject &subject)
{
    for (const NamedRefill &refill : refills()) {
        subject.refill(refill.from);
        SignalLog log(subject.model());
        SignalLog shownLog(subject.shown());
        subject.refill(refill.to);
        QVERIFY2(log.take() == oneLayoutChange, refill.name);
        QVERIFY2(shownLog.take() == oneLayoutChange, refill.name);
        QVERIFY2(subject.actual() == subject.expected(), refill.name);
    }
    const int mutationCount = int(subject.mutations().size());
    for (int number = 0; number < mutationCount; ++number) {
        subject.refill(sequence(1, 5));
        const Mutation mutation = subject.mutations().at(number);
        SignalLog log(subject.model());
        mutation.apply();
        const QStringList heard = log.take();
        QVERIFY2(heard == mutation.expectedSignals, qPrintable(mutation.name + ": " + heard.join(' ')));
    }
}

void checkThatIndexesFollow(Subject &subject)
{
    QObject testers;
    attachTester(subject.shown(), &testers);
    QTreeView view;
    showAll(view, subject);
    for (const NamedRefill &refill : refills()) {
        subject.refill(refill.from);
        for (int currentRow = -1, rows = subject.shown().rowCount(); currentRow < rows; currentRow += 4) {
            subject.refill(refill.from);
            selectEverySecondRow(view, currentRow);
            const QString lost = lostBy([&] { subject.refill(refill.to); }, subject, view);
            QVERIFY2(lost.isEmpty(), qPrintable(report(refill.name, lost)));
        }
    }

    subject.refill(sequence(1, 20));
    selectEverySecondRow(view, 0);
    for (int column = -1; column <= subject.shown().columnCount(); ++column) {
        for (Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            const QString lost = lostBy([&] { subject.sort(column, order); }, subject, view);
            QVERIFY2(lost.isEmpty(), qPrintable(report(QString("sort by %1").arg(column), lost)));
        }
    }
}

void checkRandomEdits(Subject &subject, quint32 seed, int editCount)
{
    QObject testers;
    attachTester(subject.shown(), &testers);
    QTreeView view;
    showAll(view, subject);
    QRandomGenerator random(seed);
    subject.refill(sequence(1, 20));
    Mirror mirror(subject);
    SignalLog log(subject.shown());

    for (int number = 0; number < editCount; ++number) {
        const QString edit = QString("edit %1").arg(number);
        const int rows = subject.shown().rowCount();
        const int columns = subject.shown().columnCount();
        if (rows > 0 && random.bounded(2) == 0) {
            view.setCurrentIndex(subject.shown().index(random.bounded(rows), random.bounded(columns)));
            selectRow(view, random.bounded(rows));
        }
        Followers followers(subject, view);
        for (int follower = 0; follower < 4 && rows > 0; ++follower)
            followers.follow(random.bounded(rows), random.bounded(columns));
        log.take();

        switch (random.bounded(4)) {
        case 0:
            subject.refill(randomRecords(random));
            break;
        case 1:
            subject.sort(random.bounded(-1, columns + 2),
                         random.bounded(2) == 0 ? Qt::AscendingOrder : Qt::DescendingOrder);
            break;
        default:
            subject.edit(random);
        }

        mirror.compare("the end of the edit");
        QVERIFY2(mirror.difference().isEmpty(), qPrintable(report(edit, mirror.difference())));
        QCOMPARE(subject.actual(), subject.expected());
        const bool rowsWereRemoved = log.take().contains("rowsRemoved");
        const QString verdict = followers.verdict(rowsWereRemoved);
        QVERIFY2(verdict.isEmpty(), qPrintable(report(edit, verdict)));
        if (number % 50 == 0)
            view.grab();
    }
}

} // namespace ModelContract
