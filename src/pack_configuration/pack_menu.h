#pragma once
// The pack configuration entries of the main window's file menu, wired to the flows.

namespace zv {

class frmMain;
class PackConfigurationFlows;

// Sets the click handlers of the load, save, export and data-set entries and makes them
// available. The flows must outlive the window's use of them.
void wirePackConfiguration(frmMain& form, PackConfigurationFlows& flows);

} // namespace zv
