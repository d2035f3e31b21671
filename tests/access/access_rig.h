#pragma once
// The access flows wired to the in-process simulated pack and a main window double: UpdateMenus
// applies the policy, mnuConnect_Click counts the reconnections (and, as the repeated target
// detection does, stores the level the target now grants).

#include "access/frm_login.h"
#include "access/frm_user_access_level.h"
#include "access/login.h"
#include "access/menu_policy.h"
#include "main_window_double.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

#include <string>

namespace zv::test {

inline zvsim::PackOptions packOptions(std::uint16_t targetId, bool sealed, int level = 3)
{
    zvsim::PackOptions options;
    options.targetId = targetId;
    options.sealed = sealed;
    options.level = level;
    return options;
}

class AccessRig {
public:
    explicit AccessRig(zvsim::PackOptions options)
        : sim(options)
        , access(services(), mainWindowAccess())
    {
        char id[5];
        std::snprintf(id, sizeof id, "%04X", options.targetId);
        sim.globals.gTargetID = id;
        window.show();
    }

    // Link up and the target's configuration read, as the target detection leaves it.
    void connect(const std::string& targetName) { ASSERT_TRUE(sim.connect(targetName)); }
    // The link and the command set only: what the target detection of "1003" does before the seal.
    void openLink() { ASSERT_TRUE(sim.openLink()); }

    int& level() { return sim.main().UserAccessLevel(); }
    [[nodiscard]] int packLevel() const { return sim.pack->model().access.level(); }

    void typePassword(const std::string& text) { access.login().txtPassword.userEdit(text); }
    void logon(const std::string& text)
    {
        typePassword(text);
        access.login().cmdLogon.click();
    }

    SimHarness sim;
    MainWindowDouble window;
    clsMenuCol policy = BuildMenuPolicy();
    int connects = 0;
    int levelAtConnect = -99;
    int tabLoads = 0;
    int sessionEnds = 0;
    UserAccess access;

private:
    AccessServices services()
    {
        return { sim.main(), sim.globals, sim.dialogs, busCommandLock(sim.driver().Bus) };
    }
    MainWindowAccess mainWindowAccess()
    {
        MainWindowAccess hooks;
        hooks.window = &window;
        hooks.UpdateMenus = [this] {
            ApplyMenuPolicy(window, policy, menuPolicyContext(sim.globals, [this] { return level(); }));
        };
        hooks.LoadTabs = [this] { ++tabLoads; };
        hooks.endSession = [this] { ++sessionEnds; };
        hooks.mnuConnect_Click = [this] {
            ++connects;
            levelAtConnect = level();
            level() = sim.driver().Bus.GetAccessLevel();
        };
        return hooks;
    }
};

} // namespace zv::test
