// The menu policy table and its application to the main window.

#include "access/menu_policy.h"
#include "main_window_double.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace zv;

namespace {

const std::vector<std::string> kTargets { "1001", "1002", "1003" };

std::vector<std::string> namesOf(const clsMenuCol& policy)
{
    std::vector<std::string> names;
    for (const clsMenu& menu : policy)
        names.push_back(menu.menuName);
    return names;
}

MenuPolicyContext context(const std::string& target, int level)
{
    MenuPolicyContext c;
    c.gTargetID = target;
    c.userAccessLevel = [level] { return level; };
    return c;
}

} // namespace

TEST(MenuPolicy, TableHoldsTheFortyNineRowsInOrderAndUnknownsAreHidden)
{
    const clsMenuCol policy = BuildMenuPolicy();
    const auto names = namesOf(policy);
    ASSERT_EQ(policy.Count(), 49);
    EXPECT_EQ(names.front(), "mnuApplicationSettings");
    EXPECT_EQ(names[19], "mnuAddOns") << "the last row that is always visible";
    EXPECT_EQ(names[20], "mnuCalibrationData");
    EXPECT_EQ(names[42], "mnuView");
    EXPECT_EQ(names[43], "mnuToggleConfigure");
    EXPECT_EQ(names.back(), "mnuReadSelectedNode");
    for (const clsMenu& menu : policy) {
        EXPECT_EQ(menu.menuDevice, kTargets) << menu.menuName;
        EXPECT_EQ(menu.menuLevel3.size(), 3u) << menu.menuName;
    }
    EXPECT_EQ(policy.Item("MNUSEP1")->menuName, "mnusep1");
    EXPECT_TRUE(policy.IsVisible("mnuSep1", "1002", 2));
    EXPECT_FALSE(policy.IsVisible("mnuNoSuchEntry", "1001", 3));
    EXPECT_FALSE(policy.IsVisible("mnuConnect", "1004", 3));
    EXPECT_FALSE(policy.IsVisible("mnuConnect", "1001", -1));
    EXPECT_FALSE(policy.IsVisible("mnuConnect", "1001", 4));
}

TEST(MenuPolicy, VisibilityByTargetAndLevel)
{
    const clsMenuCol policy = BuildMenuPolicy();
    for (const auto& target : kTargets) {
        for (int level = 0; level <= 3; ++level) {
            SCOPED_TRACE(target + " level " + std::to_string(level));
            EXPECT_TRUE(policy.IsVisible("mnuConnect", target, level));
            EXPECT_EQ(policy.IsVisible("mnuAccessLevel", target, level), level >= 2);
            EXPECT_EQ(policy.IsVisible("mnuView", target, level), level == 3);
            EXPECT_FALSE(policy.IsVisible("mnuChangeUserAccessLevel", target, level));
            EXPECT_FALSE(policy.IsVisible("mnuRebuildLAN", target, level));
            for (const char* only1001 :
                { "mnuToggleConfigure", "mnuViewTemperatureHistory", "mnuViewVoltageHistory" })
                EXPECT_EQ(policy.IsVisible(only1001, target, level), target == "1001" && level >= 2)
                    << only1001;
        }
    }
}

TEST(MenuPolicy, ApplyingReadsTheLevelAnewForEachEntryAndHidesAllOnUnknowns)
{
    const clsMenuCol policy = BuildMenuPolicy();
    test::MainWindowDouble window;
    int reads = 0;
    auto c = context("1002", 2);
    c.userAccessLevel = [&reads] { return ++reads > 20 ? 2 : 0; };
    ApplyMenuPolicy(window, policy, c);
    EXPECT_EQ(reads, 49);
    EXPECT_TRUE(window.shown("mnuSep1")) << "found without regard to case, read at level 2";
    EXPECT_FALSE(window.shown("mnuView"));
    EXPECT_FALSE(window.shown("mnuToggleConfigure"));

    for (const auto& [target, level] : { std::pair { "1001", -1 }, { "1003", -2 }, { "0042", 3 } }) {
        window.showAll();
        ApplyMenuPolicy(window, policy, context(target, level));
        EXPECT_EQ(window.shownCount(policy), 0) << target << " at level " << level;
    }
}

TEST(MenuPolicy, LoggingEntriesTransportAndTargetRules)
{
    const clsMenuCol policy = BuildMenuPolicy();
    test::MainWindowDouble window;
    auto c = context("1001", 2);
    ApplyMenuPolicy(window, policy, c);
    for (const char* name : { "mnuStartLogging", "mnuStopLogging", "mnuloogingsep1" })
        EXPECT_TRUE(window.shown(name)) << name;
    EXPECT_TRUE(window.shown("mnuConfigure"));
    EXPECT_TRUE(window.shown("lblCONFIG_BIT"));
    EXPECT_TRUE(window.shown(kConfigBitMarker));

    c.autoLogging = true;
    c.usbTransport = true;
    c.gAccessMenuEnabled = true;
    ApplyMenuPolicy(window, policy, c);
    for (const char* name : { "mnuStartLogging", "mnuStopLogging", "mnuloogingsep1" })
        EXPECT_FALSE(window.shown(name)) << name;
    EXPECT_FALSE(window.shown("mnuConfigure"));
    EXPECT_FALSE(window.shown("mnuChangeUserAccessLevel")) << "the switch counts on 1003 only";

    c.gTargetID = "1002";
    ApplyMenuPolicy(window, policy, c);
    EXPECT_FALSE(window.shown("lblCONFIG_BIT"));
    EXPECT_FALSE(window.shown(kConfigBitMarker));

    c.gTargetID = "0042";
    window.showAll();
    ApplyMenuPolicy(window, policy, c);
    EXPECT_TRUE(window.shown("lblCONFIG_BIT")) << "an unknown target leaves the label as it was";

    c.gTargetID = "1003";
    for (const int level : { -1, 0, 3 }) {
        c.userAccessLevel = [level] { return level; };
        ApplyMenuPolicy(window, policy, c);
        EXPECT_TRUE(window.shown("mnuChangeUserAccessLevel")) << "level " << level;
        EXPECT_FALSE(window.shown("lblCONFIG_BIT"));
    }
    c.gAccessMenuEnabled = false;
    ApplyMenuPolicy(window, policy, c);
    EXPECT_FALSE(window.shown("mnuChangeUserAccessLevel"));
}
