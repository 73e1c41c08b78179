#pragma once

#include "host/app/demohost.h"
#include "host/app/hostwindow.h"

#include <QJsonObject>
#include <QPushButton>

#include <memory>

/// The demo host on sample data around a plug-in that only echoes, its window shown.
struct HostFixture
{
    std::unique_ptr<DemoHost> host;
    std::unique_ptr<HostWindow> window;

    template<typename Widget> Widget *find(const char *name) const
    {
        return window->findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *button) const { find<QPushButton>(button)->click(); }
    /// Data of the last message of the event to the plug-in.
    QJsonObject lastSent(const QString &event) const;
    int countSent(const QString &event) const;
};

/// Fails the program if a part cannot be made.
HostFixture makeHostFixture();
