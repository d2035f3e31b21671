// The port list: the current port heads it whatever its number, then the present ports 1 to 16.

#include "connection/com_port_utilities.h"
#include "connection/port_combo_box.h"
#include "platform/testing/memory_settings_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

using namespace zv;
using ::testing::ElementsAre;

namespace {

struct Machine {
    std::set<int> present;
    std::vector<int> asked;
    int current = 1;

    clsCOMPortUtilities utilities()
    {
        return clsCOMPortUtilities(
            [this](int port) {
                asked.push_back(port);
                return present.count(port) > 0;
            },
            [this] { return current; });
    }
};

std::vector<int> ports(const PortComboBox& combo)
{
    std::vector<int> result;
    for (int row = 0; row < combo.listCount(); ++row)
        result.push_back(combo.portAt(row));
    return result;
}

} // namespace

TEST(PortList, PresentPortsInRisingOrderAfterTheCurrentOne)
{
    struct Case {
        Machine machine;
        std::vector<std::string> items;
    };
    std::vector<Case> cases { { { {}, {}, 4 }, { "COM4 (Default)" } },
        { { { 16, 2, 9, 5 }, {}, 5 }, { "COM5 (Default)", "COM2", "COM9", "COM16" } },
        { { { 3, 17, 20 }, {}, 20 }, { "COM20 (Default)", "COM3" } } };
    for (auto& [machine, items] : cases) {
        SCOPED_TRACE(items.front());
        PortComboBox combo("cmbCommPort");
        machine.utilities().FillComboBoxWithAvailableCOMPorts(combo);
        EXPECT_EQ(combo.items(), items);
        EXPECT_EQ(combo.listIndex(), 0);
        EXPECT_EQ(ports(combo).front(), machine.current);
        EXPECT_LE(*std::max_element(machine.asked.begin(), machine.asked.end()), 16)
            << "ports above 16 only as the stored default";
    }
    Machine machine { { 16, 2, 9, 5 }, {}, 5 };
    EXPECT_THAT(machine.utilities().GetAvailableCOMPorts(), ElementsAre(2, 9, 16));
    machine.current = 3;
    machine.present = { 3, 17 };
    EXPECT_THAT(machine.utilities().GetAvailableCOMPorts(), ::testing::IsEmpty());
    EXPECT_FALSE(machine.utilities().IsPortAvailable(0));
}

// What counts as present is the platform's portExists; here only that the prober asks it.
TEST(SystemPortProber, AsksThePortsMapping)
{
    platform::MemorySettingsStore settings;
    settings.setValue("Ports", "COM2", "/dev/null");
    settings.setValue("Ports", "COM4", "/nonexistent/tty");
    const auto present = systemPortProber(settings);
    EXPECT_TRUE(present(2));
    EXPECT_FALSE(present(4));
}
