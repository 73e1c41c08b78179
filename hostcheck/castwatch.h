#pragma once

#include "trivexplugininterface.h"

#include <cstring>

/// Notices the cast of the root object to the interface. Without Q_OBJECT, so that moc does not generate
/// qt_metacast, which qobject_cast calls.
class CastWatch : public TrivexPluginInterface
{
public:
    void *qt_metacast(const char *name) override
    {
        if (name && std::strcmp(name, TRIVEX_PLUGIN_IID) == 0) {
            noteCast();
            return static_cast<TrivexPluginInterface *>(this);
        }
        return TrivexPluginInterface::qt_metacast(name);
    }

protected:
    virtual void noteCast() = 0;
};
