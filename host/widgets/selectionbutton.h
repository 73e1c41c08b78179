#pragma once

class QAbstractButton;
class QAbstractItemView;

/// Lets the button be pressed only while something is selected in the view, which has its model already.
void enableWithSelection(QAbstractButton &button, const QAbstractItemView &view);
