#pragma once

#include "settings/heldkeyfilter.h"

#include <QDialog>
#include <QPointer>
#include <QWidget>

/// Makes a dialog that has no parent, or whose owner's window is not shown, stay above the owner's window or
/// else above the active one, centred on it. To be called before the dialog is shown.
void placeAboveOwner(QDialog &dialog, const QWidget &owner);

/// A modal dialog for one scope. The event loop runs while it is open, so the host may destroy the owner and,
/// with it, the dialog. The result is then Rejected, and neither may be accessed.
template<class Dialog> class ModalDialog final
{
    Q_DISABLE_COPY(ModalDialog)
public:
    enum Parenting { ChildOfOwner, WithoutParent };

    explicit ModalDialog(QWidget *owner, Parenting parenting = ChildOfOwner)
        : m_owner(owner), m_dialog(new Dialog(parenting == ChildOfOwner ? owner : nullptr))
    {
        if (parenting == WithoutParent)
            QObject::connect(owner, &QObject::destroyed, m_dialog.data(), &QDialog::reject);
    }
    ~ModalDialog() { delete m_dialog.data(); }

    Dialog *get() const { return m_dialog; }
    Dialog *operator->() const { return m_dialog; }
    Dialog &operator*() const { return *m_dialog; }

    /// Runs the dialog and returns its result; QDialog::Rejected if the owner or the dialog was destroyed
    /// meanwhile.
    [[nodiscard]] int exec()
    {
        placeAboveOwner(*m_dialog, *m_owner);
        const HeldKeyFilter heldKeys;
        const int result = m_dialog->exec();
        return m_owner && m_dialog ? result : int(QDialog::Rejected);
    }
    bool isOwnerAlive() const { return !m_owner.isNull(); }

private:
    const QPointer<QWidget> m_owner;
    const QPointer<Dialog> m_dialog;
};
