#pragma once

#include <QString>

/// Outcome of an operation that can fail: success, or an error text for the user. A locked database is an
/// error that may be gone later.
class [[nodiscard]] Result final
{
public:
    static Result success() { return Result(Success, QString()); }
    static Result error(const QString &text) { return Result(Error, text); }
    static Result locked(const QString &text) { return Result(Locked, text); }

    bool isOk() const { return m_kind == Success; }
    explicit operator bool() const { return isOk(); }
    bool isLocked() const { return m_kind == Locked; }
    /// Empty on success.
    QString errorText() const { return m_errorText; }

private:
    enum Kind { Success, Error, Locked };

    Result(Kind kind, const QString &errorText) : m_kind(kind), m_errorText(errorText) { }

    Kind m_kind;
    QString m_errorText;
};
