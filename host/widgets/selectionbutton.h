#pragma once

class QAbstractButton;
class QAbstractItemView;

/// Enables the button while the view has a selection. Call after setModel().
void enableWithSelection(QAbstractButton &button, const QAbstractItemView &view);
