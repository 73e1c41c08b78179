#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

class QComboBox;

struct ComboEntry
{
    QString text;
    QVariant data = {};

    bool operator==(const ComboEntry &other) const { return text == other.text && data == other.data; }
};

/// Makes these the entries of a combo box; one that has them already is not touched. An open list keeps its
/// scroll position, and its highlighted entry if that is still offered: the one with the same data, or the
/// same text if it has none. The current index may change.
void setEntries(QComboBox &combo, const QVector<ComboEntry> &entries);
