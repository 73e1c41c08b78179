#pragma once

#include <QAbstractTableModel>
#include <QBrush>
#include <QPair>
#include <QPersistentModelIndex>
#include <QVariant>
#include <QVector>

class QTreeView;

/// Base of every table of the module: columns are known by key text, and cells have no background of their
/// own. A row or column that is out of range is handled. GUI thread only.
class ClearbackgroundTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    struct Column
    {
        QString title;
        int alignment = 0; ///< Qt::Alignment bits of the cells
        int width = 0; ///< pixels; applied by the owner of the view
        QString key;
        int headerAlignment = -1; ///< -1: that of the cells
    };

    /// Replaces rows or columns of a model between layoutAboutToBeChanged and layoutChanged. Persistent
    /// indexes follow their record and their column's key, and become invalid with either. No two of them
    /// are ever moved to the same cell: Qt would lose track of both. A scope inside another one is part of
    /// it: views see one change.
    class LayoutChange final
    {
        Q_DISABLE_COPY(LayoutChange)
    public:
        explicit LayoutChange(ClearbackgroundTableModel &model) : m_model(model)
        {
            m_model.beginLayoutChange();
        }
        ~LayoutChange() { m_model.endLayoutChange(); }

    private:
        ClearbackgroundTableModel &m_model;
    };

    explicit ClearbackgroundTableModel(QObject *parent = nullptr);

    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// Empty for a column that does not exist.
    QString columnKey(int column) const;
    /// Sets the view's columns to the widths of the column list.
    void applyColumnWidths(QTreeView *view) const;

protected:
    /// Identifies the record of an existing row after the rows were replaced. Need not be unique: equal ids
    /// are distinguished by their order. Column keys are treated alike.
    virtual QString recordId(int row) const = 0;

    /// True for an index of this model whose row and column exist.
    bool isCell(const QModelIndex &index) const;

    const QVector<Column> &columns() const { return m_columns; }
    void appendColumn(const Column &column);
    void renameColumn(int column, const QString &title, const QString &key);
    void removeColumnAt(int column);
    /// Removes every column from this one on.
    void truncateColumns(int count);

private:
    /// The id of a row or column, and how many before it have the same one.
    using Identity = QPair<QString, int>;
    struct TrackedIndex
    {
        QModelIndex index;
        Identity row;
        Identity column;
    };

    void beginLayoutChange();
    void endLayoutChange();
    void trackPersistentIndexes();
    void movePersistentIndexes();
    QVector<Identity> rowIdentities() const;
    QVector<Identity> columnIdentities() const;

    const QBrush m_background;
    QVector<Column> m_columns;
    QVector<TrackedIndex> m_tracked;
    int m_layoutChangeDepth = 0;
};
