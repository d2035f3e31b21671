// The port list: the current port heads it whatever its number, then the present ports 1 to 16.

#include "connection/com_port_utilities.h"
#include "connection/port_combo_box.h"
#include "core/temp_folder.h"
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

TEST(PortList, WithNoFreePortsOnlyTheDefaultRowRemains)
{
    Machine machine { {}, {}, 4 };
    PortComboBox combo("cmbCommPort");
    machine.utilities().FillComboBoxWithAvailableCOMPorts(combo);
    EXPECT_THAT(combo.items(), ElementsAre("COM4 (Default)"));
    EXPECT_EQ(combo.listIndex(), 0);
    EXPECT_EQ(combo.selectedPort(), 4);
}

TEST(PortList, ListsPresentPortsInRisingOrderWithoutTheCurrentOne)
{
    Machine machine { { 16, 2, 9, 5 }, {}, 5 };
    PortComboBox combo("cmbCommPort");
    machine.utilities().FillComboBoxWithAvailableCOMPorts(combo);
    EXPECT_THAT(combo.items(), ElementsAre("COM5 (Default)", "COM2", "COM9", "COM16"));
    EXPECT_THAT(ports(combo), ElementsAre(5, 2, 9, 16));
    EXPECT_THAT(machine.utilities().GetAvailableCOMPorts(), ElementsAre(2, 9, 16));
}

TEST(PortList, PortsAbove16OnlyAsTheStoredDefault)
{
    Machine machine { { 3, 17, 20 }, {}, 20 };
    PortComboBox combo("cmbCommPort");
    machine.utilities().FillComboBoxWithAvailableCOMPorts(combo);
    EXPECT_THAT(combo.items(), ElementsAre("COM20 (Default)", "COM3"));
    EXPECT_EQ(*std::max_element(machine.asked.begin(), machine.asked.end()), 16);

    machine.current = 3;
    EXPECT_THAT(machine.utilities().GetAvailableCOMPorts(), ::testing::IsEmpty());
    EXPECT_FALSE(machine.utilities().IsPortAvailable(0));
}

TEST(SystemPortProber, AsksForACharacterDeviceBehindThePortsMapping)
{
    zv::testing::TempFolder folder;
    platform::MemorySettingsStore settings;
    settings.setValue("Ports", "COM2", "/dev/null");
    settings.setValue("Ports", "COM3", folder.write("plain-file", "x"));
    settings.setValue("Ports", "COM4", folder.file("missing"));
    const auto present = systemPortProber(settings);
    EXPECT_TRUE(present(2));
    EXPECT_FALSE(present(3)) << "a regular file is no serial device";
    EXPECT_FALSE(present(4));
}
