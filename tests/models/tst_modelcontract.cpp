#include "data/columnkeys.h"
#include "data/datetimetext.h"
#include "models/carslistmodel.h"
#include "models/maintainancefilterproxy.h"
#include "models/maintainancemodel.h"
#include "models/servicelogfilter.h"
#include "models/servicelogmodel.h"
#include "settings/serviceoperationsmodel.h"
#include "settings/servicereglamentmodel.h"
#include "support/garagetest.h"
#include "support/modelcontract.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>

#include <algorithm>

using ModelContract::Mutation;
using ModelContract::oneLayoutChange;
using ModelContract::Records;

namespace {

/// Three names for all records; numbers are there once.
QString modelName(int record)
{
    return QString("M%1").arg(record % 3);
}

int shuffledNumber(int record)
{
    return record * 17 % 61;
}

class CarsSubject final : public ModelContract::Subject
{
public:
    explicit CarsSubject(bool onlyAvailable) : m_onlyAvailable(onlyAvailable) { }

    ClearbackgroundTableModel &model() override { return m_model; }
    QString recordKey() const override { return ColumnKeys::number; }

    void sort(int column, Qt::SortOrder order) override
    {
        if (column != -1) {
            m_column = column;
            m_order = order;
        }
        m_model.sort(column, order);
    }
    QVector<Mutation> mutations() override
    {
        return {{"sort", [this] { sort(0, Qt::DescendingOrder); }, oneLayoutChange},
                {"sort again", [this] { sort(-1, Qt::AscendingOrder); }, oneLayoutChange},
                {"sort by nothing", [this] { sort(99, Qt::AscendingOrder); }, oneLayoutChange},
                {"malformed load", [this] { m_model.loadFromJson({}, false); }, oneLayoutChange}};
    }

protected:
    void fill(const Records &records) override
    {
        m_column = 1;
        m_order = Qt::AscendingOrder;
        QJsonArray cars;
        for (int record : records) {
            cars.append(QJsonObject {{"id", record},
                                     {"name", modelName(record)},
                                     {"num", QString("%1-%2").arg(shuffledNumber(record)).arg(record)},
                                     {"available_for_runs", isAvailable(record)}});
        }
        m_model.loadFromJson({{"cars", cars}}, m_onlyAvailable);
    }
    Records arranged(const Records &records) const override
    {
        Records shownRecords;
        for (int record : records) {
            if (!m_onlyAvailable || isAvailable(record))
                shownRecords.append(record);
        }
        const int sign = m_order == Qt::DescendingOrder ? -1 : 1;
        std::sort(shownRecords.begin(), shownRecords.end(), [this, sign](int left, int right) {
            const int byNumber = shuffledNumber(left) - shuffledNumber(right);
            const int byName = QString::compare(modelName(left), modelName(right));
            if (m_column == 0)
                return sign * byNumber < 0;
            if (m_column == 1)
                return byName != 0 ? sign * byName < 0 : byNumber < 0;
            return sign * (left - right) < 0;
        });
        return shownRecords;
    }

private:
    static bool isAvailable(int record) { return record % 4 != 0; }

    const bool m_onlyAvailable;
    CarsListModel m_model;
    int m_column = 1;
    Qt::SortOrder m_order = Qt::AscendingOrder;
};

class LogSubject : public ModelContract::Subject
{
public:
    ClearbackgroundTableModel &model() override { return m_model; }
    QString recordKey() const override { return ColumnKeys::comment; }

    void edit(QRandomGenerator &random) override { remove(random.bounded(-1, int(m_records.size()) + 1)); }
    QVector<Mutation> mutations() override
    {
        return {
            {"remove the first", [this] { remove(0); }, oneLayoutChange},
            {"remove the last", [this] { remove(4); }, oneLayoutChange},
            {"remove before the first", [this] { remove(-1); }, oneLayoutChange},
            {"remove beyond the last", [this] { remove(5); }, oneLayoutChange},
            {"refresh", [this] { m_model.refresh(); }, oneLayoutChange},
            {"append", [this] { m_model.append({ServiceLogItem()}); }, {}},
            {"clear", [this] { m_model.clear(); }, {}},
        };
    }

protected:
    void fill(const Records &records) override
    {
        const ClearbackgroundTableModel::LayoutChange change(m_model);
        m_model.clear();
        QList<ServiceLogItem> items;
        for (int record : records)
            items.append(item(record));
        m_model.append(items);
        m_model.refresh();
    }
    void remove(int row)
    {
        if (row >= 0 && row < m_records.size())
            m_records.remove(row);
        m_model.removeItem(row);
    }
    static const ServiceLogItem &item(int record)
    {
        static QHash<int, ServiceLogItem> items;
        if (!items.contains(record))
            items.insert(record, makeItem(record));
        return *items.constFind(record);
    }

