#pragma once

#include <QApplication>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QWidget>

/// The style that paints a cell: that of its view, or of the application without one.
inline const QStyle *styleOf(const QStyleOptionViewItem &cell)
{
    return cell.widget ? cell.widget->style() : QApplication::style();
}
