#pragma once

#include <QString>
#include <QVector>

/// The names and figures of the sample data.
namespace SampleCatalogue {

struct Operation
{
    QString name;
    int timeLimit; // seconds of driving; 0 = none, as in the two below
    int runsLimit;
    int lapsLimit;
};

struct Model
{
    QString name;
    double endurance; // factor on the operations' limits
    int lapMilliseconds; // a typical lap
};

struct Person
{
    QString lastName;
    QString firstName;
    QString midName;
};

/// At most twelve operations, the most common first.
QVector<Operation> operations(int count);
QVector<Model> models();
QVector<Person> people();
QVector<QString> complaints();
QVector<QString> remarks();

} // namespace SampleCatalogue
