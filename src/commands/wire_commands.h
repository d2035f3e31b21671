#pragma once
// Connects the entries of the commands menu of frmMain to the device commands.

namespace zv {

class DeviceCommands;
class frmMain;

// Sets the click handlers of the commands menu entries (and of mnuParameters_commit) and makes
// them available; the commit entries stay off until parameters have been written.
void wireDeviceCommands(frmMain& window, DeviceCommands& commands);

} // namespace zv
