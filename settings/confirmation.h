#pragma once

class QWidget;

/// Asks whether something shall really be deleted, in the words of the owner's class (its translation
/// context). False as well if the owner died while the question was
/// open.
[[nodiscard]] bool confirmDeletion(QWidget *owner);
