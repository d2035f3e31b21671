#pragma once
// The application's globals: flags from the command line and the INI file, the target that was
// found, and the settings read at start-up. One instance lives in the application object, which
// hands it to whoever needs it.

#include "platform/dialogs.h"
#include "platform/settings_store.h"

#include <array>
#include <cstdint>
#include <string>

namespace zv {

inline constexpr int kTransportUsbAdapter = 1; // gTransport: 1 = USB adapter, other = HLK dongle

// The settings that are read once when the application starts.
struct StartupSettings {
    int CommPort = 1;
    int Baud = 2; // 0 = 19200, 1 = 57600, 2 = 115200
    int Clock = 2; // 0 = 23K, 1 = 86K, 2 = 100K, 3 = 400K
    int TemperatureUnits = 1; // 1: Celsius, 0: Kelvin
    int MaxPlottingChannels = 10;
    bool ReadWriteLogging = true;
    bool StaticDataCapture = true;
    int ChargerMode = 1;
    int AlarmMode = 0;
    int ExpandedPlot = 1;
    platform::Rgb ForeColor1 = 0;
    platform::Rgb ForeColor2 = 0;
    platform::Rgb AlternateRowColor = 0xFFF8F0;
    bool AutoLogging = false;
    bool AutoWrite = false;
};

// Reads the start-up settings. CommPort, Baud and Clock take a strict whole number; text that is
// not one, or a port below 1, a baud index outside 0..2 or a clock index outside 0..3, gives the
// default, so a damaged store never stops the program from reaching the dongle.
[[nodiscard]] StartupSettings readStartupSettings(
    const platform::SettingsStore& store, const std::string& programFolder);

struct AppGlobals {
    // Command line and start-up.
    bool gDemo = false;
    bool gBreakOnError = false;
    bool gShowLog = false;
    bool gAltConfigPrompt = false;
    bool gCal470Enabled = false;
    bool gAccessMenuEnabled = false;
    bool gLoaderOnly = false;
    char gDecimalSep = '.';
    std::string gListSep = ",";
    std::string gDemoFile; // program folder + "/demo.ini"
    std::string gINIFile; // program folder + "/Zentavia.ini"

    // INI [Setup].
    int gTransport = 0;
    int gAddress7 = 0;
    std::uint8_t SMBusWriteAddress = 0;

    // The target that was found.
    std::string gTargetID;
    std::string gTargetSection;
    std::string gTargetKey;
    std::string gTargetName;
    std::string gTargetURL;
    std::string gTargetREF;
    long gTargetFS = 0;
    bool gAverageVoltages = false;
    long gFirmwareVersion = 0;
    long gFirmwareBuild = 0;
    bool gAlgEnableBit3 = false;
    bool gAlgEnableBit5 = false;
    bool gInternalFlag0 = false;
    int gTempSensorCount = 0;
    std::uint8_t gNodeCount = 0;
    bool gCellsMatch = false;

    // Session password.
    std::array<std::uint8_t, 8> gNoPassword { 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF };
    std::array<std::uint8_t, 8> gPasswordBytes {};
    std::string gPasswordText;

    // Monitor state.
    bool PollingActive = false;
    int CurrentNode = 0;

    StartupSettings settings;

    [[nodiscard]] bool usbTransport() const { return gTransport == kTransportUsbAdapter; }
    // gAddress7 as given, and the write address: that value shifted left by one, kept to 8 bits.
    void setAddress(int address7);
    // The decimal separator of the locale, and the CSV delimiter that goes with it.
    void setDecimalSeparator(char separator);
};

} // namespace zv