    ServiceLogModel m_model;

private:
    static ServiceLogItem makeItem(int record)
    {
        ServiceLogItem item;
        item.id = record;
        item.state = record % 2 == 0 ? OpenState : DoneState;
        item.opId = record % 5;
        item.model = modelName(record);
        item.num = QString("%1a").arg(shuffledNumber(record));
        item.opTime = QDateTime(QDate(2026, 1, 1), QTime(12, 0)).addSecs(60 * shuffledNumber(record));
        item.comment = QString("c-%1").arg(record);
        return item;
    }
};

class FilteredLogSubject final : public LogSubject
{
public:
    explicit FilteredLogSubject(int operation) : m_wantedOperation(operation)
    {
        m_filter.setSourceModel(&m_model);
        m_filter.setOperationFilter(operation);
        m_filter.sort(m_column, m_order);
    }

    QAbstractItemModel &shown() override { return m_filter; }

    /// Sorts only by columns without equal texts: among those Qt promises no order.
    void sort(int column, Qt::SortOrder order) override
    {
        const QVector<int> columns {-1, positionColumn, numberColumn, timeColumn, commentColumn};
        m_column = columns.at((column + 1) % columns.size());
        m_order = order;
        m_filter.sort(m_column, order);
    }
    void edit(QRandomGenerator &random) override
    {
        switch (random.bounded(5)) {
        case 0:
            m_wantedModel = random.bounded(2) == 0 ? QString() : modelName(random.bounded(3));
            return m_filter.setModelFilter(m_wantedModel);
        case 1:
            m_wantedNumber = random.bounded(2) == 0 ? QString() : QString::number(random.bounded(4));
            return m_filter.setNumberFilter(m_wantedNumber);
        case 2:
            m_wantedOperation = random.bounded(-3, 5);
            return m_filter.setOperationFilter(m_wantedOperation);
        case 3:
            m_wantedModel.clear();
            m_wantedNumber.clear();
            m_wantedOperation = ServiceLogFilter::anyOperation;
            return m_filter.reset();
        default:
            LogSubject::edit(random);
        }
    }

protected:
    Records arranged(const Records &records) const override
    {
        Records shownRecords;
        for (int record : records) {
            if (passes(item(record)))
                shownRecords.append(record);
        }
        const bool descending = m_order == Qt::DescendingOrder;
        if (m_column == positionColumn && descending)
            std::reverse(shownRecords.begin(), shownRecords.end());
        if (m_column > positionColumn) {
            QMap<QString, int> recordsByText;
            for (int record : qAsConst(shownRecords))
                recordsByText.insert(text(record), record);
            shownRecords = recordsByText.values().toVector();
            if (descending)
                std::reverse(shownRecords.begin(), shownRecords.end());
        }
        return shownRecords;
    }

private:
    enum LogColumn { positionColumn = 0, numberColumn = 2, timeColumn = 3, commentColumn = 6 };

    QString text(int record) const
    {
        switch (m_column) {
        case numberColumn:
            return item(record).num;
        case timeColumn:
            return DateTimeText::forDisplay(item(record).opTime.toLocalTime());
        default:
            return item(record).comment;
        }
    }
    bool passes(const ServiceLogItem &item) const
    {
        return (m_wantedModel.isEmpty() || item.model == m_wantedModel) && item.num.contains(m_wantedNumber)
            && (m_wantedOperation == -2 || item.opId == m_wantedOperation
                || (m_wantedOperation == -3 && item.state == OpenState));
    }

    ServiceLogFilter m_filter;
    int m_column = timeColumn;
    Qt::SortOrder m_order = Qt::DescendingOrder;
    QString m_wantedModel;
    QString m_wantedNumber;
    int m_wantedOperation;
};

class OneOperation final : public ReglamentSource
{
public:
    const QList<ModelReglament> &entries() const override { return m_entries; }

private:
    const QList<ModelReglament> m_entries {{"M0", {{1, {1, "Масло", 0, 0, 0}}}}};
};

class MaintainanceSubject : public ModelContract::Subject
{
public:
    MaintainanceSubject()
    {
        m_model.updateColumns(&m_operations, nullptr);
        m_model.sort(numberColumn, Qt::AscendingOrder);
    }

