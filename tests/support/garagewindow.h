#pragma once

#include "garage/garageform.h"
#include "settings/garagesettingsform.h"
#include "support/testdatabase.h"
#include "support/userinput.h"

#include <QJsonObject>
#include <QVector>

#include <memory>

/// A garage window on a real file, with its loader and the settings page's limits; records its signals.
class GarageWindow final : public QObject
{
    Q_OBJECT
public:
    struct Event
    {
        QString name; ///< the signal's name, or the event's of a message to the host
        QJsonObject data;
    };

    GarageWindow();

    /// Shows the window and waits for the reload that this causes.
    void show();
    /// Requests a reload and waits for it.
    void reload();
    /// Waits until no reload is in progress.
    void settle();

    template<class Widget> Widget *find(const char *name) const { return child<Widget>(*form, name); }
    void click(const char *button) const;
    /// Brings a tab to the front by its page's name.
    void openTab(const char *page) const;
    /// Chooses an item of a combo box with the keyboard, as a user does.
    void choose(const char *combo, int index) const;
    /// Moves the mouse to a cell of the maintenance table, so that its button appears.
    void hover(const QModelIndex &cell) const;
    /// Row of a car in the maintenance table as it is shown, or -1.
    int visibleRowOf(const QString &num) const;
    /// Column of the maintenance table by its title.
    int columnOf(const QString &title) const;

    /// Names of the events since the last call of takeEvents.
    QStringList eventNames() const;
    QVector<Event> takeEvents();

    std::unique_ptr<GarageSettingsForm> settings;
    std::unique_ptr<GarageForm> form;
    QVector<Event> events;
    int requested = 0; ///< reloads requested
    int delivered = 0;
};
