#pragma once

class QString;
class QWidget;

/// Asks whether something is really to be deleted; "no" is the default. `subject` names it, on a line of its
/// own; markup in it is shown as it was typed. False as well if the owner is destroyed meanwhile.
[[nodiscard]] bool confirmDeletion(QWidget *owner, const QString &subject);