    ClearbackgroundTableModel &model() override { return m_model; }
    QString recordKey() const override { return ColumnKeys::number; }

    void sort(int column, Qt::SortOrder order) override
    {
        m_column = (column + 1) % (operationColumn + 1);
        m_order = order;
        m_model.sort(m_column, order);
    }
    void edit(QRandomGenerator &random) override
    {
        m_mode = random.bounded(5);
        m_model.setSortMode(m_mode);
    }
    QVector<Mutation> mutations() override
    {
        return {
            {"sort", [this] { sort(0, Qt::DescendingOrder); }, oneLayoutChange},
            {"sort mode", [this] { m_model.setSortMode(2); }, oneLayoutChange},
            {"columns", [this] { m_model.updateColumns(&m_operations, nullptr); }, {}},
            {"service done",
             [this] { m_model.recordServiceDone(1, 1, QDateTime::currentDateTime(), {}); },
             {}},
        };
    }

protected:
    void fill(const Records &records) override
    {
        QList<MaintainanceItem> items;
        for (int record : records)
            items.append(item(record));
        m_model.setItems(items);
    }
    Records arranged(const Records &records) const override
    {
        Records rows = records;
        const int sign = m_order == Qt::DescendingOrder ? -1 : 1;
        std::sort(rows.begin(), rows.end(), [this, sign](int left, int right) {
            const bool byOperation = m_column == operationColumn && m_mode <= MaintainanceModel::SortByLaps;
            if (byOperation && isServiced(left) != isServiced(right))
                return isServiced(left);
            if (byOperation && isServiced(left))
                return sign * (shuffledNumber(left) - shuffledNumber(right)) < 0;
            const int byName = QString::compare(modelName(left), modelName(right));
            return sign * (byName != 0 ? byName : shuffledNumber(left) - shuffledNumber(right)) < 0;
        });
        return rows;
    }

    MaintainanceModel m_model;

private:
    enum TableColumn { numberColumn = 2, operationColumn = 3 };

    static bool isServiced(int record) { return record % 4 != 0; }
    static MaintainanceItem item(int record)
    {
        const int counter = shuffledNumber(record);
        MaintainanceItem item {record, QString("%1-%2").arg(counter).arg(record), modelName(record), {}};
        if (isServiced(record)) {
            const QDateTime done = QDateTime(QDate(2026, 1, 1), QTime(12, 0)).addSecs(60 * counter);
            item.ops.insert(1, {1, done, counter, counter, counter, DoneState, {}, record});
        }
        return item;
    }

    const OneOperation m_operations;
    int m_column = numberColumn;
    Qt::SortOrder m_order = Qt::AscendingOrder;
    int m_mode = MaintainanceModel::SortByLastDone;
};

class FilteredMaintainanceSubject final : public MaintainanceSubject
{
public:
    FilteredMaintainanceSubject() { m_filter.setMaintainanceModel(&m_model); }

    QAbstractItemModel &shown() override { return m_filter; }
    void edit(QRandomGenerator &random) override
    {
        if (random.bounded(2) == 0)
            return MaintainanceSubject::edit(random);
        m_wantedModel = random.bounded(2) == 0 ? QString() : modelName(random.bounded(3));
        m_filter.setModelFilter(m_wantedModel, 1);
    }

protected:
    Records arranged(const Records &records) const override
    {
        Records rows;
        for (int record : MaintainanceSubject::arranged(records)) {
            if (m_wantedModel.isEmpty() || modelName(record) == m_wantedModel)
                rows.append(record);
        }
        return rows;
    }

private:
    MaintainanceFilterProxy m_filter;
    QString m_wantedModel;
};

class OperationsSubject final : public ModelContract::Subject
{
public:
    ClearbackgroundTableModel &model() override { return m_model; }
    QString recordKey() const override { return ColumnKeys::name; }

