#include "garage/comboentries.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QScrollBar>

namespace {

ComboEntry entryAt(const QComboBox &combo, int index)
{
    return {combo.itemText(index), combo.itemData(index)};
}

QVector<ComboEntry> entriesOf(const QComboBox &combo)
{
    QVector<ComboEntry> entries;
    entries.reserve(combo.count());
    for (int index = 0; index < combo.count(); ++index)
        entries.append(entryAt(combo, index));
    return entries;
}

int indexOf(const QComboBox &combo, const ComboEntry &entry)
{
    return entry.data.isValid() ? combo.findData(entry.data) : combo.findText(entry.text);
}

void refill(QComboBox &combo, const QVector<ComboEntry> &entries)
{
    combo.clear();
    for (const ComboEntry &entry : entries)
        combo.addItem(entry.text, entry.data);
}

void refillOpenList(QComboBox &combo, const QVector<ComboEntry> &entries)
{
    QAbstractItemView &list = *combo.view();
    const ComboEntry highlighted = entryAt(combo, list.currentIndex().row());
    const int scrolled = list.verticalScrollBar()->value();
    refill(combo, entries);
    list.setCurrentIndex(combo.model()->index(indexOf(combo, highlighted), combo.modelColumn()));
    list.verticalScrollBar()->setValue(scrolled);
}

} // namespace

void setEntries(QComboBox &combo, const QVector<ComboEntry> &entries)
{
    if (entriesOf(combo) == entries)
        return;
    if (combo.view()->isVisible())
        refillOpenList(combo, entries);
    else
        refill(combo, entries);
}
