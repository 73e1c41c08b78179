#pragma once

#include "support/loadedplugin.h"
#include "support/testdatabase.h"

#include <QDialog>
#include <QRandomGenerator>
#include <QTimer>
#include <QTreeView>

#include <functional>

/// The finished library in a host. Mechanic, drivers, remote side, settings page and the laps of the host act
/// at random. Every record has a comment of its own, one word, by which it is known.
///
/// Tells by notes what the host was told, and what is about to change; Promises understands them.
class GarageAtWork final : public QObject
{
public:
    using NoteTaker = std::function<void(const QByteArray &)>;

    /// The database is the host's connection; prepare() must have filled it. The same seed gives the same
    /// actions.
    GarageAtWork(const TestDatabase &database, quint32 seed, NoteTaker note);

    /// Karts, operations and a limit.
    static void prepare(const TestDatabase &database);

    void act();
    /// Waits until nothing is under way. False if that takes longer than a minute.
    bool settle();
    /// Waits, then unloads the library.
    void end();

    /// One batch of all records of the remote side that were not archived. Does nothing if there are none.
    void sendUnarchived();

    QSet<QByteArray> shownComments() const; ///< in the service log
    int unarchived() const { return int(m_unarchived.size()); }
    int announcements() const { return m_announcements; }

private:
    void handleMessage(const HostMessage &message);
    void note(const QByteArray &verb, const QByteArray &subject);
    void answerDialog();
    QByteArray newComment(const char *prefix);

    void sendBatch(bool sendsAgain);
    void sendBatch(const QList<int> &ids);
    void recordService();
    void complain();
    void deleteRecord();
    void switchAvailability();
    void renameOperation();
    void addOperation();
    void removeOperation();
    void enterLimit();
    void recordLaps();

    int below(int bound) { return int(m_random.bounded(quint32(bound))); }

    const TestDatabase &m_database;
    QRandomGenerator m_random;
    const NoteTaker m_note;
    LoadedPlugin m_host;
    QWidget &m_window;
    QWidget &m_page;
    QTimer m_dialogTimer;
    QByteArray m_commentToEnter;
    QHash<int, QByteArray> m_remote; ///< comments by remote id
    QSet<int> m_unarchived; ///< remote ids
    QHash<int, QByteArray> m_deleting; ///< comments by local id
    int m_nextId = 1; ///< of remote records
    int m_nextComment = 1;
    int m_nextRun = 1;
    int m_announcements = 0;
    int m_reloadsAsked = 0;
    int m_reloads = 0;
};
