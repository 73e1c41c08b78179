#pragma once

#include <QString>

/// Outcome of an operation that can fail: success, or an error text for the user.
class [[nodiscard]] Result final
{
public:
    static Result success() { return Result(true, QString()); }
    static Result error(const QString &text) { return Result(false, text); }

    bool isOk() const { return m_isOk; }
    explicit operator bool() const { return m_isOk; }
    /// Empty on success.
    QString errorText() const { return m_errorText; }

private:
    Result(bool isOk, const QString &errorText) : m_isOk(isOk), m_errorText(errorText) { }

    bool m_isOk;
    QString m_errorText;
};
