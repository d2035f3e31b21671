#pragma once
// The output commands against the simulated pack, with the main window's parameter lists made
// here as the monitor fills them: a row per parameter in the list of its TabOrder, text the name
// and a blank, value column ToString mode 1.

#include "../core/temp_folder.h"
#include "outputs/output_commands.h"
#include "platform/ui/list_view.h"
#include "platform/ui/tab_strip.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace zv::test {

inline constexpr int kPackTabs = 11;
inline constexpr int kCellTabs = 3;

class OutputsTest : public ::testing::Test {
protected:
    OutputsTest()
    {
        std::vector<platform::ui::Tab> pack;
        for (int i = 0; i < kPackTabs; ++i)
            pack.push_back({ "tab" + std::to_string(i), "Pack " + std::to_string(i) });
        SSTab.setTabs(pack);
        SSTab1.setTabs({ { "c0", "Cell Dynamic" }, { "c1", "Cell Config" }, { "c2", "Cell Other" } });
        for (int i = 0; i < kPackTabs; ++i)
            lvParameters.push_back(std::make_unique<platform::ui::ListView>("lvParameters"));
        for (int i = 0; i < kCellTabs; ++i)
            lvProperties.push_back(std::make_unique<platform::ui::ListView>("lvProperties"));
        lvNodes.onItemClick = [this](const std::string& key) { fill(lvProperties, cellParameters(key)); };
    }

    void SetUp() override
    {
        ASSERT_TRUE(h.connect());
        h.main().UserAccessLevel() = 3;
        ASSERT_TRUE(h.driver().GetAllValues());
        loadTabs();
        for (int cell = 1; cell <= h.driver().nodes.Count(); ++cell)
            lvNodes.addRow({ "n" + std::to_string(cell), std::to_string(cell) });
    }

    void loadTabs() { fill(lvParameters, h.driver().GatewayParameters); }

    ParameterList& cellParameters(const std::string& nodeKey)
    {
        return h.driver().nodes.Item(std::stoi(nodeKey.substr(1)))->NodeParameters;
    }

    void fill(std::vector<std::unique_ptr<platform::ui::ListView>>& lists, const ParameterList& parameters)
    {
        for (auto& list : lists)
            list->clear();
        const DisplaySettings& display = h.driver().Parameters.display;
        for (const auto& parameter : parameters) {
            auto& list = *lists.at(parameter.TabOrder);
            list.addRow({ "P" + std::to_string(list.rowCount() + 1), parameter.ParameterName + " ",
                "readwrite", { parameter.ToString(1, display) } });
        }
    }

    ParameterViews views()
    {
        ParameterViews v { &SSTab, {}, &SSTab1, {}, &lvNodes,
            SSTab.selectedIndex() < 0 ? 0 : SSTab.selectedIndex() };
        for (auto& list : lvParameters)
            v.packLists.push_back(list.get());
        for (auto& list : lvProperties)
            v.cellLists.push_back(list.get());
        return v;
    }

    OutputServices services()
    {
        OutputServices s { h.globals, h.settings, h.dialogs, h.loop, folder.path().string() };
        s.main = [this] { return &h.main(); };
        s.views = [this] { return views(); };
        s.monitor.setMousePointer = [this](int kind) { pointer.push_back(kind); };
        s.monitor.readAllParameters = [this] {
            ++readAlls;
            const bool ok = h.driver().GetAllValues();
            loadTabs();
            return ok;
        };
        return s;
    }

    std::vector<std::string> fileLines(const std::string& name) const
    {
        const std::string text = folder.read(name);
        std::vector<std::string> lines;
        std::size_t start = 0;
        for (auto at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", start)) {
            lines.push_back(text.substr(start, at - start));
            start = at + 2;
        }
        EXPECT_EQ(start, text.size()) << "every line ends with CR LF";
        return lines;
    }

    SimHarness h;
    zv::testing::TempFolder folder;
    platform::ui::TabStrip SSTab { "SSTab" };
    platform::ui::TabStrip SSTab1 { "SSTab1" };
    std::vector<std::unique_ptr<platform::ui::ListView>> lvParameters;
    std::vector<std::unique_ptr<platform::ui::ListView>> lvProperties;
    platform::ui::ListView lvNodes { "lvNodes" };
    std::vector<int> pointer;
    int readAlls = 0;
};

} // namespace zv::test
