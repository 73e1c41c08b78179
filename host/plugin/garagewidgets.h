#pragma once

/// Object names of widgets and actions inside the module's windows. The screenshots and the validator find
/// them by name; the rest of the host uses messages only.
namespace GarageWidgets {

constexpr char availableCarsView[] = "tvAvailableCars";
constexpr char removeAvailableButton[] = "pbRemoveAvailable";
constexpr char maintenanceView[] = "tvMaintainanceTable";
constexpr char serviceLogView[] = "tvServiceLog";
constexpr char doneAction[] = "actionDoneOperation";
constexpr char deleteAction[] = "actionDeleteMaintainanceItem";
constexpr char operationsView[] = "tvServiceOperations";
constexpr char scheduleView[] = "tvServiceReglament";

} // namespace GarageWidgets
