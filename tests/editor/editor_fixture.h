#pragma once
// frmEditParameter on scripted dialogs and a settings store in memory: the modal run is a function
// that plays the user's part, and whatever the user leaves open is cancelled.

#include "core/globals.h"
#include "core/settings_table.h"
#include "editor/frm_edit_parameter.h"
#include "params/smbus_parameter.h"
#include "platform/testing/memory_settings_store.h"
#include "platform/testing/scripted_dialogs.h"

#include <functional>
#include <string>

namespace zv::test {

class EditorFixture {
public:
    using User = std::function<void(frmEditParameter&)>;

    EditParameterContext context()
    {
        EditParameterContext c { globals, settings, dialogs, "/nowhere" };
        c.showModal = [this](platform::ui::Window& window) {
            auto& form = dynamic_cast<frmEditParameter&>(window);
            form.show();
            seen = snapshot(form);
            if (user)
                user(form);
            if (form.visible())
                form.cmdCancel.click();
        };
        c.screen = [] { return platform::ui::ScreenSize { 19200, 14400 }; };
        c.writePending = [this](bool on) { pendingCalls.push_back(on); };
        c.openHelpLink = [this] { ++helpLinks; };
        c.stateUpdateDue = [this] { ++stateUpdates; };
        return c;
    }

    // What the dialog showed on opening, before the user did anything.
    struct Snapshot {
        std::string range, rawRange, currentRaw, text, unitNote;
        bool okEnabled = false, bitFace = false;
    };
    static Snapshot snapshot(const frmEditParameter& f)
    {
        return { f.lblValidRange.caption(), f.lblValidRangeRaw.caption(), f.lblCurrentValueRaw.caption(),
            f.txtNewValue.text(), f.lblValidationUnit.caption(), f.cmdOK.enabled(),
            f.fraBitEncoded.visible() };
    }

    // A plain unsigned word with scaling 1 and the given limits and unit.
    static clsSMBusParameter word(double lower, double upper, std::string unit = "", double value = 0)
    {
        clsSMBusParameter p;
        p.ParameterName = "Test Value";
        p.SubBlockDataType = 2;
        p.SubBlockDataScaling = 1;
        p.LowerWriteLimit = lower;
        p.UpperWriteLimit = upper;
        p.EngineeringUnitsString = std::move(unit);
        p.value = DynamicValue(value);
        return p;
    }

    void edit(clsSMBusParameter& parameter, User play, int fileChunk = 2)
    {
        user = std::move(play);
        form.EditParameter(parameter, display, fileChunk);
    }

    std::string setting(const char* name) { return readSetting(settings, name, "/nowhere"); }

    AppGlobals globals;
    platform::MemorySettingsStore settings;
    platform::ScriptedDialogs dialogs;
    DisplaySettings display;
    User user;
    Snapshot seen;
    std::vector<bool> pendingCalls;
    int helpLinks = 0;
    int stateUpdates = 0;
    frmEditParameter form { context() };
};

} // namespace zv::test
