#pragma once

class QWidget;

/// Asks the user to confirm a deletion. The texts are those of the owner's translation context. False as
/// well if the owner was destroyed while the question was open.
[[nodiscard]] bool confirmDeletion(QWidget *owner);
