#pragma once

#include <QKeyEvent>

/// The keys that act on the current cell of a table.
namespace CellKeys {

/// Return, Enter or Space.
inline bool isActivation(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
}

/// A modifier other than that of the keypad is held.
inline bool isModified(const QKeyEvent &event)
{
    return event.modifiers() & ~Qt::KeypadModifier;
}

} // namespace CellKeys
