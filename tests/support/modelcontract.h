#pragma once

#include "models/clearbackgroundtablemodel.h"

#include <QRandomGenerator>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

/// What every table of the module promises to views: a change is one announced layout change, and indexes,
/// selections and the current cell follow their record or become invalid with it. A model joins by a Subject.
namespace ModelContract {

/// Numbers of records, 1 to 60, top to bottom. Each is at the end of its row's text, after a "-":
/// "Sodi-12".
using Records = QVector<int>;

/// A mutation and the signals that it makes the model send, in order.
struct Mutation
{
    QString name;
    std::function<void()> apply;
    QStringList expectedSignals;
};

/// The signals of a change of content, each by its name.
inline const QStringList oneLayoutChange {"layoutAboutToBeChanged", "layoutChanged"};

/// A model under test, the proxy through which it is shown, and a plain list of what it must hold.
class Subject
{
    Q_DISABLE_COPY(Subject)
public:
    Subject() = default;
    virtual ~Subject() = default;

    virtual ClearbackgroundTableModel &model() = 0;
    /// What views see: the proxy, if there is one.
    virtual QAbstractItemModel &shown() { return model(); }
    /// Key of the column whose text ends in the record's number.
    virtual QString recordKey() const = 0;

    /// Replaces the content.
    void refill(const Records &records);
    /// Sorts the shown model; does nothing where sorting is not offered.
    virtual void sort(int column, Qt::SortOrder order);
    /// One change of the model's own kind; the plain list changes first.
    virtual void edit(QRandomGenerator &random);
    /// Mutations of five records, numbered 1 to 5, beside refills.
    virtual QVector<Mutation> mutations() { return {}; }

    /// The rows that must be shown.
    Records expected() const { return arranged(m_records); }
    /// The rows that are shown.
    Records actual();
    /// The record of a shown row, or -1.
    int recordAt(int row);

protected:
    /// Makes the records the model's whole content, announced as the model's owner does.
    virtual void fill(const Records &records) = 0;
    /// What is shown of the records, in which order.
    virtual Records arranged(const Records &records) const { return records; }

    Records m_records; ///< the plain list
};

using SubjectFactory = std::function<std::unique_ptr<Subject>()>;

/// Refills of every kind send exactly one layout change, as does each of the subject's own mutations send
/// those that it lists.
void checkSignals(Subject &subject);
/// Persistent indexes, a selection and the current cell follow their record through refills and sorts, with
/// a view attached.
void checkThatIndexesFollow(Subject &subject);
/// Random refills, sorts and edits, compared with the plain list after each signal.
void checkRandomEdits(Subject &subject, quint32 seed, int editCount);

} // namespace ModelContract
