#pragma once

class QWidget;

/// Asks whether something shall really be deleted. False as well if the owner died while the question was
/// open.
bool confirmDeletion(QWidget *owner);
