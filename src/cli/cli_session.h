#pragma once
// The driver of one zentavia-cli run over the seams it is given (serial port or USB adapter,
// settings, dialogs): the
// link, the target's identification, the directory and the configuration, in that order, each
// stage run once and only when a command needs it. The headless part of target detection: no
// splash, no login, no choice of target by hand; every failure is a CliError with the text the
// splash would show.

#include "core/globals.h"
#include "driver/cls_main.h"

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

namespace zv::platform {
class Dialogs;
class EventLoop;
class SerialPort;
class SettingsStore;
} // namespace zv::platform

namespace zv {
class TargetOperations;
class UsbAdapter;
} // namespace zv

namespace zv::cli {

// The link options of the command line.
struct LinkOptions {
    std::string port; // --port: a port number or a device path; empty: the CommPort setting
    std::string usbDevice; // --usb: the adapter as the UsbAdapter setting names one
    bool demo = false; // --demo: run from the capture demo.ini in the program folder
    std::optional<int> address; // --address: 7-bit SMBus address; else [Setup] Address
    bool acceptLoader = false; // a target in a loader state is connected, not refused (firmware)
    std::optional<std::string> password; // --password or ZENTAVIA_PASSWORD: opens a sealed pack
    std::string directoryCache; // folder of the directory cache (directory_cache.h); empty: none
};

// Makes the USB adapter that a UsbAdapter setting names (makeUsbAdapter).
using UsbAdapterFactory = std::function<std::unique_ptr<UsbAdapter>(const std::string& setting)>;

struct SessionServices {
    platform::SerialPort& port;
    platform::EventLoop& loop;
    platform::Dialogs& dialogs;
    // Writes go to this run only: a device path given as --port becomes a port override here.
    platform::SettingsStore& settings;
    std::string programFolder;
    std::ostream& diagnostics; // file status messages of the device
    UsbAdapterFactory usbAdapters = {}; // empty: makeUsbAdapter
};

class CliSession {
public:
    CliSession(SessionServices services, LinkOptions options);
    ~CliSession();
    CliSession(const CliSession&) = delete;
    CliSession& operator=(const CliSession&) = delete;

    // The link up and the command set open (in demo mode: the capture loaded).
    void connect();
    // The target id matched in the target table; a sealed target ends here.
    void identify();
    void readDirectory();
    // The gateway configuration, the first device files, the globals of the target, the cells and
    // the cell configuration.
    void loadConfiguration();
    // All four stages, as target detection runs them.
    void detect();
    // The exit order of the link: command set closed, device locked, dongle reset.
    void disconnect();

    [[nodiscard]] clsCellWeft& driver();
    [[nodiscard]] const AppGlobals& globals() const { return globals_; }
    [[nodiscard]] int userAccessLevel();
    [[nodiscard]] bool demo() const { return globals_.gDemo; }
    // The boxes of the run and the stream of its messages (stderr).
    [[nodiscard]] std::ostream& diagnostics() { return s_.diagnostics; }
    // The seams of the run, for commands that drive more than the link (poll and its log).
    [[nodiscard]] platform::EventLoop& loop() { return s_.loop; }
    [[nodiscard]] platform::Dialogs& dialogs() { return s_.dialogs; }
    [[nodiscard]] platform::SettingsStore& settings() { return s_.settings; }
    [[nodiscard]] const std::string& programFolder() const { return s_.programFolder; }

    // After the target restarted (an initialize): the command set opened again, then the
    // identification, directory and configuration read anew.
    void redetect();
    // The driver's owner and the globals, for flows that take them (after connect()).
    [[nodiscard]] clsMain& main();
    [[nodiscard]] AppGlobals& mutableGlobals() { return globals_; }
    [[nodiscard]] const SessionServices& services() const { return s_; }

private:
    void readSetup();
    void choosePort();
    void createDriver();
    void openLink();
    void openAdapter();
    [[nodiscard]] TargetOperations target();
    [[nodiscard]] DemoFileSource loadCapture() const;
    [[nodiscard]] std::string demoTargetId() const;
    // A sealed level (0 or 1) ends the run, unless a password was given: then the login of the
    // login window runs and its level is the session's (cli_login.cpp).
    [[nodiscard]] int unseal(int level);
    // The directory from the cache when the directory's own record, read now, matches a stored
    // one; else false and nothing is read beyond that record.
    [[nodiscard]] bool readCachedDirectory();
    void storeDirectory();

    SessionServices s_;
    LinkOptions options_;
    AppGlobals globals_;
    std::unique_ptr<clsMain> main_;
    bool linkUp_ = false; // the dongle answers or the adapter is open: the exit order ends the link
    bool targetAnswered_ = false; // the target answers: the exit order closes its command set
    bool connected_ = false;
    bool identified_ = false;
    bool directoryRead_ = false;
    std::vector<std::string> freshDirectory_; // the records of a directory read afresh, to be stored
    bool configured_ = false;
};

} // namespace zv::cli