    void edit(QRandomGenerator &random) override
    {
        const int record = random.bounded(1, 61);
        m_records.removeOne(record);
        m_model.removeOperation(record);
    }
    QVector<Mutation> mutations() override
    {
        return {
            {"remove", [this] { m_model.removeOperation(3); }, oneLayoutChange},
            {"remove a row", [this] { m_model.removeOperationAt(0); }, oneLayoutChange},
            {"remove what is not there", [this] { m_model.removeOperation(99); }, {}},
            {"add", [this] { m_model.addEmptyOperation(); }, oneLayoutChange},
            {"append", [this] { m_model.appendOperation(77, "O-77"); }, {}},
            {"give an id", [this] { m_model.setNewOperationId(78); }, {}},
            {"rename", [this] { m_model.setData(m_model.index(0, 1), "O-1", Qt::EditRole); }, {}},
        };
    }

protected:
    void fill(const Records &records) override
    {
        const ClearbackgroundTableModel::LayoutChange change(m_model);
        while (m_model.rowCount() > 0)
            m_model.removeOperationAt(0);
        for (int record : records)
            m_model.appendOperation(record, QString("O-%1").arg(record));
    }

private:
    ServiceOperationsModel m_model;
};

class ReglamentSubject final : public ModelContract::Subject
{
public:
    ClearbackgroundTableModel &model() override { return m_model; }
    QString recordKey() const override { return ColumnKeys::model; }

    QVector<Mutation> mutations() override
    {
        return {{"limits",
                 [this] {
                     m_model.setLimits("R-1", 1, {1, 2, 3});
                 },
                 {}},
                {"unknown limits",
                 [this] {
                     m_model.setLimits(QString(), 1, {1, 2, 3});
                 },
                 {}}};
    }

protected:
    void fill(const Records &records) override
    {
        const ClearbackgroundTableModel::LayoutChange change(m_model);
        m_model.clear();
        for (int record : records)
            m_model.addModel(QString("R-%1").arg(record));
        m_model.addOperation(1, "Масло");
    }

private:
    ServiceReglamentModel m_model;
};

} // namespace

Q_DECLARE_METATYPE(ModelContract::SubjectFactory)

/// The promises that all tables make to views.
class TestModelContract : public GarageTest
{
    Q_OBJECT
private slots:
    void mutationsSendExactlyTheirSignals_data() { addSubjects(); }
    void mutationsSendExactlyTheirSignals();
    void indexesAndSelectionsFollowTheirRecords_data() { addSubjects(); }
    void indexesAndSelectionsFollowTheirRecords();
    void randomEditsAgreeWithAPlainList_data() { addSubjects(); }
    void randomEditsAgreeWithAPlainList();

private:
    template<typename SubjectClass, typename... Arguments>
    static void add(const char *name, Arguments... arguments)
    {
        QTest::newRow(name) << ModelContract::SubjectFactory(
            [=] { return std::make_unique<SubjectClass>(arguments...); });
    }
    static void addSubjects()
    {
        QTest::addColumn<ModelContract::SubjectFactory>("makeSubject");
        add<CarsSubject>("all cars", false);
        add<CarsSubject>("available cars", true);
        add<LogSubject>("service log");
        add<FilteredLogSubject>("whole service log by time", ServiceLogFilter::anyOperation);
        add<FilteredLogSubject>("pending service log by time", ServiceLogFilter::pendingOnly);
        add<MaintainanceSubject>("maintenance table");
        add<FilteredMaintainanceSubject>("maintenance table through its filter");
        add<OperationsSubject>("service operations");
        add<ReglamentSubject>("maintenance schedule");
    }
};

void TestModelContract::mutationsSendExactlyTheirSignals()
{
    QFETCH(const ModelContract::SubjectFactory, makeSubject);
    ModelContract::checkSignals(*makeSubject());
}

void TestModelContract::indexesAndSelectionsFollowTheirRecords()
{
    QFETCH(const ModelContract::SubjectFactory, makeSubject);
    ModelContract::checkThatIndexesFollow(*makeSubject());
}

void TestModelContract::randomEditsAgreeWithAPlainList()
{
    QFETCH(const ModelContract::SubjectFactory, makeSubject);
    constexpr int editsPerSeed = 2500;
    for (quint32 seed : {1u, 2u, 3u, 4u}) {
        ModelContract::checkRandomEdits(*makeSubject(), seed, editsPerSeed);
        if (QTest::currentTestFailed())
            return;
    }
}

GARAGE_TEST(TestModelContract)
#include "tst_modelcontract.moc"
