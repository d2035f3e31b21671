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

// What a capture read and whether it was written.
struct DemoCaptureResult {
    bool directoryRead = false;
    bool filesRead = false;
    bool saved = false;
    int records = 0; // directory records
    int files = 0;
    [[nodiscard]] bool ok() const { return directoryRead && filesRead && saved; }
};

// Replaces file by a capture of the connected device: the target id enciphered with the pack key
// under [Target] ID, every raw directory record and every file the user may read under [Data].
// A failed read stops the capture and nothing is written.
[[nodiscard]] DemoCaptureResult captureDemo(
    clsCellWeft& driver, const std::string& targetId, const std::string& file);

// mnuGenerateDemoINI: captureDemo into globals.gDemoFile with the commands off and the hourglass
// meanwhile. False when the device is not wired or the capture failed.
bool GenerateDemoINI(clsCellWeft& driver, const AppGlobals& globals, const DemoCaptureHooks& hooks);

// The files of a capture for the file protocol, read once from the file.
[[nodiscard]] DemoFileSource demoFileSource(const std::string& demoFile);

} // namespace zv
