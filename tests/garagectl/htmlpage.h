#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

/// A page as a parser of HTML 5 understands it.
class HtmlPage final
{
public:
    struct Element
    {
        QString tag;
        QHash<QString, QString> attributes;
        QString text; ///< of all inside, on one line
        QString path; ///< the ids and classes of the elements around it, and its own

        QStringList classes() const { return attributes.value("class").split(' ', Qt::SkipEmptyParts); }
    };

    explicit HtmlPage(const QByteArray &bytes);

    int errors() const { return m_errors; }
    const QVector<Element> &elements() const { return m_elements; }
    /// The elements with this tag inside one with the id or class; all with an empty `inside`.
    QVector<Element> all(const QString &tag, const QString &inside = {}) const;
    /// The text of the element with this id; null if there is none.
    QString text(const QString &id) const;

private:
    int m_errors = 0;
    QVector<Element> m_elements;
};
