#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// A fault that a check found, with what follows from it and what helps.
struct Finding
{
    enum Severity { Error, Warning, Note };

    QString id; ///< of a list that is documented
    Severity severity = Error;
    QString title;
    QString harm;
    QString remedy; ///< the lines after the first, if any, are SQL
    qint64 count = 1; ///< rows, files or faults
    QStringList examples; ///< the first few; may hold any text of the database
};

using Findings = QVector<Finding>;

bool hasError(const Findings &findings);

constexpr int mostExamples = 5;
