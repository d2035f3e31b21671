// The main window's call into the editor against the simulated pack: finding the parameter, and
// an edit written at once and read back from the device.

#include "editor/parameter_editor.h"
#include "editor_fixture.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

class EditorSimTest : public ::testing::Test, public test::EditorFixture {
protected:
    void SetUp() override { ASSERT_TRUE(sim.connect()); }

    test::SimHarness sim;
};

} // namespace

TEST_F(EditorSimTest, AutoWriteSendsTheCelsiusEntryAndTheDeviceHoldsIt)
{
    auto& d = sim.driver();
    ASSERT_TRUE(d.ReadParameter("Over Temperature Limit", 0));
    globals.settings.AutoWrite = true;
    ParameterEditor editor(d, context());
    user = [](frmEditParameter& f) {
        f.txtNewValue.userEdit("60");
        f.cmdOK.click();
    };
    const EditOutcome outcome = editor.Edit("  over temperature limit ", 0);
    ASSERT_NE(outcome.parameter, nullptr);
    ASSERT_TRUE(outcome.writeNow());
    EXPECT_EQ(seen.unitNote, "Celsius");

    // What the main window's write of pending changes does with it.
    ASSERT_TRUE(d.Parameters.WriteParameter(*outcome.parameter));
    outcome.parameter->value = DynamicValue();
    ASSERT_TRUE(d.Parameters.ReadParameter(*outcome.parameter));
    EXPECT_FALSE(outcome.parameter->NewValue.hasContent());
    EXPECT_EQ(outcome.parameter->ToString(0, d.Parameters.display), "60.0 °C");
    EXPECT_TRUE(d.Parameters.ParametersWritten) << "the commit becomes due";
}

TEST_F(EditorSimTest, ParametersAreFoundInTheGatewayOrTheCellAndCancelLeavesNothing)
{
    auto& d = sim.driver();
    ParameterEditor editor(d, context());
    EXPECT_EQ(editor.Edit("No Such Parameter", 0).parameter, nullptr);
    EXPECT_FALSE(editor.form().loaded()) << "nothing was shown";

    const EditOutcome cell = editor.Edit("Voltage", 2);
    EXPECT_EQ(cell.parameter, d.nodes.Item(2)->NodeParameters.FindByName("Voltage"));
    EXPECT_FALSE(cell.newValueStands);
    EXPECT_FALSE(cell.writeNow());
    EXPECT_EQ(editor.Edit("Voltage", 99).parameter, nullptr);
}
