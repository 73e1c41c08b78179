#include "hostcheck/catalogue.h"

#include <QtGlobal>

#include <algorithm>

QLatin1String severityName(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return QLatin1String("error");
    case Severity::Warning:
        return QLatin1String("warning");
    case Severity::Note:
        break;
    }
    return QLatin1String("note");
}

const std::vector<FindingKind> &Catalogue::all()
{
    static const QLatin1String lifeCycle("host-integration.md#life-cycle");
    static const QLatin1String threads("host-integration.md#threads");
    static const QLatin1String startUp("host-integration.md#start-up-sequence");
    static const QLatin1String interface("host-integration.md#the-interface");
    static const QLatin1String tables("database.md#tables");
    static const std::vector<FindingKind> kinds {
        {QLatin1String("start-no-application"), Severity::Error,
         QLatin1String("The module creates its widgets when it is loaded: Qt ends the process."), lifeCycle},
        {QLatin1String("start-wrong-thread"), Severity::Error,
         QLatin1String("The module creates its widgets in a thread without a GUI: the process can crash."),
         threads},
        {QLatin1String("start-not-cast"), Severity::Error,
         QLatin1String(
             "A pointer that is not the result of qobject_cast to the interface is not checked: with "
             "another identifier or another copy of the class, calls end anywhere."),
         interface},
        {QLatin1String("start-not-connected"), Severity::Error,
         QLatin1String("The answers read_cars_list and update_remote_service are lost."), startUp},
        {QLatin1String("start-order"), Severity::Warning,
         QLatin1String("Before load_complete the module has no karts: its window shows empty lists."),
         startUp},
        {QLatin1String("start-no-load-complete"), Severity::Error,
         QLatin1String("The module never requests the karts and the pending records of the remote side."),
         QLatin1String("events.md#load_complete")},
        {QLatin1String("start-load-complete-twice"), Severity::Warning,
         QLatin1String("Karts and remote records are requested again; records can be sent twice."),
         QLatin1String("events.md#load_complete")},
        {QLatin1String("thread-slot"), Severity::Error,
         QLatin1String("The module changes its widgets in the wrong thread: the process can crash."),
         threads},
        {QLatin1String("message-unknown-event"), Severity::Note,
         QLatin1String("The module ignores the message."),
         QLatin1String("events.md#events-from-the-host-to-the-module")},
        {QLatin1String("message-shape"), Severity::Error,
         QLatin1String("The module reads the wrong value as a missing one: an empty text, false, or the id "
                       "-1. The schemas are in docs/protocol."),
         QLatin1String("events.md#events-from-the-host-to-the-module")},
        {QLatin1String("message-text"), Severity::Error,
         QLatin1String("The module cannot read the records and stores none of them."),
         QLatin1String("events.md#remote_service_data")},
        {QLatin1String("message-unknown-car"), Severity::Warning,
         QLatin1String("The module ignores a request about a car that it does not know."),
         QLatin1String("events.md#cars_list_changed")},
        {QLatin1String("event-missing"), Severity::Warning,
         QLatin1String("Without this event people, karts, tab or statistics are missing. A host that records "
                       "no runs needs no run_saved_to_db."),
         startUp},
        {QLatin1String("event-unused"), Severity::Note,
         QLatin1String("This session did not try the part of the module that this event starts."),
         QLatin1String("events.md#events-from-the-host-to-the-module")},
        {QLatin1String("answer-cars"), Severity::Error,
         QLatin1String("The module has no karts: its lists are empty."),
         QLatin1String("events.md#read_cars_list")},
        {QLatin1String("answer-remote"), Severity::Note,
         QLatin1String(
             "Records that wait on the remote side are not stored. A host without a remote side need "
             "not answer."),
         QLatin1String("events.md#update_remote_service")},
        {QLatin1String("answer-availability"), Severity::Error,
         QLatin1String("The lists of available karts do not change."),
         QLatin1String("events.md#update_cars")},
        {QLatin1String("answer-tab"), Severity::Error,
         QLatin1String("The user does not see the garage window."), QLatin1String("events.md#insert_tab")},
        {QLatin1String("answer-close"), Severity::Error,
         QLatin1String("The garage window stays open after the user has closed it."),
         QLatin1String("events.md#close_tab")},
        {QLatin1String("widget-window-deleted"), Severity::Error,
         QLatin1String(
             "Without its window the module ignores most messages. After close_tab, too, the host keeps it."),
         lifeCycle},
        {QLatin1String("widget-page-deleted"), Severity::Error,
         QLatin1String("Deleting the settings page ends the process."), lifeCycle},
        {QLatin1String("widget-delete-on-close"), Severity::Error,
         QLatin1String("The widget is deleted as soon as somebody closes it."), lifeCycle},
        {QLatin1String("widget-taken-apart"), Severity::Error,
         QLatin1String(
             "Widgets inside the module's window and page are not part of the interface: the module uses "
             "them where they were."),
         QLatin1String("host-integration.md#what-is-not-guaranteed")},
        {QLatin1String("database-missing"), Severity::Warning,
         QLatin1String(
             "The settings page and the window are empty until the file exists and is read again; the "
             "module's connections can create an empty file."),
         tables},
        {QLatin1String("database-tables"), Severity::Error,
         QLatin1String(
             "Statements over a missing table or column fail silently: nothing is shown or stored."),
         tables},
        {QLatin1String("database-keys"), Severity::Error,
         QLatin1String(
             "Limits are stored twice, ids of deleted rows are given again, or services count as open."),
         tables},
        {QLatin1String("database-index"), Severity::Warning,
         QLatin1String("A reload reads all laps for each service: minutes instead of seconds for a season."),
         tables},
        {QLatin1String("database-journal"), Severity::Note,
         QLatin1String("Each commit of the host waits until the module has finished reading."),
         QLatin1String("database.md#locks-journal-mode-backup")},
        {QLatin1String("database-lap-times"), Severity::Error,
         QLatin1String(
             "The comparison with the times of services is wrong: nothing, or too much, becomes due."),
         QLatin1String("database.md#time-formats")},
        {QLatin1String("database-connection-name"), Severity::Error,
         QLatin1String("The module opens a connection of this name: the host's own one is closed."), threads},
        {QLatin1String("end-after-application"), Severity::Warning,
         QLatin1String("The module ends with the application object; what it stores then is not announced."),
         lifeCycle},
        {QLatin1String("end-not-unloaded"), Severity::Note,
         QLatin1String("No write is lost, but what is stored at the end is not announced to the host."),
         QLatin1String("reliability.md#the-end-of-a-host")},
    };
    return kinds;
}

const FindingKind &Catalogue::kind(QLatin1String id)
{
    const std::vector<FindingKind> &kinds = all();
    const auto found =
        std::find_if(kinds.begin(), kinds.end(), [id](const FindingKind &kind) { return kind.id == id; });
    if (found == kinds.end())
        qFatal("hostcheck has no finding %s", id.data());
    return *found;
}
