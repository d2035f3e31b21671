// zentavia-cli: the headless Zentavia. Qt Core and SerialPort only; no widgets, no display.

#include "cli/cli_runner.h"
#include "cli/cli_settings_store.h"
#include "platform/desktop.h"
#include "platform/ini_settings_store.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_serial_port.h"

#include <QCoreApplication>

#include <iostream>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("zentavia-cli");
    QCoreApplication::setOrganizationName("Norvale Systems");

    const zv::platform::IniSettingsStore userSettings(zv::platform::IniSettingsStore::defaultPath());
    if (!userSettings.loadProblem().empty())
        std::cerr << userSettings.loadProblem() << '\n';
    zv::cli::CliSettingsStore settings(userSettings);
    zv::platform::QtEventLoop loop;
    zv::platform::QtSerialPort port(settings);
    const std::vector<std::string> arguments(argv, argv + argc);
    return zv::cli::runCli(
        arguments, { port, loop, settings, zv::platform::programFolder(), std::cout, std::cerr });
}
