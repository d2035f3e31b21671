#pragma once
// The device commands on frmMain and the in-process simulator: the target is connected, the
// commands are wired, and the monitor's hooks are stand-ins that record their calls (the state
// bits are read from file 9 as the monitor's UpdateDeviceBits does).

#include "commands/device_commands.h"
#include "commands/wire_commands.h"
#include "monitor/main_form_fixture.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zv::test {

class CommandsTest : public MainFormTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(h.connect());
        h.globals.gTargetID = "1001";
        frmMain& window = makeForm();
        window.show();
        CommandHooks hooks;
        hooks.LoadTabs = note("LoadTabs");
        hooks.Parameters_ReadAll = note("Parameters_ReadAll");
        hooks.UpdateDynamicData = note("UpdateDynamicData");
        hooks.rebuildLists = note("rebuildLists");
        hooks.BuildPlotChannels = note("BuildPlotChannels");
        hooks.LoadMainForm = note("LoadMainForm");
        hooks.UpdateDeviceBits = [this] { readStateBits(); };
        hooks.showSplash = [this](const std::string& text) { calls.push_back("splash " + text); };
        window.onExit = [this] { calls.push_back("exit"); };
        commands = std::make_unique<DeviceCommands>(
            CommandServices { h.main(), h.globals, window, h.dialogs, h.loop }, std::move(hooks));
        wireDeviceCommands(window, *commands);
        readStateBits();
    }

    // Bit 3 of "Algorithm Enable" as the device holds it.
    [[nodiscard]] bool deviceWired() const
    {
        return (h.pack->model().files.get("Algorithm Enable") & 0x08) != 0;
    }
    void setDeviceWired(bool on)
    {
        const auto value = h.pack->model().files.get("Algorithm Enable");
        h.pack->model().files.set("Algorithm Enable", on ? (value | 0x08) : (value & ~0x08u));
        readStateBits();
    }

    // Exactly one notification was shown, this one.
    void expectOnlyNotification(const std::string& title, const std::string& text,
        platform::Icon icon = platform::Icon::Information) const
    {
        ASSERT_EQ(h.dialogs.notifications().size(), 1u);
        const auto& shown = h.dialogs.notifications()[0];
        EXPECT_EQ(shown.title, title);
        EXPECT_EQ(shown.text, text);
        EXPECT_EQ(shown.icon, icon);
    }
    [[nodiscard]] bool notified(const std::string& title) const
    {
        for (const auto& n : h.dialogs.notifications())
            if (n.title == title)
                return true;
        return false;
    }
    [[nodiscard]] bool called(const std::string& name) const
    {
        return std::find(calls.begin(), calls.end(), name) != calls.end();
    }

    std::unique_ptr<DeviceCommands> commands;
    std::vector<std::string> calls;

private:
    std::function<void()> note(const char* name)
    {
        return [this, name] { calls.emplace_back(name); };
    }
    void readStateBits()
    {
        std::string text;
        auto& d = h.driver();
        const bool read = d.GetFile(9, text);
        const auto* parameter = d.GatewayParameters.FindByName("Algorithm Enable");
        const int value = read && parameter
            ? static_cast<int>(parameter->value.asNumber(d.Parameters.display.locale).value_or(0))
            : 0;
        h.globals.gAlgEnableBit3 = (value & 0x08) != 0;
        h.globals.gAlgEnableBit5 = (value & 0x20) != 0;
    }
};

} // namespace zv::test
