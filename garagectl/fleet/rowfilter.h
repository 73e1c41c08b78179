#pragma once

#include <QString>

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// Which karts and operations a command lists: "--car", "--model" and "--operation". Each may be given
/// several times; one that is not given accepts everything.
struct RowFilter
{
    void addTo(CLI::App &command);

    bool acceptsCar(const QString &number, const QString &model) const;
    /// An operation is named by its name, in any case of letters, or by its id.
    bool accepts(const QString &carNumber, const QString &carModel, int opId, const QString &opName) const;

    std::vector<std::string> cars;
    std::vector<std::string> models;
    std::vector<std::string> operations;
};
