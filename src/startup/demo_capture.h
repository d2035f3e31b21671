#pragma once
// demo.ini: the capture of a device for demo mode. mnuGenerateDemoINI writes it from the
// connected device; in demo mode the file protocol reads its files back from it.

#include "device_files/file_protocol.h"

#include <functional>
#include <string>

namespace zv {

class clsCellWeft;
struct AppGlobals;

// What the capture needs of the main window.
struct DemoCaptureHooks {
    std::function<bool()> isTheDeviceWired; // IsTheDeviceWired
    std::function<void(bool all)> disableAllCommands;
    std::function<void(bool all)> enableAllCommands;
    std::function<void(int pointer)> setMousePointer; // 11 hourglass, 0 normal
};

// mnuGenerateDemoINI: replaces globals.gDemoFile by a capture of the connected device: the
// enciphered target id under [Target] ID, every directory entry and every file the user may read
// under [Data]. False when the device is not wired or a read failed (the file then holds what
// was read before the failure).
bool GenerateDemoINI(clsCellWeft& driver, const AppGlobals& globals, const DemoCaptureHooks& hooks);

// The files of a capture for the file protocol, read once from the file.
[[nodiscard]] DemoFileSource demoFileSource(const std::string& demoFile);

} // namespace zv
