#pragma once

#include <QDialog>
#include <QPointer>
#include <QWidget>

/// A dialog that is asked and done with in one scope. While it is open the host goes on: it may destroy the
/// owner, and the dialog with it. Then the answer is Rejected, and nothing of either may be touched.
template<class Dialog> class ModalDialog final
{
    Q_DISABLE_COPY(ModalDialog)
public:
    /// The owner is also the dialog's parent.
    explicit ModalDialog(QWidget *owner) : m_owner(owner), m_dialog(new Dialog(owner)) { }
    ~ModalDialog() { delete m_dialog.data(); }

    Dialog *get() const { return m_dialog; }
    Dialog *operator->() const { return m_dialog; }
    Dialog &operator*() const { return *m_dialog; }

    /// Runs the dialog and gives its result; QDialog::Rejected if the owner or the dialog died meanwhile.
    [[nodiscard]] int exec()
    {
        const int result = m_dialog->exec();
        return m_owner && m_dialog ? result : int(QDialog::Rejected);
    }
    bool isOwnerAlive() const { return !m_owner.isNull(); }

private:
    const QPointer<QWidget> m_owner;
    const QPointer<Dialog> m_dialog;
};
